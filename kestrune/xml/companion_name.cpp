#include "kestrune/xml/companion_name.h"

#include "kestrune/platform/drives.h"

CFilename CompanionName(const char *name) {
  CFilename result(platform::ToDrivePath(name));
  if (platform::IsRelativeHostName(name))
    result.GetAbsolute(result, nullptr);
  return result;
}
