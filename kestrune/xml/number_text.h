#pragma once

#include <cstdint>
#include <optional>

// The text of a member as a number. White space may come before it. An empty text is 0, and a number outside the range
// of 32 bits becomes its limit. `base` 0 means decimal, hexadecimal with 0x, or octal with a leading 0.

/// The number, or nothing if anything is left after it.
std::optional<std::int32_t> WholeInt(const char *text, int base = 0);
/// The same without a sign; a negative number wraps.
std::optional<std::uint32_t> WholeUnsigned(const char *text, int base = 0);
/// The same with a fraction.
std::optional<double> WholeDouble(const char *text);

// These throw CKRXException* (text 101, with the member's text) when anything is left after the number.

std::int32_t ParseInt(const char *text, int base = 0);
/// A negative number wraps.
std::uint32_t ParseUnsigned(const char *text, int base = 0);
double ParseDouble(const char *text);
