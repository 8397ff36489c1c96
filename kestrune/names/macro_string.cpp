#include "kestrune/names/macro_string.h"

#include "kestrune/names/macro_expansion.h"
#include "kestrune/platform/ascii.h"

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

// constinit, so that a name made by a static initialiser of another file finds a table.
constinit CArray<CMacroString::CMacro, CMacroString::CMacro &> CMacroString::oMacros;

// AddMacro relies on this: removing an entry moves the later ones instead of copying them, so it cannot fail.
static_assert(std::is_nothrow_move_assignable_v<CMacroString::CMacro>);

namespace {

/// The last byte before the closing `$`, in lower case. Most names in a large table differ there.
char nearEnd(std::string_view name) {
  return name.size() < 2 ? '\0' : kestrune::platform::AsciiLower(name[name.size() - 2]);
}

} // namespace

CMacroString::CMacro::CMacro(const char *macroName, const char *macroValue) : name(macroName), value(macroValue) {
  name.MakeUpper();
}

CMacroString::CMacro::~CMacro() = default;

CMacroString::CMacroString() : CMacroString("") {}

CMacroString::CMacroString(const char *text) : CMBString(CString(text)) { setUpIfEmpty(); }

CMacroString::CMacroString(const wchar_t *text) : CMBString(text) {}

CMacroString::~CMacroString() = default;

CMacroString &CMacroString::operator=(const CMacroString &text) {
  CMBString::operator=(text);
  return *this;
}

bool CMacroString::AddMacro(const char *name, const char *value) {
  CMacro entry(name, value);
  const int old = FindMacro(entry.name);
  // In this order a failure leaves the table unchanged.
  oMacros.Add(entry);
  if (old >= 0)
    oMacros.RemoveAt(old);
  return true;
}

int CMacroString::GetMacroCount() const { return oMacros.GetCount(); }

// A linear search: derived classes may change any entry at any time, so an index could be out of date.
int CMacroString::FindMacro(CString name) const {
  const auto &table = std::as_const(oMacros);
  const std::size_t length = name.View().size();
  const char end = nearEnd(name.View());
  const int count = table.GetCount();
  for (int i = 0; i < count; ++i) {
    const std::string_view candidate = table[i].name.View();
    if (candidate.size() == length && nearEnd(candidate) == end && table[i].name.CompareNoCase(name) == 0)
      return i;
  }
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
