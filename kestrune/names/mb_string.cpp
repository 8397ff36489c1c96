#include "kestrune/names/mb_string.h"

#include "kestrune/platform/code_page.h"

#include <algorithm>

namespace {

/// The character boundaries around a cut at byte `offset`: both are `offset` unless the cut falls inside a character.
struct Cut {
  int before, after;
};

/// Walks from the start of the text: the bytes around a cut may look like a lead and a trail byte without being such.
Cut CutAt(const CString &text, int offset) {
  if (offset <= 0 || offset >= text.GetLength())
    return {offset, offset};
  const char *const start = text;
  const char *const cut = start + offset;
  const char *p = start;
  while (p < cut) {
    const char *next = std::max<const char *>(CharNextA(p), p + 1); // steps over a terminator within the text
    if (next > cut)
      return {static_cast<int>(p - start), static_cast<int>(next - start)};
    p = next;
  }
  return {offset, offset};
}

} // namespace

CMBString &CMBString::operator=(const CMBString &text) { return *this = static_cast<const char *>(text); }

CMBString &CMBString::operator=(const CString &text) { return *this = static_cast<const char *>(text); }

CMBString &CMBString::operator=(const char *text) {
  CString::operator=(text);
  return *this;
}

const char *CMBString::GetCharNext(const char *p) const { return p == nullptr ? p : CharNextA(p); }

const char *CMBString::GetCharPrev(const char *start, const char *p) const {
  return start == nullptr || p == nullptr ? start : CharPrevA(start, p);
}

const char *CMBString::GetCharFirst() const { return *this; }

const char *CMBString::GetCharLast() const { return CharPrevA(GetCharFirst(), GetCharFirst() + GetLength()); }

const char *CMBString::GetCharAt(int n) const {
  const char *p = GetCharFirst();
  for (; n > 0 && *p != '\0'; --n)
    p = CharNextA(p);
  return p;
}

int CMBString::GetCharLength() const {
  int count = 0;
  for (const char *p = GetCharFirst(); *p != '\0'; p = CharNextA(p))
    ++count;
  return count;
}

CString CMBString::LeftChar(int n) const { return CString::Left(static_cast<int>(GetCharAt(n) - GetCharFirst())); }

CString CMBString::MidChar(int n) const { return CString::Mid(static_cast<int>(GetCharAt(n) - GetCharFirst())); }

CString CMBString::Left(int n) const { return CString::Left(CutAt(*this, n).after); }

CString CMBString::Right(int n) const {
  const int length = GetLength();
  return CString::Right(length - CutAt(*this, length - std::clamp(n, 0, length)).before);
}

CString CMBString::Mid(int first) const { return CString::Mid(CutAt(*this, first).before); }

CString CMBString::Mid(int first, int count) const { return CString::Mid(CutAt(*this, first).before, count); }
