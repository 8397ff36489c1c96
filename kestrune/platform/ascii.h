#pragma once

#include <algorithm>
#include <string>
#include <string_view>

// Case and white space of ASCII characters: the same in every locale, and blind to the bytes above.

namespace kestrune::platform {

constexpr char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }
constexpr char AsciiUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }

/// Blank, tab, line feed, vertical tab, form feed, carriage return.
constexpr bool IsAsciiSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// The text in lower case. Not for texts of a double-byte page, whose trail bytes may look like letters.
inline std::string AsciiLower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return AsciiLower(c); });
  return lower;
}

} // namespace kestrune::platform
