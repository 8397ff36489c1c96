#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/c_string.h"

/// A text in the multi-byte code page that can be walked and cut by whole characters. It adds no data to CString, and
/// its destructor is not virtual. Positions are pointers into the text, valid until it changes.
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
  /// Start of the last character; the terminator of an empty text.
  const char *GetCharLast() const;
  /// Start of character number `n`, counted from 0; the terminator past the end.
  const char *GetCharAt(int n) const;
  /// The number of characters.
  int GetCharLength() const;

  /// The first `n` characters, whole.
  CString LeftChar(int n) const;
  /// The text from character number `n`, counted from 0, to the end.
  CString MidChar(int n) const;

  /// Slices by byte count, as those of CString; but where the cut at their open side would fall inside a character,
  /// that character comes in whole. `count` of the two-argument form stays as it is.
  CString Left(int n) const;
  CString Right(int n) const;
  CString Mid(int first) const;
  CString Mid(int first, int count) const;
};
