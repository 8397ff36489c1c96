#pragma once

#include <cstdint>

// The C run-time functions for which the host's own would behave differently: numbers have 32 bits, as in the data, and
// are read in the C locale, whatever locale the program has set.

namespace kestrune::platform {

/// As the C functions, but on 32 bits: a number outside the range becomes the limit (2147483647, -2147483648,
/// 4294967295), and a negative number wraps in `strtoul`. `end` may be null.
std::int32_t strtol(const char *text, char **end, int base);
std::uint32_t strtoul(const char *text, char **end, int base);
/// Reads with a decimal point in every locale.
double strtod(const char *text, char **end);

/// As `sscanf_s` with "%d": reads a signed decimal number from the start of the text, after white space, and leaves
/// `value` unchanged if there is none. A number outside the range of int becomes the limit.
void ScanDecimal(const char *text, int &value);
/// The same with "%X"; 0x before the number is optional. The number is unsigned with 32 bits, so FFFFFFFF is -1, and so
/// is a number that does not fit.
void ScanHexadecimal(const char *text, int &value);

} // namespace kestrune::platform

/// Seconds since 1970, UTC; also stored in `*time` if that is not null.
std::int64_t _time64(std::int64_t *time);

/// Splits `text` in place at runs of the characters in `delimiters`; a trail byte is not a delimiter. `text` is the
/// text on the first call and null on later ones. Returns the next token, or null.
char *_mbstok_s(char *text, const char *delimiters, char **context);

/// The upper case of an ASCII letter; any other character unchanged.
unsigned _mbctoupper(unsigned character);

/// Whether `character` is white space: blank, tab, line feed, vertical tab, form feed or carriage return.
int _ismbcspace(unsigned character);
