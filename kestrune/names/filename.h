#pragma once

#include "kestrune/export.h"
#include "kestrune/names/macro_string.h"

/// A path name: a macro text that splits into parts, grows by parts, tells its form, acts on the file it names and
/// resolves to a full path and back.
///
/// The separator is `\`; only Normalize gives `/` a meaning. A colon at offset 1 means that the name has a drive; one
/// that begins with `\\` is a network name and has none. Case is kept, except by GetExt. Text comes in unchanged
/// through the constructors, the assignment of another CFilename, operator+=, Append and AppendSlash, and normalised
/// through the assignments of other texts; so all parts except GetNameExt are normalised. A null text counts as empty.
class KESTRUNE_API CFilename : public CMacroString {
public:
  CFilename();
  CFilename(const char *name);
  CFilename(const CString &name);
  /// `name` converted to the code page. Does not fill the macro table.
  CFilename(const wchar_t *name);
  CFilename(const CFilename &) = default;
  ~CFilename() override;

  CFilename &operator=(const CFilename &name);
  const CFilename &operator=(const char *name);
  const CFilename &operator=(const CString &name);

  /// The letter of the drive in upper case; of the current drive when the name has none.
  char GetDrive() const;
  /// The first byte of the last character; 0 for an empty name.
  char GetLastChar() const;
  /// Drive, colon and `\`.
  CFilename GetRoot() const;
  /// The folder without the drive and without its last `\`; a name without `\` gives itself, less any drive.
  CFilename GetDir() const;
  /// The text before the last `\`, where a root keeps its `\`; empty without `\`.
  CFilename GetPath() const;
  /// The last segment up to its first dot, unless that is its first character.
  CFilename GetName() const;
  /// The last segment from its first dot, the dot included, in upper case.
  CFilename GetExt() const;
  /// The last segment.
  CFilename GetNameExt() const;
  /// The number of segments: drive root and leading `\` do not count, the empty one in a leading `\\` does.
  int GetSegmentCount() const;
  /// The name up to and including segment number `n`, counted from 0.
  CFilename GetPathSegment(int n) const;

  /// Appends `ch`; but of `:`, `\` and `.` none directly behind another, except `\` behind `:`.
  void Append(char ch);
  void AppendSlash();
  /// Joins a name to this one, with one `\` between them; with none where `name` begins with `:`, `.` or a blank.
  const CFilename &operator+=(const CFilename &name);
  const CFilename &operator+=(const CString &name);
  const CFilename &operator+=(const char *name);
  /// Joins what stands behind the last `\` of `name`.
  CFilename &AppendName(const char *name);
  /// Replaces everything from the first dot of the last segment, unless it is its first character, by `ext`, with or
  /// without a leading dot. Null or empty only removes.
  CFilename &AppendExt(const char *ext);
  /// Removes the last segment and the `\` before it.
  const CFilename &operator--();

  /// Whether the name, with its macros expanded where they all have a value, has a drive and a `\` or is a network
  /// name.
  bool IsAbsolute() const;
  bool IsRelative() const;
  /// 1 when the name, behind its drive if it has one, begins with `\`. No macro is expanded.
  int AbsPathName() const;
  /// 1 when the name has a drive or a segment that begins with a dot: it is not searched for along a search path.
  int CurDirRelPathName() const;
  /// Whether the first pair of `$` encloses the name of a macro that has a value.
  bool IncludesMacro() const;

  // Operations on the file. They take the text as it stands: a caller resolves it first.

  /// 1 when a file or directory has that name.
  int FileExists() const;
  /// 0 when the file exists and may be written to, else 1.
  int ReadOnly() const;
  /// Sets or clears the read-only attribute. 0 on failure.
  int SetReadOnly(int on) const;
  /// Removes the file, also a read-only one. 0 when there is none; throws CFileException* when it cannot be removed.
  int Remove() const;
  /// The low 32 bits of the size in bytes, never negative; 0 when there is no such file.
  long FileSize() const;
  /// Makes the directory, one level. 0 when it is there now, 1 when a file has its name, -1 on failure.
  int mkDir() const;
  /// Copies the file with its times and attributes, over what `dest` holds. 0 on success; 1 no memory; 2 the source
  /// cannot be opened; 3 `dest` cannot be opened; 4 the source gave fewer bytes than it has; 5 reading or writing
  /// failed. With 4 and 5 `dest` is removed, unless the source failed at once: then it is as it was. Throws
  /// CFileException* when the attributes cannot be set.
  int CopyFileA(const char *dest) const;
  /// Sets the times of the file to the present and returns 0. Throws CFileException* when that fails.
  int Touch() const;
  /// 1 for a directory, and for every drive root such as `Q:\`, whether it is there or not.
  int IsDirectory() const;
  /// Renames the file and takes `newName`, normalised, as the text: 0. On failure the cause of the CFileException, and
  /// the text stays.
  unsigned long Rename(CString &newName);
  /// The short form of the name; empty where the platform has none.
  CString GetShortFileName() const;

  // Resolution.

  /// Writes the full path to `out`, which may be this object: that of the name itself if its macros all have a value,
  /// else below `defaultDir`, else below the current directory. A host path counts as its drive form. An empty name
  /// gives `defaultDir` with its macros as they stand. False, with `out` untouched, only when the current directory is
  /// needed and cannot be told.
  bool GetAbsolute(CFilename &out, const char *defaultDir) const;
  /// Writes the form to be stored to `out`: relative to `base` (a folder without `\` at its end, or null) when the file
  /// lies below it or below its parent, else that of GetBestFit. A name that begins with `$` stays. Always true.
  bool GetRelative(CFilename &out, const char *base) const;
  /// Writes the name to `out` with the longest macro value found in it, the first in the table among equals, replaced
  /// by the macro's name. Always true.
  bool GetBestFit(CFilename &out) const;
  /// The name behind the longest folder of `searchPath` (separated by `;`, up to the first empty one) that it lies in.
  CFilename GetRelativePathName(const CString &searchPath) const;
  /// 1 when the file exists below `dir` (null: where the name itself says), with its full path in `found`; else 0, with
  /// `found` untouched.
  int FileExists(CFilename &found, const char *dir) const;
  /// The same in the current directory and then in each folder of `searchPath`, up to the first empty one. A name that
  /// is rooted, has a drive or a segment that begins with a dot is only looked for where it says itself.
  int FindFile(CFilename &found, const CString &searchPath) const;
  /// The name, for display, with folders replaced by `...` from the left until it has at most `maxLength` bytes; when
  /// no folder is left, the last segment of whatever length.
  CString Smoosh(int maxLength) const;

protected:
  /// `name` with `\` for `/`, and without `..\`, `.\` and doubled `\` where they can go.
  CFilename Normalize(const char *name) const;
  bool IsAbsolute(const CMacroString &name) const;
  /// Removes `prefix` from the start of the text, if it begins with it.
  void Strip(CString prefix);
  /// `prefix` and the text, with one `\` between them.
  CFilename Prefix(const char *prefix) const;
  /// Puts the macro in the place of its value in `source`, into `out`, if that value is longer than `best` bytes, and
  /// raises `best`. An empty value never fits.
  void TryToFit(CFilename &source, const char *macroName, CFilename &out, int &best) const;
};

/// The left side joined with the right side, as operator+= does it.
KESTRUNE_API CFilename operator+(const CFilename &left, const CFilename &right);
KESTRUNE_API CFilename operator+(const CFilename &left, const char *right);
KESTRUNE_API CFilename operator+(const CFilename &left, const CString &right);
KESTRUNE_API CFilename operator+(const char *left, const CFilename &right);
KESTRUNE_API CFilename operator+(const CString &left, const CFilename &right);

/// Item number `index`, counted from 0, of a search path with `;` between its items; empty when there are fewer.
KESTRUNE_API CString GetSearchPathItem(const CString &searchPath, int index);
