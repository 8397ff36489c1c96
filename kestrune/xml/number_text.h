#pragma once

#include <cstdint>

// The text of a member as a number. White space may stand in front of it, and an empty text is 0; past the range the
// limit of 32 bits is given. `base` 0 means decimal, hexadecimal with 0x, octal with a leading 0. All three throw
// CKRXException* (text 101, with the member's text) when anything is left behind the number.

std::int32_t ParseInt(const char *text, int base = 0);
/// A negative number wraps.
std::uint32_t ParseUnsigned(const char *text, int base = 0);
double ParseDouble(const char *text);
