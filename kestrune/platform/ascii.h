#pragma once

#include <algorithm>
#include <string>
#include <string_view>

// Case and white space of ASCII characters: the same in every locale. Other bytes are never changed or counted as
// space.

namespace kestrune::platform {

constexpr char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }
constexpr char AsciiUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }

/// Blank, tab, line feed, vertical tab, form feed, carriage return.
constexpr bool IsAsciiSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// The text in lower case. Not for texts of a double-byte page, whose trail bytes may equal letters.
inline std::string AsciiLower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return AsciiLower(c); });
  return lower;
}

} // namespace kestrune::platform
