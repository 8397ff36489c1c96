#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/c_string.h"

/// A text in the multi-byte code page that can be walked and sliced by whole characters. It adds no data to CString,
/// and its destructor is not virtual. Positions are pointers into the text, valid until it changes.
class KESTRUNE_API CMBString : public CString {
public:
  CMBString() = default;
  CMBString(const CString &text) : CString(text) {}
  CMBString(const CMBString &) = default;
  /// `text` converted to the code page.
  CMBString(const wchar_t *text) : CString(text) {}

  /// Each copies the bytes up to the first terminator; null counts as empty.
  CMBString &operator=(const CMBString &text);
  CMBString &operator=(const CString &text);
  CMBString &operator=(const char *text);

  /// The character after the one at `p`; `p` itself at the terminator.
  const char *GetCharNext(const char *p) const;
  /// The character before `p`, never before `start`.
  const char *GetCharPrev(const char *start, const char *p) const;
  const char *GetCharFirst() const;
  /// Start of the last character; the terminator if the text is empty.
  const char *GetCharLast() const;
  /// Start of character `n`, counted from 0; the terminator if there are fewer.
  const char *GetCharAt(int n) const;
  int GetCharLength() const;

  /// The first `n` characters.
  CString LeftChar(int n) const;
  /// The text from character `n`, counted from 0, to the end.
  CString MidChar(int n) const;

  /// The slices of CString, by byte count. A cut that would fall inside a character includes the whole character. The
  /// two-argument Mid adjusts only its start.
  CString Left(int n) const;
  CString Right(int n) const;
  CString Mid(int first) const;
  CString Mid(int first, int count) const;
};
