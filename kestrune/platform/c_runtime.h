#pragma once

#include <cstdint>

// What the library takes from the C run time where the host's own would behave otherwise: numbers have 32 bits, as the
// data does, and are read in the C locale whatever locale the program has set.

namespace kestrune::platform {

/// As the C functions, but on 32 bits: a text past the range gives the limit (2147483647, -2147483648, 4294967295),
/// and a negative number wraps in `strtoul`. `end` may be null.
std::int32_t strtol(const char *text, char **end, int base);
std::uint32_t strtoul(const char *text, char **end, int base);
/// Reads with a decimal point in every locale.
double strtod(const char *text, char **end);

/// What `sscanf_s` does with "%d": takes a signed decimal number from the front, behind white space, and leaves
/// `value` alone when there is none. A number that does not fit gives the limit of int.
void ScanDecimal(const char *text, int &value);
/// The same with "%X", with or without 0x in front. The number has 32 bits without a sign, so FFFFFFFF, and whatever
/// does not fit, is -1.
void ScanHexadecimal(const char *text, int &value);

} // namespace kestrune::platform

/// Seconds since 1970, UTC; also stored in `*time` unless that is null.
std::int64_t _time64(std::int64_t *time);

/// Splits `text` in place at runs of the characters of `delimiters`, none of them a trail byte. `text` on the first
/// call, null on later ones; the next token, or null.
char *_mbstok_s(char *text, const char *delimiters, char **context);

/// The upper case of an ASCII letter, any other character unchanged.
unsigned _mbctoupper(unsigned character);

/// Whether the byte is a white-space character: blank, tab, line feed, vertical tab, form feed, carriage return.
int _ismbcspace(unsigned character);
