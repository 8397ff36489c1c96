#pragma once

#include "tools/check/hits.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// What relations and ranges ask of a record.

/// The number that programs get from a member that stands in the file; nothing if its text is faulty.
std::optional<long long> numberOf(const CheckedFile &file, const CheckedFile::Record &record, std::string_view tag);

/// A text without the white space around it.
std::string trimmed(const std::string &text);

/// A part of a text that lists several.
struct Entry {
  std::string text;
  std::size_t offset; ///< In the file.
};
/// The parts of a member's text between any of the separators, without the empty ones.
std::vector<Entry> entriesOf(const CheckedFile &file, const CheckedFile::Record &record, std::string_view tag,
                             std::string_view separators);

/// What a member says in an element of a section that is no item, such as a misspelt one. Programs do not see it.
struct Stray {
  std::size_t offset = 0;
  std::optional<std::string> text;
};
std::vector<Stray> straysOf(const CheckedFile &file, std::string_view section, std::string_view tag);

/// Whether a section of the root stands in the file.
bool hasSection(const CheckedFile &file, std::string_view section);

/// The numbers of the records of a table. One whose number is missing, faulty or there already has been told as that,
/// and may be the one that is meant wherever a number between those of its neighbours is not found.
class NumberTable {
public:
  using Accepts = std::function<bool(long long)>;

  /// Adds the table of a file; a number that is not accepted is faulty.
  void add(const CheckedFile &file, std::string_view section, std::string_view recordTag, std::string_view tag,
           const Accepts &accepts = {});
  bool isEmpty() const { return m_numbers.empty(); }
  bool has(long long number) const { return m_numbers.count(number) > 0; }
  /// Whether no record can be the one that is meant by a number.
  bool lacks(long long number) const;

private:
  struct Row {
    std::size_t offset = 0;
    std::optional<long long> number;
  };
  void findGaps();

  std::vector<std::vector<Row>> m_tables;
  std::map<long long, std::size_t> m_numbers;          // with how many rows have each
  std::vector<std::pair<long long, long long>> m_gaps; // where faulty records stand: the numbers around them
};
