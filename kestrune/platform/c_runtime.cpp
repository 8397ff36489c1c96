#include "kestrune/platform/c_runtime.h"

#include "kestrune/platform/ascii.h"
#include "kestrune/platform/code_page.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <limits>
#include <locale.h>
#include <stdlib.h>

namespace {

/// One more than the largest 32-bit magnitude; every larger number becomes this.
constexpr std::uint64_t kTooLarge = std::uint64_t{1} << 32U;
constexpr unsigned kNoDigit = 36;

struct Integer {
  std::uint64_t magnitude = 0;
  bool negative = false;
};

constexpr unsigned digitValue(char c) {
  if (c >= '0' && c <= '9')
    return static_cast<unsigned>(c - '0');
  const char lower = kestrune::platform::AsciiLower(c);
  return lower >= 'a' && lower <= 'z' ? static_cast<unsigned>(lower - 'a') + 10 : kNoDigit;
}

/// Not the C library's function: that depends on the locale's white space, and newer versions accept prefixes that
/// older ones do not.
Integer readInteger(const char *text, char **end, int base) {
  Integer result;
  const char *p = text;
  const char *behind = text;
  while (kestrune::platform::IsAsciiSpace(*p))
    ++p;
  if (*p == '+' || *p == '-')
    result.negative = *p++ == '-';
  if ((base == 0 || base == 16) && p[0] == '0' && kestrune::platform::AsciiLower(p[1]) == 'x' &&
      digitValue(p[2]) < 16) {
    p += 2;
    base = 16;
  }
  if (base == 0)
    base = *p == '0' ? 8 : 10;
  const auto radix = static_cast<unsigned>(base);
  for (; digitValue(*p) < radix; behind = ++p)
    result.magnitude = std::min(result.magnitude * radix + digitValue(*p), kTooLarge);
  if (end != nullptr)
    *end = const_cast<char *>(behind);
  return result;
}

} // namespace

namespace kestrune::platform {

std::int32_t strtol(const char *text, char **end, int base) {
  const Integer number = readInteger(text, end, base);
  const auto value = static_cast<std::int64_t>(number.magnitude);
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(number.negative ? -value : value, Limits::min(), Limits::max()));
}

std::uint32_t strtoul(const char *text, char **end, int base) {
  const Integer number = readInteger(text, end, base);
  if (number.magnitude == kTooLarge)
    return std::numeric_limits<std::uint32_t>::max();
  const auto value = static_cast<std::uint32_t>(number.magnitude);
  return number.negative ? 0U - value : value;
}

double strtod(const char *text, char **end) {
  static const locale_t classic = ::newlocale(LC_ALL_MASK, "C", nullptr);
  return ::strtod_l(text, end, classic);
}

void ScanDecimal(const char *text, int &value) {
  char *end = nullptr;
  const std::int32_t number = strtol(text, &end, 10);
  if (end != text)
    value = number;
}

void ScanHexadecimal(const char *text, int &value) {
  char *end = nullptr;
  const std::uint32_t number = strtoul(text, &end, 16);
  if (end != text)
    value = static_cast<int>(number);
}

} // namespace kestrune::platform

std::int64_t _time64(std::int64_t *time) {
  const std::int64_t now = std::time(nullptr);
  if (time != nullptr)
    *time = now;
  return now;
}

char *_mbstok_s(char *text, const char *delimiters, char **context) {
  const auto isDelimiter = [delimiters](char c) { return std::strchr(delimiters, c) != nullptr; };
  char *token = text != nullptr ? text : *context;
  while (*token != '\0' && isDelimiter(*token))
    ++token;
  char *end = token;
  while (*end != '\0' && !isDelimiter(*end))
    end = CharNextA(end);
  *context = *end != '\0' ? end + 1 : end;
  *end = '\0';
  return end != token ? token : nullptr;
}

unsigned _mbctoupper(unsigned character) {
  return character < 0x80 ? static_cast<unsigned>(kestrune::platform::AsciiUpper(static_cast<char>(character)))
                          : character;
}

int _ismbcspace(unsigned character) {
  return character < 0x80 && kestrune::platform::IsAsciiSpace(static_cast<char>(character)) ? 1 : 0;
}
