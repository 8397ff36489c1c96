#pragma once

#include "kestrune/names/macro_string.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

/// The expansion of texts against one state of the macro table. Each macro is worked out once, so that the time is
/// linear in the texts that arise even where values multiply; and without recursion, since a chain of macros may be as
/// long as the table. Not to be kept across a change of the table.
class MacroExpansion {
public:
  explicit MacroExpansion(const CMacroString &table) : m_table(table) {}

  /// What CMacroString::Explode does with `text`.
  bool explode(std::string_view text, CString &out);

  /// The expanded value of an entry, owned by this object; null when it has none.
  const std::string *valueOf(int macro);

private:
  const CMacroString &m_table;
  /// What is known of an entry: its value, or that it has none. A macro whose expansion is under way counts as one that
  /// has none; and that stays true when it fails, since a failure inside it makes every macro around it fail too.
  std::unordered_map<int, std::optional<std::string>> m_values;
};
