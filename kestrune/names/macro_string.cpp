#include "kestrune/names/macro_string.h"

#include "kestrune/names/macro_expansion.h"
#include "kestrune/platform/code_page.h"

#include <string>
#include <unordered_map>

// Constant, so that a name which another file's static initialiser builds finds a table.
constinit CArray<CMacroString::CMacro, CMacroString::CMacro &> CMacroString::oMacros;

namespace {

/// The table of an installation is walked; one that a program has filled with thousands of macros needs an index, or
/// each AddMacro and each name of an expansion would cost a walk over all of it.
constexpr int kLargeTable = 64;

struct NameIndex {
  std::unordered_map<std::string, int> positions; ///< by name in lower case
  int count = 0;                                  ///< how many entries of the table it holds
};

/// Only AddMacro changes it. A table of another length than the index was not filled by AddMacro alone, and is walked.
NameIndex &Index() {
  static NameIndex index;
  return index;
}

} // namespace

CMacroString::CMacro::CMacro(const char *macroName, const char *macroValue) : name(macroName), value(macroValue) {
  name.MakeUpper();
}

CMacroString::CMacro::~CMacro() = default;

CMacroString::CMacroString() : CMacroString("") {}

CMacroString::CMacroString(const char *text) : CMBString(CString(text)) {
  if (GetMacroCount() == 0)
    CMacroString::SetupDefaultMacros();
}

CMacroString::CMacroString(const wchar_t *text) : CMBString(text) {}

CMacroString::~CMacroString() = default;

CMacroString &CMacroString::operator=(const CMacroString &text) {
  CMBString::operator=(text);
  return *this;
}

bool CMacroString::AddMacro(const char *name, const char *value) {
  CMacro entry(name, value);
  const int old = FindMacro(entry.name);
  if (old >= 0)
    oMacros.RemoveAt(old);
  oMacros.Add(entry);

  const int count = GetMacroCount();
  NameIndex &index = Index();
  if (count >= kLargeTable) {
    int first = count - 1;
    if (old >= 0 || index.count != first) {
      index.positions.clear();
      first = 0;
    }
    for (int i = first; i < count; ++i)
      index.positions.emplace(platform::FoldCase(oMacros[i].name.View()), i);
    index.count = count;
  }
  return true;
}

int CMacroString::GetMacroCount() const { return oMacros.GetCount(); }

int CMacroString::FindMacro(CString name) const {
  const int count = GetMacroCount();
  const NameIndex &index = Index();
  if (count >= kLargeTable && index.count == count) {
    const auto found = index.positions.find(platform::FoldCase(name.View()));
    return found == index.positions.end() ? -1 : found->second;
  }
  for (int i = 0; i < count; ++i)
    if (oMacros[i].name.CompareNoCase(name) == 0)
      return i;
  return -1;
}

CString CMacroString::GetMacroName(int index) const { return oMacros.GetAt(index).name; }

CString CMacroString::GetMacroValue(int index) const { return oMacros.GetAt(index).value; }

bool CMacroString::Explode(CString &out, int) const { return MacroExpansion(*this).explode(View(), out); }

bool CMacroString::GetValue(CString name, CString &out, int depth) const {
  const int macro = FindMacro(name);
  if (macro < 0)
    return false;
  const CString stored = GetMacroValue(macro);
  out = stored;
  if (depth == 0)
    return true;
  MacroExpansion expansion(*this);
  if (const std::string *value = expansion.valueOf(macro)) {
    out = value->c_str();
    return true;
  }
  expansion.explode(stored.View(), out);
  return false;
}
