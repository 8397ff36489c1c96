#include "kestrune/names/default_macros.h"

#include "kestrune/names/filename.h"
#include "kestrune/names/macro_string.h"
#include "kestrune/platform/drives.h"
#include "kestrune/platform/registry.h"

#include <atomic>
#include <mutex>
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

/// Reads a text from the registry. Returns false and leaves `text` unchanged if it is missing or unreadable.
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

bool ReadKestruneFolder(CString &text) {
  return ReadSetting(HKEY_LOCAL_MACHINE, "SOFTWARE\\Kestrune", "Kestrune Path", text);
}

bool ReadHardwareFolder(CString &text) {
  return ReadSetting(HKEY_CURRENT_USER, "Software\\Kestrune\\Plinthforge\\Folders", "userHwFolder", text);
}

/// Set once the table was seen filled while holding the lock. From then on names look at the table without the lock.
constinit std::atomic<bool> wasFilled{false};
constinit std::mutex fillLock;

/// Whether this thread is computing the default macros. That creates names, which must not fill the table themselves.
constinit thread_local bool isWorkingOut = false;

class WorkingOut {
public:
  WorkingOut() { isWorkingOut = true; }
  WorkingOut(const WorkingOut &) = delete;
  WorkingOut &operator=(const WorkingOut &) = delete;
  ~WorkingOut() { isWorkingOut = false; }
};

} // namespace

CString CMacroString::GetKestruneFolder() const {
  CString folder = "C:\\Kestrune";
  ReadKestruneFolder(folder);
  return kestrune::platform::ToDrivePath(folder);
}

void CMacroString::setUpIfEmpty() {
  if (isWorkingOut || (wasFilled.load(std::memory_order_acquire) && GetMacroCount() != 0))
    return;
  const std::lock_guard<std::mutex> lock(fillLock);
  if (GetMacroCount() == 0)
    CMacroString::SetupDefaultMacros();
  wasFilled.store(true, std::memory_order_release);
}

void CMacroString::SetupDefaultMacros() {
  CArray<CMacro, CMacro &> defaults;
  const auto add = [&defaults](const char *name, const char *value) {
    CMacro entry(name, value);
    defaults.Add(entry);
  };
  {
    const WorkingOut workingOut;
    add("$Kestrune$", GetKestruneFolder());
    for (const auto &[name, value] : kDefaultMacros)
      add(name, value);

    CFilename hardwareFolder = CFilename(GetKestruneFolder()).GetRoot();
    hardwareFolder += "\\tk\\Source\\Templates\\Hardware";
    CString setting;
    if (ReadHardwareFolder(setting))
      hardwareFolder = setting;
    add("$USERHWTFOLDER$", hardwareFolder);
  }

  // An empty table is filled at once or not at all: a partly filled one would never be filled again.
  if (GetMacroCount() == 0) {
    std::swap(oMacros, defaults);
    return;
  }
  for (int i = 0; i < defaults.GetCount(); ++i)
    AddMacro(defaults[i].name, defaults[i].value);
}

bool kestrune::IsSetInRegistry(const char *macro) {
  const CString name(macro);
  CString setting;
  return (name.CompareNoCase("$Kestrune$") == 0 && ReadKestruneFolder(setting)) ||
         (name.CompareNoCase("$USERHWTFOLDER$") == 0 && ReadHardwareFolder(setting));
}
