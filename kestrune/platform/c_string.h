#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/types.h"

#include <compare>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// The platform's narrow string: a byte sequence in the code page of the process, readable at any time as a
/// zero-terminated text. Lengths, offsets and counts are bytes. Case is ASCII case, and in a double-byte page a trail
/// byte is never taken for a character. Each object owns its text. Not safe to share between threads while it changes.
class KESTRUNE_API CString {
public:
  CString() noexcept = default;
  /// A copy of `text`; null counts as empty.
  CString(const char *text) : CString(text != nullptr ? std::string_view(text) : std::string_view()) {}
  /// `text` converted to the code page; null counts as empty.
  CString(const wchar_t *text);
  /// `character`, `count` times.
  explicit CString(char character, int count = 1);
  /// The `length` bytes at `text`.
  CString(const char *text, int length);
  explicit CString(std::string_view text) : CString() { assign(text); }
  CString(const CString &other) : CString() { *this = other; }
  CString(CString &&other) noexcept {
    std::memcpy(m_bytes, other.m_bytes, sizeof m_bytes);
    other.setEmpty();
  }
  ~CString() { release(); }

  /// A text that lives as long as the process, such as a literal: it is not copied.
  static CString OfLiteral(const char *text);

  CString &operator=(const CString &other);
  CString &operator=(CString &&other) noexcept;
  CString &operator=(const char *text);
  CString &operator=(const wchar_t *text);
  CString &operator+=(const CString &text) { return append(text.View()), *this; }
  CString &operator+=(const char *text);
  CString &operator+=(char character) { return append({&character, 1}), *this; }

  /// The text; valid until it changes.
  operator const char *() const noexcept { return data(); }
  std::string_view View() const noexcept { return {data(), size()}; }
  int GetLength() const noexcept { return static_cast<int>(size()); }
  bool IsEmpty() const noexcept { return size() == 0; }
  void Empty() noexcept {
    release();
    setEmpty();
  }
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

  friend bool operator==(const CString &a, const CString &b) noexcept { return a.View() == b.View(); }
  friend bool operator==(const CString &a, const char *b) { return a.Compare(b) == 0; }
  friend std::strong_ordering operator<=>(const CString &a, const CString &b) noexcept { return a.View() <=> b.View(); }
  friend std::strong_ordering operator<=>(const CString &a, const char *b) { return a.Compare(b) <=> 0; }
  friend CString operator+(const CString &a, const CString &b) { return CString(a) += b; }
  friend CString operator+(const CString &a, const char *b) { return CString(a) += b; }
  friend CString operator+(const char *a, const CString &b) { return CString(a) += b; }
  friend CString operator+(const CString &a, char b) { return CString(a) += b; }

private:
  // Values and tags are texts of a few bytes, two to each of the many members of a record, and most tags are literals.
  // So a string takes 16 bytes: up to 15 of text in place, or a pointer and a length. The last byte tells which: 15
  // less the length of a text in place (so that it ends a text of 15), or one of the marks below.
  static constexpr std::size_t kInPlace = 15;
  static constexpr unsigned char kOnHeap = 0x40;
  static constexpr unsigned char kLiteral = 0x80;

  unsigned char mark() const noexcept { return static_cast<unsigned char>(m_bytes[kInPlace]); }
  bool isInPlace() const noexcept { return mark() <= kInPlace; }
  const char *pointer() const noexcept {
    const char *text = nullptr;
    std::memcpy(&text, m_bytes, sizeof text);
    return text;
  }
  const char *data() const noexcept { return isInPlace() ? m_bytes : pointer(); }
  std::size_t size() const noexcept {
    if (isInPlace())
      return kInPlace - mark();
    std::uint32_t length = 0;
    std::memcpy(&length, m_bytes + sizeof(char *), sizeof length);
    return length;
  }
  void setEmpty() noexcept {
    m_bytes[0] = '\0';
    m_bytes[kInPlace] = kInPlace;
  }
  void release() noexcept {
    if (mark() == kOnHeap)
      freeHeap();
  }

  void freeHeap() noexcept;
  void setPointer(const char *text, std::size_t length, unsigned char mark) noexcept;
  void setLength(std::size_t length) noexcept;
  std::size_t capacity() const noexcept;
  /// Room for `length` bytes that belongs to this object, with the first bytes of the text in it.
  char *reserve(std::size_t length);
  void assign(std::string_view text);
  void append(std::string_view text);
  void replace(std::size_t start, std::size_t count, std::string_view text);
  /// Cuts the text or fills it up with zeros.
  void resize(std::size_t length);

  alignas(8) char m_bytes[kInPlace + 1] = {'\0', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, kInPlace};
};

namespace kestrune::platform {

/// The text with that id in the string table of the library, or null. The platform only knows that there is a table;
/// the library defines it.
const char *FindStringResource(UINT id);

} // namespace kestrune::platform
