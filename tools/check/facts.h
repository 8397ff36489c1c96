#pragma once

#include "tools/check/hits.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What relations and ranges ask of a record.

/// The number that programs get from a member that stands in the file; nothing if its text is faulty.
std::optional<long long> numberOf(const CheckedFile &file, const CheckedFile::Record &record, std::string_view tag);

/// A part of a text that lists several.
struct Entry {
  std::string text;
  std::size_t offset; ///< In the file.
};
/// The parts of a member's text between any of the separators, without the empty ones.
std::vector<Entry> entriesOf(const CheckedFile &file, const CheckedFile::Record &record, std::string_view tag,
                             std::string_view separators);

/// The texts that a member has in the elements of a section which are no items, such as misspelt ones. What they say is
/// there, although programs do not see it.
std::vector<std::string> strayTexts(const CheckedFile &file, std::string_view section, std::string_view tag);

/// Whether a section of the root stands in the file.
bool hasSection(const CheckedFile &file, std::string_view section);
