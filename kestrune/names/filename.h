#pragma once

#include "kestrune/export.h"
#include "kestrune/names/macro_string.h"

/// \file
/// File names and search paths.

/// A path name that may contain macros. It can be split and extended part by part, acts on the file it names, and
/// resolves to a full path and back to a short stored form.
///
/// The separator is `\`; only Normalize treats `/` as one. A name with a colon at offset 1 has a drive; a name that
/// begins with `\\` is a network name and has none. Only GetExt changes case. The constructors, the assignment of
/// another CFilename, operator+=, Append and AppendSlash take text unchanged; the assignments of other texts normalise
/// it. So all parts except that of GetNameExt are normalised. A null text counts as empty.
class KESTRUNE_API CFilename : public CMacroString {
public:
  /// Empty, or `name` unchanged. Fills the macro table if it is empty. @{
  CFilename();
  CFilename(const char *name);
  CFilename(const CString &name);
  ///@}
  /// `name` converted to the code page. Does not fill the macro table.
  CFilename(const wchar_t *name);
  /// Copies the text unchanged. @{
  CFilename(const CFilename &) = default;
  CFilename &operator=(const CFilename &name);
  ///@}
  ~CFilename() override; ///< The file stays.

  /// Takes `name` in its normal form: `/` becomes `\`, and `.`, `..` and doubled `\` are removed where possible. @{
  const CFilename &operator=(const char *name);
  const CFilename &operator=(const CString &name);
  ///@}

  /// The drive letter in upper case; that of the current drive if the name has none.
  char GetDrive() const;
  /// The first byte of the last character; 0 for an empty name.
  char GetLastChar() const;
  /// The letter that GetDrive returns, followed by `:\`.
  CFilename GetRoot() const;
  /// The folder without its drive and without its last `\`. A name without `\` is returned whole, without its drive.
  CFilename GetDir() const;
  /// The text before the last `\`, empty if there is none. A root keeps its `\`.
  CFilename GetPath() const;
  /// The last segment up to its first dot; the whole segment if it begins with a dot or has none.
  CFilename GetName() const;
  /// The last segment from its first dot on, in upper case; empty if it has no dot.
  CFilename GetExt() const;
  /// The last segment.
  CFilename GetNameExt() const;
  /// The number of segments. The root of a drive and a leading `\` do not count; the empty segment in a leading `\\`
  /// does.
  int GetSegmentCount() const;
  /// The name up to and including segment `n`, counted from 0.
  CFilename GetPathSegment(int n) const;

  /// Appends `ch`. A `:`, `\` or `.` is not appended directly after another of these, except a `\` after a `:`.
  void Append(char ch);
  /// Appends a `\`, as Append does.
  void AppendSlash();
  /// Joins a name to this one with one `\` between them. There is none if either is empty, if `name` begins with `:`,
  /// `.` or a blank, or if this name ends with `.`. @{
  const CFilename &operator+=(const CFilename &name);
  const CFilename &operator+=(const CString &name);
  const CFilename &operator+=(const char *name);
  ///@}
  /// Joins the text after the last `\` of `name`.
  CFilename &AppendName(const char *name);
  /// Replaces the extension, which begins at the first dot of the last segment, with `ext`, whose leading dot is
  /// optional. A segment that begins with a dot has no extension to replace. A null or empty `ext` only removes.
  CFilename &AppendExt(const char *ext);
  /// Removes trailing `\` and then the last segment with the `\` before it. Without a `\` the rest stays.
  const CFilename &operator--();

  /// Whether the name has a drive followed by `\`, or is a network name. Its macros are expanded first, if all of them
  /// have a value.
  bool IsAbsolute() const;
  /// The opposite of IsAbsolute.
  bool IsRelative() const;
  /// 1 when the name begins with `\`, not counting a drive. No macro is expanded.
  int AbsPathName() const;
  /// 1 when the name has a drive or a segment that begins with a dot, so that FindFile does not use its search path.
  int CurDirRelPathName() const;
  /// Whether the first two `$` enclose the name of a macro that has a value.
  bool IncludesMacro() const;

  // Operations on the file. They use the text unchanged, so a caller resolves the name first.

  /// 1 when there is a file or directory with that name, else 0.
  int FileExists() const;
  /// 0 when the file exists and may be written, else 1.
  int ReadOnly() const;
  /// Sets or clears the read-only attribute. 0 on failure.
  int SetReadOnly(int on) const;
  /// Removes the file, even if it is read-only, and returns 1. Returns 0 if there is none; throws CFileException* when
  /// it cannot be removed.
  int Remove() const;
  /// The low 32 bits of the size in bytes, never negative; 0 when there is no such file.
  long FileSize() const;
  /// Makes the directory, one level. Returns 0 when it exists afterwards, 1 when a file has its name, -1 on failure.
  int mkDir() const;
  /// Copies the file with its times and attributes and replaces `dest`. Returns 0 on success; 1 when there is no memory
  /// for a buffer; 2 when the source cannot be opened; 3 when `dest` cannot be opened; 4 when the source returned fewer
  /// bytes than its size; 5 when reading or writing failed. With 4 and 5, `dest` is removed, but it keeps its bytes if
  /// the first read failed. Throws CFileException* when the attributes cannot be set.
  int CopyFileA(const char *dest) const;
  /// Sets the times of the file to now and returns 0. Throws CFileException* when that fails.
  int Touch() const;
  /// 1 for a directory, and for any drive root such as `Q:\` even if there is no such drive; else 0.
  int IsDirectory() const;
  /// Renames the file, takes the normalised `newName` as the text, and returns 0. On failure returns the cause of the
  /// CFileException and keeps the text.
  unsigned long Rename(CString &newName);
  /// The short form of the name; empty if the platform has none.
  CString GetShortFileName() const;

  // Resolution.

  /// Writes the full path to `out`, which may be this object. Macros are expanded first. If the name is not absolute
  /// then, it is resolved below `defaultDir`, and if that does not make it absolute, below the current directory. `C:x`
  /// is resolved below the current directory of that drive, and `\x` on the current drive. A host path counts as its
  /// drive form. For an empty name the result is `defaultDir` with its macros unexpanded. Returns false, and leaves
  /// `out` unchanged, only when the current directory is needed and not known.
  bool GetAbsolute(CFilename &out, const char *defaultDir) const;
  /// Writes the form to store in a file to `out`: relative to `base` (a folder without a `\` at its end, or null) if
  /// the file is below `base`, or below its parent and that is not the root of a drive; else the result of GetBestFit.
  /// A name that begins with `$` is only normalised. Always returns true.
  bool GetRelative(CFilename &out, const char *base) const;
  /// Writes to `out` the name with one macro put in for its value: the longest value that occurs in the name, and of
  /// equally long ones the first in the table. Always returns true.
  bool GetBestFit(CFilename &out) const;
  /// The name relative to the longest folder of `searchPath` that contains it, or the whole name. The folders are
  /// separated by `;`, and the first empty one ends the list.
  CFilename GetRelativePathName(const CString &searchPath) const;
  /// 1 when the file exists below `dir`, or at the name itself if `dir` is null, with its full path in `found`.
  /// Otherwise 0, with `found` unchanged.
  int FileExists(CFilename &found, const char *dir) const;
  /// Looks, as FileExists does, in the current directory and then in each folder of `searchPath`, up to the first empty
  /// one. A name that is rooted, has a drive, or has a segment that begins with a dot is only looked for at its own
  /// location.
  int FindFile(CFilename &found, const CString &searchPath) const;
  /// The name for display: folders are replaced by `...` from the left until it has at most `maxLength` bytes. Once no
  /// folder is left to replace, it is the last segment, of any length.
  CString Smoosh(int maxLength) const;

protected:
  /// `name` with `/` replaced by `\`, and with `..\`, `.\` and doubled `\` removed where possible.
  CFilename Normalize(const char *name) const;
  /// IsAbsolute for another name.
  bool IsAbsolute(const CMacroString &name) const;
  /// Removes `prefix` from the start of the text, if it is there.
  void Strip(CString prefix);
  /// `prefix` followed by the text, with one `\` between them.
  CFilename Prefix(const char *prefix) const;
  /// If the value of the macro occurs in `source` and is longer than `best` bytes, writes `source` with the macro in
  /// its place to `out` and sets `best` to that length. An empty value never fits.
  void TryToFit(CFilename &source, const char *macroName, CFilename &out, int &best) const;
};

/// `left` joined with `right`, as CFilename::operator+= does it. @{
KESTRUNE_API CFilename operator+(const CFilename &left, const CFilename &right);
KESTRUNE_API CFilename operator+(const CFilename &left, const char *right);
KESTRUNE_API CFilename operator+(const CFilename &left, const CString &right);
KESTRUNE_API CFilename operator+(const char *left, const CFilename &right);
KESTRUNE_API CFilename operator+(const CString &left, const CFilename &right);
///@}

/// Item `index`, counted from 0, of a search path whose items are separated by `;`; empty if there are fewer.
KESTRUNE_API CString GetSearchPathItem(const CString &searchPath, int index);
