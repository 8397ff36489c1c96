#pragma once

#include "kestrune/names/filename.h"

// The files that a load takes in with, or in place of, the one that it was asked for. Nobody names them, so what a load
// could wait for without an end (a pipe, a device) does not count as one.

/// The name beside which a document looks for its companions: `name` as it was given, except that a host path is in
/// drive form, and that a name which holds a `/` and no `\` is in its normal form and, where it is relative, absolute
/// from the current directory, so that its folder is known. Null counts as empty.
CFilename CompanionName(const char *name);

/// Where a replacement is looked for when $PFDT$ has no value.
enum class WithoutFolder { kNowhere, kCurrentDirectory };

/// The full path of the file called `fileName` in the folder that $PFDT$, a macro or an environment variable, names: it
/// takes the place of whatever a caller asks for. Empty where there is none.
CFilename ReplacementFile(const char *fileName, WithoutFolder without);

/// The file called `fileName` beside `file`, a companion name; empty where there is none.
CFilename UserFile(const CFilename &file, const char *fileName);

/// The add-on files of a document: of x.xml these are x-1.xml, x-2.xml and so on beside it.
class AddOnFiles {
public:
  /// `name` is that of the document, and may hold macros.
  explicit AddOnFiles(const CString &name);

  /// The next file, first number 1; empty, for good, from the first number that has none.
  CFilename next();

private:
  CString m_stem;
  CString m_extension;
  int m_number = 0;
};
