#include "kestrune/xml/number_text.h"

#include "kestrune/errors/krx_exception.h"
#include "kestrune/errors/string_table.h"
#include "kestrune/platform/c_runtime.h"

namespace {

using namespace kestrune;

/// The number that `convert` reads, or nothing if it does not read the whole text.
template <class Convert>
auto whole(const char *text, Convert convert) {
  char *end = nullptr;
  const auto number = convert(text, &end);
  return *end == '\0' ? std::optional(number) : std::nullopt;
}

template <class Number>
Number orThrow(std::optional<Number> number, const char *text) {
  if (!number)
    throw new CKRXException(IDS_NON_NUMERIC, text);
  return *number;
}

} // namespace

std::optional<std::int32_t> WholeInt(const char *text, int base) {
  return whole(text, [base](const char *from, char **end) { return platform::strtol(from, end, base); });
}

std::optional<std::uint32_t> WholeUnsigned(const char *text, int base) {
  return whole(text, [base](const char *from, char **end) { return platform::strtoul(from, end, base); });
}

std::optional<double> WholeDouble(const char *text) { return whole(text, platform::strtod); }

std::int32_t ParseInt(const char *text, int base) { return orThrow(WholeInt(text, base), text); }
std::uint32_t ParseUnsigned(const char *text, int base) { return orThrow(WholeUnsigned(text, base), text); }
double ParseDouble(const char *text) { return orThrow(WholeDouble(text), text); }
