#include "kestrune/names/filename.h"

#include "kestrune/platform/c_runtime.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/drives.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

bool HasDrive(const CString &name) { return name.GetLength() >= 2 && name[1] == ':'; }

bool IsSeparator(char ch) { return ch == ':' || ch == '\\' || ch == '.'; }

/// The offset of the last segment: after the last `\`, or after the first colon if there is none.
int LastSegment(const CString &name) {
  const int slash = name.ReverseFind('\\');
  return slash >= 0 ? slash + 1 : name.Find(':') + 1;
}

/// The offset of the first dot after the last `\`, or -1.
int ExtensionDot(const CString &name) { return name.Find('.', name.ReverseFind('\\') + 1); }

/// Removes each `..\` with the folder before it, up to the first that has no folder to remove. If a longer segment ends
/// in `..\`, the whole segment is removed with it.
std::string FoldParents(const char *name) {
  std::string text;
  std::vector<std::size_t> slashes; // offsets in `text`; found by character, as a trail byte may equal `\`
  for (const char *p = name; *p != '\0';) {
    const char *const next = CharNextA(p);
    const bool isSlash = *p == '\\';
    text.append(p, next);
    p = next;
    if (!isSlash)
      continue;
    if (!text.ends_with("..\\")) {
      slashes.push_back(text.size() - 1);
      continue;
    }
    if (!slashes.empty() && slashes.back() + 1 == text.size() - 3)
      slashes.pop_back();
    if (slashes.empty())
      return text + p;
    text.resize(slashes.back() + 1);
  }
  return text;
}

/// Removes each `.\` except at the start of the name and at the end of a `..\`.
std::string DropCurrent(const std::string &name) {
  std::string text;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (i > 0 && name[i - 1] != '.' && name.compare(i, 2, ".\\") == 0)
      ++i;
    else
      text += name[i];
  }
  return text;
}

/// Replaces each run of `\` by one, up to the first run at the start of the name or after a colon.
std::string CollapseSlashes(const std::string &name) {
  std::string text;
  for (const char *p = name.c_str(); *p != '\0';) {
    const char *const next = CharNextA(p);
    if (p[0] == '\\' && p[1] == '\\') {
      if (text.empty() || text.back() == ':')
        return text + p;
    } else {
      text.append(p, next);
    }
    p = next;
  }
  return text;
}

} // namespace

CFilename::CFilename() = default;

CFilename::CFilename(const char *name) : CMacroString(name) {}

CFilename::CFilename(const CString &name) : CMacroString(static_cast<const char *>(name)) {}

CFilename::CFilename(const wchar_t *name) : CMacroString(name) {}

CFilename::~CFilename() = default;

CFilename &CFilename::operator=(const CFilename &name) {
  CMacroString::operator=(name);
  return *this;
}

const CFilename &CFilename::operator=(const char *name) { return *this = Normalize(name); }

const CFilename &CFilename::operator=(const CString &name) { return *this = Normalize(name); }

CFilename CFilename::Normalize(const char *name) const {
  CString text(name);
  // What follows changes nothing else; this covers most names.
  if (text.View().find('/') == std::string_view::npos && text.View().find("\\\\") == std::string_view::npos &&
      text.View().find(".\\") == std::string_view::npos)
    return CFilename(text);
  text.Replace('/', '\\');
  return CFilename(CollapseSlashes(DropCurrent(FoldParents(text))).c_str());
}

char CFilename::GetDrive() const {
  if (HasDrive(*this))
    return static_cast<char>(_mbctoupper(static_cast<unsigned char>(GetAt(0))));
  return static_cast<char>(_getdrive() + 64);
}

char CFilename::GetLastChar() const { return *GetCharLast(); }

CFilename CFilename::GetRoot() const {
  CFilename root;
  root = CString(GetDrive());
  root += ":";
  root += "\\";
  return root;
}

CFilename CFilename::GetDir() const {
  const int skip = HasDrive(*this) ? 2 : 0;
  const int slash = ReverseFind('\\');
  CFilename dir;
  dir = Mid(skip, (slash >= 0 ? slash : GetLength()) - skip);
  return dir;
}

CFilename CFilename::GetPath() const {
  CFilename path;
  const int slash = ReverseFind('\\');
  if (slash < 0)
    return path;
  CString text = Left(slash);
  if (text.IsEmpty() || (text.GetLength() == 2 && text[1] == ':'))
    text += '\\';
  path = text;
  return path;
}

CFilename CFilename::GetName() const {
  const CMBString segment = Mid(LastSegment(*this));
  const int dot = segment.Find('.');
  CFilename name;
  name = dot >= 1 ? segment.Left(dot) : segment;
  return name;
}

CFilename CFilename::GetExt() const {
  CFilename ext;
  if (const int dot = ExtensionDot(*this); dot >= 0)
    ext = Mid(dot).MakeUpper();
  return ext;
}

CFilename CFilename::GetNameExt() const { return CFilename(Mid(LastSegment(*this))); }

int CFilename::GetSegmentCount() const {
  int count = 0;
  int start = 0;
  for (int slash = Find('\\'); slash >= 0; slash = Find('\\', start)) {
    start = slash + 1;
    if (start != 1 && !(start == 3 && GetAt(1) == ':'))
      ++count;
  }
  return start < GetLength() ? count + 1 : count;
}

CFilename CFilename::GetPathSegment(int n) const {
  CFilename segment(*this);
  for (int drop = GetSegmentCount() - std::max(n, 0) - 1; drop > 0; --drop)
    --segment;
  return segment;
}

void CFilename::Append(char ch) {
  const char last = GetLastChar();
  if (!IsSeparator(ch) || !IsSeparator(last) || (ch == '\\' && last == ':'))
    CString::operator+=(ch);
}

void CFilename::AppendSlash() { Append('\\'); }

const CFilename &CFilename::operator+=(const CFilename &name) {
  if (IsEmpty())
    return *this = name;
  if (name.IsEmpty())
    return *this;
  const char first = name[0];
  const CString tail = first == '\\' ? name.Mid(1) : name; // a copy: `name` may be this one
  if (first != ':' && first != '.' && first != ' ')
    Append('\\');
  CString::operator+=(tail);
  return *this;
}

const CFilename &CFilename::operator+=(const CString &name) { return *this += CFilename(name); }

const CFilename &CFilename::operator+=(const char *name) { return *this += CFilename(name); }

CFilename &CFilename::AppendName(const char *name) {
  const CMBString given = CString(name);
  const CString segment = given.Mid(given.ReverseFind('\\') + 1);
  if (!IsEmpty())
    Append('\\');
  *this += segment;
  return *this;
}

CFilename &CFilename::AppendExt(const char *ext) {
  const CMBString extension = CString(ext);
  const int dot = ExtensionDot(*this);
  if (dot > ReverseFind('\\') + 1)
    *this = Left(dot);
  if (extension.IsEmpty())
    return *this;
  Append('.');
  *this += extension[0] == '.' ? extension.Mid(1) : extension;
  return *this;
}

const CFilename &CFilename::operator--() {
  TrimRight('\\');
  if (const int slash = ReverseFind('\\'); slash >= 0)
    *this = Left(slash);
  return *this;
}

void CFilename::Strip(CString prefix) {
  if (!prefix.IsEmpty() && View().starts_with(prefix.View()))
    Delete(0, prefix.GetLength());
}

bool CFilename::IsAbsolute() const { return IsAbsolute(*this); }

bool CFilename::IsAbsolute(const CMacroString &name) const {
  CString text;
  if (!name.Explode(text, 10))
    text = name;
  return text.View().starts_with("\\\\") || text.View().substr(std::min(text.GetLength(), 1)).starts_with(":\\");
}

bool CFilename::IsRelative() const { return !IsAbsolute(); }

int CFilename::AbsPathName() const { return GetAt(HasDrive(*this) ? 2 : 0) == '\\'; }

int CFilename::CurDirRelPathName() const { return HasDrive(*this) || GetAt(0) == '.' || Find("\\.") >= 0; }

bool CFilename::IncludesMacro() const {
  const int first = Find('$');
  const int second = first < 0 ? -1 : Find('$', first + 1);
  CString value;
  return second >= 0 && GetValue(Mid(first, second + 1 - first), value, 10);
}

CFilename operator+(const CFilename &left, const CFilename &right) { return CFilename(left) += right; }

CFilename operator+(const CFilename &left, const char *right) { return CFilename(left) += right; }

CFilename operator+(const CFilename &left, const CString &right) { return CFilename(left) += right; }

CFilename operator+(const char *left, const CFilename &right) { return CFilename(left) += right; }

CFilename operator+(const CString &left, const CFilename &right) { return CFilename(left) += right; }
