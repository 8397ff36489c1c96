#include "kestrune/names/filename.h"
#include "kestrune/names/macro_string.h"
#include "kestrune/platform/drives.h"
#include "kestrune/platform/registry.h"

#include <utility>

namespace {

constexpr std::pair<const char *, const char *> kDefaultMacros[] = {
    {"$StdTypes$", "$Kestrune$\\Types"},
    {"$StdImages$", "$Kestrune$\\Images"},
    {"$StdInclude$", "$Kestrune$\\VorlanC\\Include"},
    {"$StdXcvrTyp$", "$StdTypes$\\StdXcvr.xml"},
    {"$StdKestruneUI$", "$StdTypes$\\KestruneUI.xml"},
    {"$StdVorlanTyp$", "$StdTypes$\\Vorlan.xml"},
    {"$StdSpidData$", "$StdTypes$\\spidData.xml"},
    {"$IMG$", "$StdImages$"},
    {"$STD$", "$KESTRUNE$\\VorlanC\\Libraries"},
    {"$PLINTHFORGE$", "$KESTRUNE$\\Plinthforge"},
    {"$TEMPLATES$", "$PLINTHFORGE$\\Templates"},
    {"$HARDWARETEMPLATES$", "$TEMPLATES$\\Hardware\\Standard"},
    {"$DSTEMPLATES$", "$TEMPLATES$\\Draftsmith"},
    {"$DSDEFAULTTEMPLATES$", "$DSTEMPLATES$\\v3"},
};

/// Reads a text from the registry. False, and `text` untouched, when it is not there or cannot be read.
bool ReadSetting(HKEY root, const char *subKey, const char *name, CString &text) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(root, subKey, 0, KEY_READ, &key) != ERROR_SUCCESS)
    return false;
  unsigned char buffer[250] = {};
  DWORD size = sizeof buffer;
  const bool found = RegQueryValueExA(key, name, nullptr, nullptr, buffer, &size) == ERROR_SUCCESS;
  RegCloseKey(key);
  if (found)
    text = reinterpret_cast<const char *>(buffer);
  return found;
}

} // namespace

CString CMacroString::GetKestruneFolder() const {
  CString folder = "C:\\Kestrune";
  ReadSetting(HKEY_LOCAL_MACHINE, "SOFTWARE\\Kestrune", "Kestrune Path", folder);
  return platform::ToDrivePath(folder);
}

void CMacroString::SetupDefaultMacros() {
  AddMacro("$Kestrune$", GetKestruneFolder());
  for (const auto &[name, value] : kDefaultMacros)
    AddMacro(name, value);

  CFilename hardwareFolder = CFilename(GetKestruneFolder()).GetRoot();
  hardwareFolder += "\\tk\\Source\\Templates\\Hardware";
  CString setting;
  if (ReadSetting(HKEY_CURRENT_USER, "Software\\Kestrune\\Plinthforge\\Folders", "userHwFolder", setting))
    hardwareFolder = setting;
  AddMacro("$USERHWTFOLDER$", hardwareFolder);
}
