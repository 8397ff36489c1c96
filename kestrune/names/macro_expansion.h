#pragma once

#include "kestrune/names/macro_string.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

/// Expands texts against one state of the macro table; do not keep it across a change of the table. Each macro is
/// expanded once, so that the time is linear in the texts produced even if values multiply. There is no recursion, as a
/// chain of macros may be as long as the table.
class MacroExpansion {
public:
  explicit MacroExpansion(const CMacroString &table) : m_table(table) {}

  /// CMacroString::Explode for `text`.
  bool explode(std::string_view text, CString &out);

  /// The expanded value of an entry, owned by this object; null if it has none.
  const std::string *valueOf(int macro);

private:
  const CMacroString &m_table;
  /// The value of each entry visited so far, or that it has none. A macro that is being expanded counts as having none.
  /// This remains true if its expansion fails, as a failure inside it makes every macro around it fail too.
  std::unordered_map<int, std::optional<std::string>> m_values;
};
