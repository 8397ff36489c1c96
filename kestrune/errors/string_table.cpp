#include "kestrune/errors/string_table.h"

#include "kestrune/platform/c_string.h"

namespace {

struct Text {
  UINT id;
  const char *text;
};

constexpr Text kTexts[] = {
    {IDS_NON_NUMERIC, "Unexpected non-numeric value found in XML data (%s)"},
    {102, "Error 2"},
    {103, "Error 3"},
    {104, "Error 4"},
    {105, "Error 5"},
    {106, "Error 6"},
    {107, "Error 7"},
    {108, "Error 8"},
    {109, "Error 9"},
    {120, "Unexpected code path"},
    {121, "Failed to create COM object"},
    {122, "Overwrite tried on a write-protected file"},
    {123, "Uninitialized pointer"},
    {124, "File not found"},
    {125, "Unexpected data"},
    {126, "File not named before save"},
    {127, "File not named before loading"},
    {128, "Non-unique XML key found"},
    {129, "Problem saving file"},
    {130, "Problem loading file"},
    {131, "Expected format attribute not found"},
    {IDS_BAD_BOOLEAN, "Unrecognized boolean constant '%s'"},
};

} // namespace

const char *kestrune::platform::FindStringResource(UINT id) {
  for (const Text &entry : kTexts) {
    if (entry.id == id)
      return entry.text;
  }
  return nullptr;
}
