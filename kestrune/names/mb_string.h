#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/c_string.h"

/// A text in the multi-byte code page that can be walked and sliced by whole characters. It adds no data to CString,
/// and its destructor is not virtual. Positions are pointers into the text, valid until it changes.
class KESTRUNE_API CMBString : public CString {
public:
  /// Empty, or a copy of the text. @{
  CMBString() = default;
  CMBString(const CString &text) : CString(text) {}
  CMBString(const CMBString &) = default;
  ///@}
  /// `text` converted to the code page.
  CMBString(const wchar_t *text) : CString(text) {}

  /// Copies the bytes up to the first terminator; null counts as empty. @{
  CMBString &operator=(const CMBString &text);
  CMBString &operator=(const CString &text);
  CMBString &operator=(const char *text);
  ///@}

  /// The character after the one at `p`; `p` itself at the terminator.
  const char *GetCharNext(const char *p) const;
  /// The character before `p`, never before `start`.
  const char *GetCharPrev(const char *start, const char *p) const;
  /// Start of the text.
  const char *GetCharFirst() const;
  /// Start of the last character; the terminator if the text is empty.
  const char *GetCharLast() const;
  /// Start of character `n`, counted from 0; the terminator if there are fewer.
  const char *GetCharAt(int n) const;
  /// The number of characters.
  int GetCharLength() const;

  /// The first `n` characters: none if `n` is negative, all if there are fewer.
  CString LeftChar(int n) const;
  /// The text from character `n`, counted from 0, to the end; empty if there are fewer.
  CString MidChar(int n) const;

  /// The first or last `n` bytes, and all of a character that the cut would divide. A negative `n` is 0. @{
  CString Left(int n) const;
  CString Right(int n) const;
  ///@}
  /// The bytes from offset `first` on, at most `count`; a start inside a character moves back to its start. A negative
  /// `first` is 0. @{
  CString Mid(int first) const;
  CString Mid(int first, int count) const;
  ///@}
};
