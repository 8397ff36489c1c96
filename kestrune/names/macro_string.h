#pragma once

#include "kestrune/export.h"
#include "kestrune/names/mb_string.h"
#include "kestrune/platform/c_array.h"

class MacroExpansion;

/// A text in which `$NAME$` stands for the value of a macro. All objects share one table of macros: it is filled with
/// the macros of the installation when the first object is made from nothing or from a narrow text while it is empty,
/// and then changes through AddMacro alone. Of several threads whose first names are made at the same time, one fills
/// it and the others wait. Changing it is the caller's to guard: while AddMacro runs, or a derived class changes the
/// table, no other thread may use a name.
///
/// Names are compared without regard to case. A macro that leads back to itself counts as undefined inside its own
/// expansion, and so does one whose expansion would make a text of more than 32,767 bytes.
class KESTRUNE_API CMacroString : public CMBString {
public:
  /// An entry of the table: the name in upper case with both `$`, and the value, which may hold further macros.
  class KESTRUNE_API CMacro {
  public:
    CMacro(const char *macroName, const char *macroValue);
    CMacro(const CMacro &) = default;
    CMacro(CMacro &&) noexcept = default;
    CMacro &operator=(const CMacro &) = default;
    CMacro &operator=(CMacro &&) noexcept = default;
    virtual ~CMacro();

    CString name;
    CString value;
  };

protected:
  /// Adds the default macros of the installation to the table, as AddMacro does. A failure leaves an empty table empty,
  /// and the next name tries again.
  virtual void SetupDefaultMacros();

public:
  CMacroString();
  /// A copy of `text`; null counts as empty.
  CMacroString(const char *text);
  /// `text` converted to the code page. Does not fill the table.
  CMacroString(const wchar_t *text);
  /// Does not fill the table.
  CMacroString(const CMacroString &) = default;
  virtual ~CMacroString();

  CMacroString &operator=(const CMacroString &text);

  /// Adds a macro at the end of the table; `name` has both its `$`. An entry of that name is removed. Always true;
  /// std::bad_alloc leaves the table as it was.
  bool AddMacro(const char *name, const char *value);
  int GetMacroCount() const;

  /// Writes the text with its macros expanded to `out`, which may be this object. True when each macro had a value in
  /// the table. Otherwise the expansion ended at the first that had none: it was replaced by the environment variable
  /// of its name, or removed, and `out` holds the text behind it as it was. `depth` has no influence on the result.
  bool Explode(CString &out, int depth) const;

protected:
  /// The index of the first entry of that name, or -1.
  int FindMacro(CString name) const;
  /// Name and stored value of an entry; a bad index ends in AfxThrowInvalidArgException.
  CString GetMacroName(int index) const;
  CString GetMacroValue(int index) const;

  /// Writes the value of a macro to `out`: as it is stored when `depth` is 0, else expanded. False, with `out`
  /// untouched, without such a macro; false, with the partial expansion, when a macro in its value has no value.
  bool GetValue(CString name, CString &out, int depth) const;

  /// The installation folder: "Kestrune Path" from the registry, in drive form, or `C:\Kestrune`. Read at each call.
  CString GetKestruneFolder() const;

  /// The table, in order of insertion.
  static CArray<CMacroString::CMacro, CMacroString::CMacro &> oMacros;

private:
  friend class MacroExpansion;

  /// Fills the table while it is empty.
  void setUpIfEmpty();
};
