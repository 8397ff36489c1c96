#pragma once

#include "kestrune/library/export.h"
#include "kestrune/platform/types.h"

#include <compare>
#include <cstdarg>
#include <string>
#include <string_view>

/// The platform's narrow string: a byte sequence in the code page of the process, readable at any time as a
/// zero-terminated text. Lengths, offsets and counts are bytes. Case is ASCII case, and in a double-byte page a trail
/// byte is never taken for a character. Each object owns its text. Not safe to share between threads while it changes.
class KESTRUNE_API CString {
public:
  CString() noexcept = default;
  /// A copy of `text`; null counts as empty.
  CString(const char *text) : m_text(text != nullptr ? text : "") {}
  /// `text` converted to the code page; null counts as empty.
  CString(const wchar_t *text);
  /// `character`, `count` times.
  explicit CString(char character, int count = 1);
  /// The `length` bytes at `text`.
  CString(const char *text, int length);
  CString(const CString &) = default;
  CString(CString &&) noexcept = default;
  ~CString() = default;

  CString &operator=(const CString &) = default;
  CString &operator=(CString &&) noexcept = default;
  CString &operator=(const char *text);
  CString &operator=(const wchar_t *text);
  CString &operator+=(const CString &text) { return m_text += text.m_text, *this; }
  CString &operator+=(const char *text);
  CString &operator+=(char character) { return m_text += character, *this; }

  /// The text; valid until it changes.
  operator const char *() const noexcept { return m_text.c_str(); }
  std::string_view View() const noexcept { return m_text; }
  int GetLength() const noexcept { return static_cast<int>(m_text.size()); }
  bool IsEmpty() const noexcept { return m_text.empty(); }
  void Empty() noexcept { m_text.clear(); }
  /// The byte at `index`, the terminator included; an index outside ends in AfxThrowInvalidArgException.
  char GetAt(int index) const;
  char operator[](int index) const { return GetAt(index); }
  void SetAt(int index, char character);

  int Compare(const char *other) const;
  int CompareNoCase(const char *other) const;
  int CollateNoCase(const char *other) const { return CompareNoCase(other); }

  /// Offset of the first match at or behind `start`, or -1.
  int Find(char character, int start = 0) const;
  int Find(const char *text, int start = 0) const;
  /// Offset of the last match, or -1.
  int ReverseFind(char character) const;

  /// Slices. A negative count or start counts as 0, a count past the end gives the rest.
  CString Left(int count) const;
  CString Mid(int first) const;
  CString Mid(int first, int count) const;
  CString Right(int count) const;

  /// Each returns the new length.
  int Delete(int index, int count = 1);
  int Insert(int index, char character);
  int Insert(int index, const char *text);
  /// Replaces one character by another; returns how many.
  int Replace(char from, char to);
  /// Removes the characters of `set` from both ends.
  CString &Trim(const char *set);
  CString &TrimRight(char character);
  CString &MakeUpper();
  CString &MakeLower();

  /// printf-style formatting; the result replaces the text, which may be an argument itself.
  void Format(const char *format, ...);
  void FormatV(const char *format, va_list arguments);
  /// Takes the text with that id from the library's string table. Without one the text is emptied; returns false.
  bool LoadString(UINT id);

  /// A writable buffer of at least `minimum` bytes and a terminator; ReleaseBuffer ends its use.
  char *GetBuffer(int minimum);
  char *GetBufferSetLength(int length);
  /// The text ends at `length`, or at the first terminator when `length` is -1.
  void ReleaseBuffer(int length = -1);

  friend bool operator==(const CString &a, const CString &b) noexcept { return a.m_text == b.m_text; }
  friend bool operator==(const CString &a, const char *b) { return a.Compare(b) == 0; }
  friend std::strong_ordering operator<=>(const CString &a, const CString &b) noexcept { return a.m_text <=> b.m_text; }
  friend std::strong_ordering operator<=>(const CString &a, const char *b) { return a.Compare(b) <=> 0; }
  friend CString operator+(const CString &a, const CString &b) { return CString(a) += b; }
  friend CString operator+(const CString &a, const char *b) { return CString(a) += b; }
  friend CString operator+(const char *a, const CString &b) { return CString(a) += b; }
  friend CString operator+(const CString &a, char b) { return CString(a) += b; }

private:
  std::string m_text;
};

namespace platform {

/// The text with that id in the string table of the library, or null. The platform only knows that there is a table;
/// the library defines it.
const char *FindStringResource(UINT id);

} // namespace platform
