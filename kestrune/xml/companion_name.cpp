#include "kestrune/xml/companion_name.h"

#include "kestrune/platform/drives.h"

CFilename CompanionName(const char *name) {
  const CString given = kestrune::platform::ToDrivePath(name);
  CFilename result(given);
  if (given.Find('/') >= 0 && given.Find('\\') < 0)
    result = given; // brings it into its normal form
  if (kestrune::platform::IsRelativeHostName(name))
    result.GetAbsolute(result, nullptr);
  return result;
}

CString ReplacementFolder() {
  CString folder;
  CMacroString("$PFDT$").Explode(folder, 10);
  return CompanionName(folder);
}
