#include "kestrune/chip/link_compatibility.h"

#include "kestrune/chip/vorlan_typ.h"
#include "kestrune/platform/c_runtime.h"
#include "kestrune/platform/exceptions.h"

#include <string>

namespace {

/// Whether `list` contains `item`, compared byte for byte.
bool IsListed(const CString &list, const CString &item) {
  std::string rest(list.View());
  char *context = nullptr;
  for (const char *token = _mbstok_s(rest.data(), ";,\n", &context); token != nullptr;
       token = _mbstok_s(nullptr, ";,\n", &context))
    if (item.Compare(token) == 0)
      return true;
  return false;
}

} // namespace

bool isLinkCompatible(int model, int other) {
  if (model == other)
    return true;
  CVorlanTyp3 document;
  try {
    if (document.LoadFromFile("$StdVorlanTyp$") < 0)
      return false;
    const auto *const entry = document.LinkCompatibleModels3.Find(IntToCString(model));
    return entry != nullptr && IsListed(entry->LinkCompatibleList, IntToCString(other));
  } catch (CException *exception) {
    exception->Delete();
    return false;
  }
}
