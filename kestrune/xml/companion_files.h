#pragma once

#include "kestrune/names/filename.h"

// Files that a load reads together with, or instead of, the one it was asked for. No caller names them, so anything on
// which a load could wait for ever (a pipe, a device) does not count as one.

/// The name next to which a document looks for its companions: `name` as given, except that a host path is put in drive
/// form, and that a name with a `/` and no `\` is normalised and, if it is relative, made absolute from the current
/// directory, so that its folder is known. Null counts as empty.
CFilename CompanionName(const char *name);

/// The full path that a load of `name` reads; empty if the name leads to nothing.
CFilename FullPath(const char *name);

/// Where to look for a replacement if $PFDT$ has no value.
enum class WithoutFolder { kNowhere, kCurrentDirectory };

/// The full path of the file `fileName` in the folder that $PFDT$ (a macro or an environment variable) names. It is
/// loaded instead of the file that the caller asks for. Empty if there is none.
CFilename ReplacementFile(const char *fileName, WithoutFolder without);

/// The file `fileName` in the folder of `file`, a companion name; empty if there is none.
CFilename UserFile(const CFilename &file, const char *fileName);

/// The add-on files of a document: for x.xml these are x-1.xml, x-2.xml and so on in the same folder.
class AddOnFiles {
public:
  /// `name` is the name of the document and may contain macros.
  explicit AddOnFiles(const CString &name);

  /// The next file, starting with number 1; empty at the first number without a file, where the caller stops.
  CFilename next();

private:
  CString m_stem;
  CString m_extension;
  int m_number = 0;
};
