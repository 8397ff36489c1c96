#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/types.h"

#include <array>
#include <compare>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// The platform's narrow string: a byte sequence in the code page of the process, always readable as a zero-terminated
/// text. Lengths, offsets and counts are in bytes. Case is ASCII case, and a trail byte of a double-byte page is never
/// taken for a character. Each object owns its text. Threads may not share an object while it changes.
class KESTRUNE_API CString {
public:
  CString() noexcept = default;
  /// A copy of `text`; null counts as empty.
  CString(const char *text) : CString(text != nullptr ? std::string_view(text) : std::string_view()) {}
  /// `text` converted to the code page; null counts as empty.
  CString(const wchar_t *text);
  /// `count` times `character`; a negative count is 0.
  explicit CString(char character, int count = 1);
  /// The `length` bytes at `text`; null or a negative length gives an empty text.
  CString(const char *text, int length);
  explicit CString(std::string_view text) : CString() { assign(text); }
  CString(const CString &other) : CString() { *this = other; }
  CString(CString &&other) noexcept {
    std::memcpy(m_bytes, other.m_bytes, sizeof m_bytes);
    other.setEmpty();
  }
  ~CString() { release(); }

  /// Refers to `text` without copying it: it must live as long as the process, as a literal does.
  static CString OfLiteral(const char *text);

  CString &operator=(const CString &other);
  CString &operator=(CString &&other) noexcept;
  CString &operator=(const char *text);
  CString &operator=(const wchar_t *text);
  CString &operator+=(const CString &text) { return append(text.View()), *this; }
  CString &operator+=(const char *text);
  CString &operator+=(char character) { return append({&character, 1}), *this; }

  /// The text; valid until the object changes.
  operator const char *() const noexcept { return data(); }
  std::string_view View() const noexcept { return {data(), size()}; }
  int GetLength() const noexcept { return static_cast<int>(size()); }
  bool IsEmpty() const noexcept { return size() == 0; }

  /// Texts with equal keys are equal, for as long as the process lives; the reverse does not hold. False for a text on
  /// the heap, which has none: its memory comes back with another text.
  using LastingKey = std::array<std::uint64_t, 2>;
  bool GetLastingKey(LastingKey &key) const noexcept {
    std::memcpy(key.data(), m_bytes, sizeof m_bytes);
    return mark() != kOnHeap;
  }

  void Empty() noexcept {
    release();
    setEmpty();
  }
  /// The byte at `index`, which may be that of the terminator; a bad index throws CInvalidArgException*.
  char GetAt(int index) const;
  char operator[](int index) const { return GetAt(index); }
  void SetAt(int index, char character);

  int Compare(const char *other) const;
  int CompareNoCase(const char *other) const;
  int CollateNoCase(const char *other) const { return CompareNoCase(other); }

  /// Offset of the first match at or after `start`, or -1.
  int Find(char character, int start = 0) const;
  int Find(const char *text, int start = 0) const;
  /// Offset of the last match, or -1.
  int ReverseFind(char character) const;

  /// A negative count or start is 0; a count past the end takes the rest.
  CString Left(int count) const;
  CString Mid(int first) const;
  CString Mid(int first, int count) const;
  CString Right(int count) const;

  /// These return the new length.
  int Delete(int index, int count = 1);
  int Insert(int index, char character);
  int Insert(int index, const char *text);
  /// Replaces each `from` by `to` and returns how many.
  int Replace(char from, char to);
  /// Removes the characters of `set` from both ends.
  CString &Trim(const char *set);
  CString &TrimRight(char character);
  CString &MakeUpper();
  CString &MakeLower();

  /// Replaces the text by printf-style output; the text itself may be one of the arguments.
  void Format(const char *format, ...);
  void FormatV(const char *format, va_list arguments);
  /// Loads the text with that id from the library's string table. Empties the text and returns false if there is none.
  bool LoadString(UINT id);

  /// A writable buffer for at least `minimum` bytes and a terminator; ReleaseBuffer ends its use.
  char *GetBuffer(int minimum);
  char *GetBufferSetLength(int length);
  /// Cuts the text at `length`, or at the first terminator if `length` is -1.
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
  // A record has many members, each with a value and a tag of a few bytes, and most tags are literals. So a string
  // takes 16 bytes: up to 15 bytes of text in place, or a pointer and a length. The last byte says which: for a text in
  // place it is 15 minus the length, so that it also terminates a text of 15 bytes; otherwise it is one of the marks
  // below.
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
  /// A buffer for `length` bytes that belongs to this object and contains the first bytes of the text.
  char *reserve(std::size_t length);
  void assign(std::string_view text);
  void append(std::string_view text);
  void replace(std::size_t start, std::size_t count, std::string_view text);
  /// Cuts the text, or extends it with zeros.
  void resize(std::size_t length);

  alignas(8) char m_bytes[kInPlace + 1] = {'\0', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, kInPlace};
};

namespace kestrune::platform {

/// The text with that id in the library's string table, or null. Defined with the texts, not in the platform.
const char *FindStringResource(UINT id);

} // namespace kestrune::platform
