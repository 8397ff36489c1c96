#include "kestrune/xml/number_text.h"

#include "kestrune/errors/krx_exception.h"
#include "kestrune/errors/string_table.h"
#include "kestrune/platform/c_runtime.h"

namespace {

/// What `convert` makes of the whole text.
template <class Convert>
auto ParseAll(const char *text, Convert convert) {
  char *end = nullptr;
  const auto number = convert(text, &end);
  if (*end != '\0')
    throw new CKRXException(IDS_NON_NUMERIC, text);
  return number;
}

} // namespace

std::int32_t ParseInt(const char *text, int base) {
  return ParseAll(text, [base](const char *from, char **end) { return kestrune::platform::strtol(from, end, base); });
}

std::uint32_t ParseUnsigned(const char *text, int base) {
  return ParseAll(text, [base](const char *from, char **end) { return kestrune::platform::strtoul(from, end, base); });
}

double ParseDouble(const char *text) { return ParseAll(text, kestrune::platform::strtod); }
