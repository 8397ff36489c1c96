#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/types.h"

#include <array>
#include <compare>
#include <concepts>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>

/// \file
/// The platform's string.

class CXMLPersistent;

namespace kestrune {
/// A text of the standard library, and nothing that only converts to one: so that no other argument becomes ambiguous.
template <class Text>
concept StandardText = std::same_as<Text, std::string> || std::same_as<Text, std::string_view>;
/// A number that would be taken for a character.
template <class Number>
concept NumberNotCharacter = std::is_arithmetic_v<Number> && !std::same_as<Number, char>;
} // namespace kestrune

/// The platform's narrow string, with a std::hash: a byte sequence in the code page of the process, always readable as
/// a zero-terminated text. Lengths, offsets and counts are in bytes. Case is ASCII case, and a trail byte of a
/// double-byte page is never taken for a character. Copies share a long text until one of them changes, which nobody
/// notices: threads that have an object each are independent. Threads may not share an object while it changes.
class KESTRUNE_API CString {
public:
  CString() noexcept = default; ///< Empty.
  /// A copy of `text`; null counts as empty.
  CString(const char *text) : CString(text != nullptr ? std::string_view(text) : std::string_view()) {}
  /// `text` converted to the code page; null counts as empty.
  CString(const wchar_t *text);
  /// `count` times `character`; a negative count is 0.
  explicit CString(char character, int count = 1);
  /// The `length` bytes at `text`; null or a negative length gives an empty text.
  CString(const char *text, int length);
  /// A copy of `text`.
  explicit CString(std::string_view text) : CString() { assign(text); }
  /// A copy of `other`; the two share a long text.
  constexpr CString(const CString &other) : m_inside(other.m_inside) {
    if (!std::is_constant_evaluated() && isOnHeap())
      share();
  }
  /// Takes the text of `other`, which is empty afterwards.
  constexpr CString(CString &&other) noexcept : m_inside(other.m_inside) { other.m_inside = kEmpty; }
  /// Frees the text if no copy shares it.
  constexpr ~CString() {
    if (!std::is_constant_evaluated()) // a constant is never on the heap
      release();
  }

  /// Refers to `text` without copying it: it must live as long as the process, as a literal does. With `constexpr`, the
  /// object is made by the compiler: `static constexpr CString kTag = CString::OfLiteral("Key");`.
  static constexpr CString OfLiteral(const char *text) {
    return {Literal(), text != nullptr ? std::string_view(text) : std::string_view()};
  }

  class Constant;

  /// Replaces the text by a copy, or by the text of an object that is moved from, which is empty afterwards. Wide text
  /// is converted to the code page; null counts as empty. @{
  CString &operator=(const Constant &constant) noexcept;
  CString &operator=(const CString &other) {
    if (!isOnHeap() && !other.isOnHeap())
      m_inside = other.m_inside;
    else if (this != &other)
      *this = CString(other);
    return *this;
  }
  CString &operator=(CString &&other) noexcept {
    if (this != &other) {
      release();
      m_inside = other.m_inside;
      other.m_inside = kEmpty;
    }
    return *this;
  }
  CString &operator=(const char *text);
  CString &operator=(const wchar_t *text);
  template <kestrune::StandardText Text>
  CString &operator=(const Text &text) {
    assign(text);
    return *this;
  }
  ///@}
  /// Appends the text or character; null counts as empty. @{
  CString &operator+=(const CString &text) { return append(text.View()), *this; }
  CString &operator+=(const char *text);
  CString &operator+=(char character);
  template <kestrune::NumberNotCharacter Number>
  CString &operator+=(Number) = delete; // it would append the character with that code
  template <kestrune::StandardText Text>
  CString &operator+=(const Text &text) {
    append(text);
    return *this;
  }
  ///@}

  /// The text; valid until the object changes. @{
  operator const char *() const noexcept { return data(); }
  const char *c_str() const noexcept { return data(); }
#ifdef __clang__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wbraced-scalar-init"
#endif
  // Without the braces around the length, each file that includes this would also check the concepts of an iterator.
  std::string_view View() const noexcept { return {data(), {size()}}; }
#ifdef __clang__
#pragma GCC diagnostic pop
#endif
  ///@}

#ifndef __clang__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wvolatile"
  /// Makes a std::string where one is initialised, passed by value or returned; with g++ only. It is `volatile` so that
  /// it takes no part where a reference is wanted: std::string has most functions for a std::string and for a
  /// `const char *`, and a call would be ambiguous. To clang it is ambiguous all the same.
  operator const volatile std::string() const { return std::string(View()); }
#pragma GCC diagnostic pop
#endif

  /// The number of bytes, without the terminator. @{
  int GetLength() const noexcept { return static_cast<int>(size()); }
  std::size_t size() const noexcept { return isInPlace() ? kInPlace - mark() : m_inside.pointed.length; }
  ///@}
  /// Whether the text has no bytes. @{
  bool IsEmpty() const noexcept { return size() == 0; }
  [[nodiscard]] bool empty() const noexcept { return size() == 0; }
  ///@}

  /// The form of a text that GetLastingKey gives.
  using LastingKey = std::array<std::uint64_t, 2>;
  /// Texts with equal keys are equal, for as long as the process lives; the reverse does not hold. False for a text on
  /// the heap, which has none: its memory comes back with another text.
  bool GetLastingKey(LastingKey &key) const noexcept {
    std::memcpy(key.data(), &m_inside, sizeof m_inside);
    return !isOnHeap();
  }

  /// Makes the text empty.
  void Empty() noexcept {
    release();
    m_inside = kEmpty;
  }
  /// The byte at `index`, which may be that of the terminator; a bad index throws CInvalidArgException*. @{
  char GetAt(int index) const;
  char operator[](int index) const { return GetAt(index); }
  ///@}
  /// Replaces the byte at `index`; a bad index, or that of the terminator, throws CInvalidArgException*.
  void SetAt(int index, char character);

  /// Compares bytes, case-sensitive: a value below 0, 0, or above 0. Null counts as empty.
  int Compare(const char *other) const;
  /// Compares ignoring ASCII case: a value below 0, 0, or above 0. Null counts as empty. @{
  int CompareNoCase(const char *other) const;
  int CollateNoCase(const char *other) const { return CompareNoCase(other); }
  ///@}

  /// Offset of the first match at or after `start`, or -1. @{
  int Find(char character, int start = 0) const;
  int Find(const char *text, int start = 0) const;
  ///@}
  /// Offset of the last match, or -1.
  int ReverseFind(char character) const;

  /// The first, the middle or the last bytes. A negative count or start is 0; a count past the end takes the rest. @{
  CString Left(int count) const;
  CString Mid(int first) const;
  CString Mid(int first, int count) const;
  CString Right(int count) const;
  ///@}

  /// Removes `count` bytes from `index` on and returns the new length. A negative index is 0.
  int Delete(int index, int count = 1);
  /// Inserts at `index`, or at the nearest end if it is outside the text, and returns the new length. @{
  int Insert(int index, char character);
  int Insert(int index, const char *text);
  ///@}
  /// Replaces each `from` by `to` and returns how many.
  int Replace(char from, char to);
  /// Removes the characters of `set` from both ends.
  CString &Trim(const char *set);
  /// Removes `character` from the end, as often as it is there.
  CString &TrimRight(char character);
  /// Changes the case of ASCII letters. @{
  CString &MakeUpper();
  CString &MakeLower();
  ///@}

  /// Replaces the text by printf-style output; the text itself may be one of the arguments. @{
  void Format(const char *format, ...);
  void FormatV(const char *format, va_list arguments);
  ///@}
  /// Loads the text with that id from the library's string table. Empties the text and returns false if there is none.
  bool LoadString(UINT id);

  /// A writable buffer for at least `minimum` bytes and a terminator; ReleaseBuffer ends its use. What is written
  /// through it never shows in another object.
  char *GetBuffer(int minimum);
  /// A writable buffer of exactly `length` bytes and a terminator.
  char *GetBufferSetLength(int length);
  /// Cuts the text at `length`, or at the first terminator if `length` is -1.
  void ReleaseBuffer(int length = -1);

  /// Compares bytes, case-sensitive; null counts as empty. @{
  friend bool operator==(const CString &a, const CString &b) noexcept {
    return std::memcmp(&a.m_inside, &b.m_inside, sizeof a.m_inside) == 0 ||
           (!(a.isInPlace() && b.isInPlace()) && a.View() == b.View());
  }
  friend bool operator==(const CString &a, const char *b) { return a.Compare(b) == 0; }
  friend std::strong_ordering operator<=>(const CString &a, const CString &b) noexcept {
    return a.View().compare(b.View()) <=> 0;
  }
  friend std::strong_ordering operator<=>(const CString &a, const char *b) { return a.Compare(b) <=> 0; }
  // Without these, std::less<> and its like would compare addresses, as for any type that converts to a pointer.
  friend bool operator<(const CString &a, const CString &b) noexcept { return a.View() < b.View(); }
  friend bool operator>(const CString &a, const CString &b) noexcept { return a.View() > b.View(); }
  friend bool operator<=(const CString &a, const CString &b) noexcept { return a.View() <= b.View(); }
  friend bool operator>=(const CString &a, const CString &b) noexcept { return a.View() >= b.View(); }
  friend bool operator<(const CString &a, const char *b) { return a.Compare(b) < 0; }
  friend bool operator>(const CString &a, const char *b) { return a.Compare(b) > 0; }
  friend bool operator<=(const CString &a, const char *b) { return a.Compare(b) <= 0; }
  friend bool operator>=(const CString &a, const char *b) { return a.Compare(b) >= 0; }
  friend bool operator<(const char *a, const CString &b) { return b > a; }
  friend bool operator>(const char *a, const CString &b) { return b < a; }
  friend bool operator<=(const char *a, const CString &b) { return b >= a; }
  friend bool operator>=(const char *a, const CString &b) { return b <= a; }
  template <kestrune::StandardText Text>
  friend bool operator==(const CString &a, const Text &b) noexcept {
    return a.View() == std::string_view(b);
  }
  template <kestrune::StandardText Text>
  friend bool operator==(const Text &a, const CString &b) noexcept {
    return std::string_view(a) == b.View();
  }
  template <kestrune::StandardText Text>
  friend std::strong_ordering operator<=>(const CString &a, const Text &b) noexcept {
    return a.View() <=> std::string_view(b);
  }
  template <kestrune::StandardText Text>
  friend std::strong_ordering operator<=>(const Text &a, const CString &b) noexcept {
    return std::string_view(a) <=> b.View();
  }
  ///@}
  /// `a` followed by `b`; null counts as empty. @{
  friend CString operator+(const CString &a, const CString &b) { return CString(a) += b; }
  friend CString operator+(const CString &a, const char *b) { return CString(a) += b; }
  friend CString operator+(const char *a, const CString &b) { return CString(a) += b; }
  friend CString operator+(const CString &a, char b) { return CString(a) += b; }
  template <kestrune::NumberNotCharacter Number>
  friend CString operator+(const CString &, Number) = delete;
  template <kestrune::StandardText Text>
  friend CString operator+(const CString &a, const Text &b) {
    return CString(a) += b;
  }
  template <kestrune::StandardText Text>
  friend CString operator+(const Text &a, const CString &b) {
    return CString(a) += b;
  }
  ///@}

  /// Writes the text to the stream.
  template <class Traits>
  friend std::basic_ostream<char, Traits> &operator<<(std::basic_ostream<char, Traits> &out, const CString &text) {
    return out << std::basic_string_view<char, Traits>(text.data(), text.size());
  }

private:
  // A record has many members, each with a value and a tag of a few bytes, and most tags are literals. So a string
  // takes 16 bytes: up to 15 bytes of text in place, filled up with zeros, or a pointer and a length. The last byte
  // says which: for a text in place it is 15 minus the length, so that it also terminates a text of 15 bytes; otherwise
  // it is one of the marks below. So equal bytes are equal texts, and in place the reverse is true too.
  static constexpr std::size_t kInPlace = 15;
  static constexpr unsigned char kLiteral = 0x20;
  static constexpr unsigned char kOnHeap = 0x40; // counts its owners; who changes it must be the only one
  static constexpr unsigned char kLent = 0x80;   // on the heap and out of GetBuffer, so that nobody else may own it

  struct Pointed {
    const char *text;
    alignas(8) std::uint32_t length;
    unsigned char unused[3];
    unsigned char mark;
  };
  union Inside {
    char text[kInPlace + 1];
    Pointed pointed;
  };
  static_assert(sizeof(Inside) == kInPlace + 1 && sizeof(Pointed) == sizeof(Inside));
  static constexpr Inside kEmpty{{'\0', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, kInPlace}};

  struct Literal {};
  constexpr CString(Literal, std::string_view text) {
    if (text.size() > kInPlace) {
      m_inside.pointed = {text.data(), static_cast<std::uint32_t>(text.size()), {}, kLiteral};
    } else {
      for (std::size_t i = 0; i < text.size(); ++i)
        m_inside.text[i] = text[i];
      m_inside.text[kInPlace] = static_cast<char>(kInPlace - text.size());
    }
  }

  unsigned char mark() const noexcept {
    unsigned char mark = 0;
    std::memcpy(&mark, m_inside.text + kInPlace, 1);
    return mark;
  }
  bool isInPlace() const noexcept { return mark() <= kInPlace; }
  bool isOnHeap() const noexcept { return mark() >= kOnHeap; }
  const char *data() const noexcept { return isInPlace() ? m_inside.text : m_inside.pointed.text; }
  void release() noexcept {
    if (isOnHeap())
      freeHeap();
  }

  /// Makes this object an owner of the text on the heap whose 16 bytes it has taken over, or of a copy if it is lent.
  void share();
  void freeHeap() noexcept;
  void setLength(std::size_t length) noexcept;
  /// For an empty object: a buffer for `length` bytes, in place if they fit there, otherwise for `room` on the heap.
  char *allocate(std::size_t length, std::size_t room);
  /// The buffer, if it belongs to this object alone and has room for `length` bytes; otherwise null.
  char *ownBuffer(std::size_t length) noexcept;
  /// A buffer for `length` bytes that belongs to this object and contains the first bytes of the text.
  char *reserve(std::size_t length);
  char *lend();
  void assign(std::string_view text);
  void append(std::string_view text);
  void replace(std::size_t start, std::size_t count, std::string_view text);
  /// Cuts the text, or extends it with zeros.
  void resize(std::size_t length);

  Inside m_inside = kEmpty;
};

/// A literal in the form that an object has of it. Unlike an object it has no destructor, so that the compiler makes
/// whole tables of them.
class CString::Constant {
public:
  /// `text` must live as long as the process.
  constexpr explicit Constant(const char *text) : m_inside(OfLiteral(text).m_inside) {}
  /// The text. @{
  CString Text() const noexcept {
    CString text;
    text.m_inside = m_inside;
    return text;
  }
  operator const char *() const noexcept {
    const bool isPointed = static_cast<unsigned char>(m_inside.text[kInPlace]) == kLiteral;
    return isPointed ? m_inside.pointed.text : m_inside.text;
  }
  ///@}

private:
  friend class CString;
  Inside m_inside;
};

inline CString &CString::operator=(const Constant &constant) noexcept {
  release();
  m_inside = constant.m_inside;
  return *this;
}

/// \cond
// The hash of a CString, and of the names that derive from it, is that of an equal std::string_view. A persistent value
// or record has none, as a record may have an `operator==` of its own.
template <std::derived_from<CString> Text>
requires(!std::is_base_of_v<CXMLPersistent, Text>) struct std::hash<Text> {
  std::size_t operator()(const CString &text) const noexcept { return std::hash<std::string_view>()(text.View()); }
};
/// \endcond

namespace kestrune::platform {

/// The text with that id in the library's string table, or null. Defined with the texts, not in the platform.
const char *FindStringResource(UINT id);

} // namespace kestrune::platform
