#pragma once

#include "kestrune/export.h"
#include "kestrune/names/mb_string.h"
#include "kestrune/platform/c_array.h"

class MacroExpansion;

/// A text in which `$NAME$` stands for the value of a macro. All objects share one table of macros. It is filled with
/// the macros of the installation when an object is made from nothing or from a narrow text while it is empty; after
/// that it changes only through AddMacro. If several threads make their first names at the same time, one fills it and
/// the others wait. The caller guards all other changes: while AddMacro runs, or a derived class changes the table, no
/// other thread may use a name.
///
/// Names are compared case-insensitively. A macro that leads back to itself counts as undefined inside its own
/// expansion, and so does one whose expansion would be longer than 32,767 bytes.
class KESTRUNE_API CMacroString : public CMBString {
public:
  /// An entry of the table: the name in upper case with both `$`, and the value, which may contain further macros.
  class KESTRUNE_API CMacro {
  public:
    /// An entry of that name, which includes both `$` and becomes upper case, and that value.
    CMacro(const char *macroName, const char *macroValue);
    /// Copies or moves name and value. @{
    CMacro(const CMacro &) = default;
    CMacro(CMacro &&) noexcept = default;
    CMacro &operator=(const CMacro &) = default;
    CMacro &operator=(CMacro &&) noexcept = default;
    virtual ~CMacro();
    ///@}

    CString name;  ///< The name in upper case, with both `$`.
    CString value; ///< The value, unexpanded.
  };

protected:
  /// Adds the default macros of the installation to the table, as AddMacro does. If that fails, an empty table stays
  /// empty, and the next name tries again.
  virtual void SetupDefaultMacros();

public:
  /// Empty. Fills the table if it is empty.
  CMacroString();
  /// A copy of `text`; null counts as empty. Fills the table if it is empty.
  CMacroString(const char *text);
  /// `text` converted to the code page. Does not fill the table.
  CMacroString(const wchar_t *text);
  /// Copies the text. Does not fill the table. @{
  CMacroString(const CMacroString &) = default;
  CMacroString &operator=(const CMacroString &text);
  ///@}
  virtual ~CMacroString(); ///< The table stays.

  /// Adds a macro at the end of the table and removes an entry with the same name. `name` includes both `$`. Always
  /// returns true; std::bad_alloc leaves the table unchanged.
  bool AddMacro(const char *name, const char *value);
  /// The number of macros in the table.
  int GetMacroCount() const;

  /// Writes the text with its macros expanded to `out`, which may be this object. Returns true when each macro had a
  /// value in the table. Otherwise expansion stops at the first macro without one: it is replaced by the environment
  /// variable of its name, or removed, and the text after it stays unexpanded. `depth` does not affect the result.
  bool Explode(CString &out, int depth) const;

protected:
  /// The index of the first entry with that name, case-insensitive, or -1.
  int FindMacro(CString name) const;
  /// The name of an entry, in upper case with both `$`. A bad index throws CInvalidArgException*.
  CString GetMacroName(int index) const;
  /// The value of an entry, unexpanded. A bad index throws CInvalidArgException*.
  CString GetMacroValue(int index) const;

  /// Writes the value of a macro to `out`: unexpanded if `depth` is 0, else expanded. Returns false and leaves `out`
  /// unchanged if there is no such macro; returns false with the partial expansion if a macro in its value has no
  /// value.
  bool GetValue(CString name, CString &out, int depth) const;

  /// The installation folder: "Kestrune Path" from the registry, in drive form, or `C:\Kestrune`. Each call reads the
  /// registry.
  CString GetKestruneFolder() const;

  /// The table, in the order of insertion.
  static CArray<CMacroString::CMacro, CMacroString::CMacro &> oMacros;

private:
  friend class MacroExpansion;

  /// Fills the table if it is empty.
  void setUpIfEmpty();
};
