#include "kestrune/names/filename.h"
#include "kestrune/names/macro_expansion.h"
#include "kestrune/platform/c_runtime.h"
#include "kestrune/platform/drives.h"
#include "kestrune/platform/file.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace {

/// A host path in drive form, and a network name in host style with `\\` at its start; any other name unchanged.
CFilename DriveForm(const char *name) {
  CString text = kestrune::platform::ToDrivePath(name);
  if (text.View().starts_with("//"))
    text = "\\\\" + text.Mid(2);
  return CFilename(text);
}

/// The current directory of the drive `letter`, in drive form; empty if it is not known or does not fit in `size`
/// bytes.
CString DirectoryOfDrive(char letter, int size) {
  std::string buffer(static_cast<std::size_t>(size), '\0');
  const int drive = static_cast<int>(_mbctoupper(static_cast<unsigned char>(letter))) - 64;
  return CString(_getdcwd(drive, buffer.data(), size));
}

CString WithoutLeadingSlashes(const CMBString &text) {
  const std::size_t first = text.View().find_first_not_of('\\');
  return first == std::string_view::npos ? CString() : text.Mid(static_cast<int>(first));
}

/// If `value` occurs in `source` and is longer than `best`, writes `source` with `name` in its place to `out`.
void Fit(const CFilename &source, const char *value, const char *name, CFilename &out, int &best) {
  const int length = static_cast<int>(std::string_view(value).size());
  if (length == 0 || length <= best)
    return;
  CString text = source;
  const int position = text.MakeLower().Find(CString(value).MakeLower());
  if (position < 0)
    return;
  best = length;
  out.Format("%s%s%s", static_cast<const char *>(source.Left(position)), name,
             static_cast<const char *>(source.Mid(position + length)));
}

} // namespace

CFilename CFilename::Prefix(const char *prefix) const {
  const CMBString front = CString(prefix);
  CFilename result;
  if (IsEmpty()) {
    result = front;
    return result;
  }
  const bool slashBehind = GetAt(0) == '\\';
  const bool slashBefore = *front.GetCharLast() == '\\';
  CString text = front;
  if (!slashBehind && !slashBefore)
    text += '\\';
  return CFilename(text += slashBehind && slashBefore ? Mid(1) : *this);
}

bool CFilename::GetAbsolute(CFilename &out, const char *defaultDir) const {
  CFilename work = DriveForm(*this);
  CFilename dir = DriveForm(defaultDir);
  const CString givenDir = dir;
  work.Strip(".\\");
  dir.Strip(".\\");
  bool done = work.Explode(work, 10);
  work = DriveForm(work);
  done = done && IsAbsolute(work);
  if (!done) {
    if (work.GetLength() >= 3 && work[1] == ':' && work[2] != '\\') {
      const CString directory = DirectoryOfDrive(work[0], 255);
      if (!directory.IsEmpty()) {
        work.Delete(0, 2);
        work = work.Prefix(directory);
        done = true;
      }
    } else if (!work.IsEmpty() && !givenDir.IsEmpty() && work[0] != '\\') {
      work = work.Prefix(dir);
      const bool complete = work.Explode(work, 10);
      work = DriveForm(work);
      done = complete && IsAbsolute(work);
    }
    if (work.GetLength() >= 2 && work[0] == '\\' && work[1] != '\\') {
      const char drive[] = {static_cast<char>(_getdrive() + 64), ':', '\0'};
      work.Insert(0, drive);
      done = true;
    }
    if (work.IsEmpty()) {
      work = givenDir;
    } else if (!done) {
      char directory[255];
      const DWORD length = GetCurrentDirectoryA(sizeof directory, directory);
      if (length == 0 || length >= sizeof directory)
        return false;
      work = work.Prefix(directory);
    }
  }
  out = Normalize(work);
  return true;
}

bool CFilename::GetRelative(CFilename &out, const char *base) const {
  CFilename full = DriveForm(*this);
  CFilename folder = DriveForm(base);
  if (full[0] == '$') {
    out = Normalize(full);
    return true;
  }
  folder.Explode(folder, 10);
  full.Explode(full, 10);
  folder = DriveForm(folder);
  full = DriveForm(full);
  CString fullLower = full;
  CMBString folderLower = folder;
  fullLower.MakeLower();
  folderLower.MakeLower();
  full.GetBestFit(out);

  if (!folder.IsEmpty() && fullLower != folderLower) {
    if (fullLower.View().starts_with((folderLower + "\\").View())) {
      out = CFilename(WithoutLeadingSlashes(full.Mid(folder.GetLength())));
    } else {
      const int end = std::max(folderLower.ReverseFind('\\'), folderLower.ReverseFind('/'));
      if (end > 0 && folderLower[end - 1] != ':') {
        const CString parent = folderLower.Left(end) + "\\";
        if (fullLower.View().starts_with(parent.View()))
          out = "..\\" + WithoutLeadingSlashes(full.Mid(parent.GetLength()));
      }
    }
  }
  out = Normalize(out);
  return true;
}

bool CFilename::GetBestFit(CFilename &out) const {
  const CFilename source(*this);
  out = source;
  int best = -1;
  MacroExpansion expansion(source);
  for (int i = 0; i < GetMacroCount(); ++i)
    if (const std::string *value = expansion.valueOf(i))
      Fit(source, value->c_str(), GetMacroName(i), out, best);
  return true;
}

void CFilename::TryToFit(CFilename &source, const char *macroName, CFilename &out, int &best) const {
  const CString name(macroName);
  CString value;
  if (GetValue(name, value, 10))
    Fit(source, value, name, out, best);
}

CFilename CFilename::GetRelativePathName(const CString &searchPath) const {
  CFilename result(*this);
  int best = 0;
  for (int index = 0;; ++index) {
    const CString item = GetSearchPathItem(searchPath, index);
    if (item.IsEmpty())
      return result;
    const int length = item.GetLength();
    if (length > best && GetLength() > length && GetAt(length) == '\\' && Left(length).CollateNoCase(item) == 0) {
      best = length;
      result = Mid(length + 1);
    }
  }
}

CString GetSearchPathItem(const CString &searchPath, int index) {
  std::string_view rest = searchPath.View();
  for (; index > 0; --index) {
    const std::size_t end = rest.find(';');
    if (end == std::string_view::npos)
      return {};
    rest.remove_prefix(end + 1);
  }
  const std::string_view item = rest.substr(0, rest.find(';'));
  return index < 0 ? CString() : CString(item);
}

int CFilename::FileExists(CFilename &found, const char *dir) const {
  const CFilename start = DriveForm(dir != nullptr ? dir : static_cast<const char *>(*this));
  const bool hasDrive = start.GetLength() >= 2 && start[1] == ':';
  if (!hasDrive && start.View().starts_with("\\\\"))
    return 0; // a network name: the current drive would make it a local one
  const CString rest = hasDrive ? start.Mid(2) : start;
  const char drive[] = {hasDrive ? start[0] : start.GetDrive(), ':', '\0'};
  CFilename path(drive);
  if (rest[0] != '\\') {
    path = CFilename(DirectoryOfDrive(drive[0], 260));
    if (path.IsEmpty())
      return 0;
    if (path.GetLastChar() != '\\')
      path.CString::operator+=('\\');
  }
  path += rest;
  if (dir != nullptr)
    path += *this;
  if (GetFileAttributesA(path) == INVALID_FILE_ATTRIBUTES)
    return 0;

  for (int at = path.Find("\\."); at >= 0;) {
    const int dots = path[at + 2] == '.' ? 2 : 1;
    const char behind = path[at + 1 + dots];
    if (behind != '\\' && behind != '\0') { // a name that begins with a dot
      at = path.Find("\\.", at + 1);
      continue;
    }
    // A `..` in the root of a drive means the root itself.
    const int cut = dots == 1 ? at : std::max(path.Left(at).ReverseFind('\\'), path.Find('\\'));
    path = path.Left(cut) + path.Mid(at + 1 + dots);
    at = path.Find("\\.");
  }
  found = path;
  return 1;
}

int CFilename::FindFile(CFilename &found, const CString &searchPath) const {
  const CFilename name = DriveForm(*this);
  if (name.CurDirRelPathName() || name.AbsPathName())
    return name.FileExists(found, nullptr);
  if (name.FileExists(found, ""))
    return 1;
  for (int index = 0;; ++index) {
    CFilename item;
    item = GetSearchPathItem(searchPath, index);
    if (item.IsEmpty())
      return 0;
    if (name.FileExists(found, item))
      return 1;
  }
}

CString CFilename::Smoosh(int maxLength) const {
  CMBString result = *this;
  while (result.GetLength() > maxLength) {
    const CString head = result.Left(3);
    result = result.Mid(head.GetLength());
    const int slash = result.Find('\\', result.View().starts_with("...") ? 4 : 0);
    if (slash < 0)
      return GetNameExt();
    result = head + "..." + result.Mid(slash);
  }
  return result;
}
