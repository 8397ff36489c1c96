#include "kestrune/platform/c_string.h"

#include "kestrune/platform/ascii.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/exceptions.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

std::string_view orEmpty(const char *text) { return text != nullptr ? std::string_view(text) : std::string_view(); }

/// Copies a text, which may overlap its target. The data of an empty text may be null.
void copyBytes(char *to, std::string_view text) {
  if (!text.empty())
    std::memmove(to, text.data(), text.size());
}

/// Whether the byte at `position` is a trail byte of a double-byte page. Only a walk from the start of the text can
/// show that.
bool isTrailByte(std::string_view text, std::size_t position) {
  std::size_t start = 0;
  while (start < position)
    start += IsDBCSLeadByte(static_cast<unsigned char>(text[start])) != 0 && start + 1 < text.size() ? 2 : 1;
  return start > position;
}

/// Whether a match or a cut at `position` would begin in the middle of a character.
bool isHalf(std::string_view text, std::size_t position) {
  return kestrune::platform::IsDoubleByteCodePage() && isTrailByte(text, position);
}

/// Calls `change` with each byte that is a whole character.
template <class Change>
void forEachSingleByte(char *text, std::size_t size, Change change) {
  const bool doubleByte = kestrune::platform::IsDoubleByteCodePage();
  for (std::size_t i = 0; i < size; ++i) {
    if (doubleByte && IsDBCSLeadByte(static_cast<unsigned char>(text[i])) != 0 && i + 1 < size)
      ++i;
    else
      change(text[i]);
  }
}

// The capacity of a text on the heap is stored before it.
using Room = std::uint32_t;

} // namespace

CString::CString(const wchar_t *text)
    : CString(std::string_view(text != nullptr ? kestrune::platform::WideToText(text) : std::string())) {}

CString::CString(char character, int count)
    : CString(std::string_view(std::string(static_cast<std::size_t>(std::max(count, 0)), character))) {}

CString::CString(const char *text, int length)
    : CString(text != nullptr ? std::string_view(text, static_cast<std::size_t>(std::max(length, 0)))
                              : std::string_view()) {}

CString CString::OfLiteral(const char *text) {
  const std::string_view view = orEmpty(text);
  CString literal;
  if (view.size() <= kInPlace)
    literal.assign(view);
  else
    literal.setPointer(view.data(), view.size(), kLiteral);
  return literal;
}

CString &CString::operator=(const CString &other) {
  if (this == &other)
    return *this;
  if (other.mark() == kOnHeap) {
    assign(other.View());
  } else {
    release();
    std::memcpy(m_bytes, other.m_bytes, sizeof m_bytes);
  }
  return *this;
}

CString &CString::operator=(CString &&other) noexcept {
  if (this != &other) {
    release();
    std::memcpy(m_bytes, other.m_bytes, sizeof m_bytes);
    other.setEmpty();
  }
  return *this;
}

CString &CString::operator=(const char *text) {
  assign(orEmpty(text));
  return *this;
}

CString &CString::operator=(const wchar_t *text) { return *this = CString(text); }

CString &CString::operator+=(const char *text) {
  append(orEmpty(text));
  return *this;
}

void CString::freeHeap() noexcept { ::operator delete(const_cast<char *>(pointer()) - sizeof(Room)); }

void CString::setPointer(const char *text, std::size_t length, unsigned char mark) noexcept {
  std::memcpy(m_bytes, &text, sizeof text);
  m_bytes[kInPlace] = static_cast<char>(mark);
  setLength(length);
}

void CString::setLength(std::size_t length) noexcept {
  if (isInPlace()) {
    m_bytes[length] = '\0';
    m_bytes[kInPlace] = static_cast<char>(kInPlace - length);
    return;
  }
  const auto stored = static_cast<std::uint32_t>(length);
  std::memcpy(m_bytes + sizeof(char *), &stored, sizeof stored);
  if (mark() == kOnHeap)
    const_cast<char *>(pointer())[length] = '\0';
}

std::size_t CString::capacity() const noexcept {
  if (isInPlace())
    return kInPlace;
  Room room = 0;
  if (mark() == kOnHeap)
    std::memcpy(&room, pointer() - sizeof room, sizeof room);
  return room;
}

char *CString::reserve(std::size_t length) {
  if (mark() != kLiteral && length <= capacity())
    return const_cast<char *>(data());
  if (length > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    throw std::length_error("CString");
  const std::size_t kept = std::min(size(), length);
  // Growing by half keeps appending byte by byte cheap.
  const auto room = static_cast<Room>(std::max(length, kept > kInPlace ? kept + kept / 2 : length));
  char *const text = static_cast<char *>(::operator new(sizeof room + room + 1)) + sizeof room;
  std::memcpy(text - sizeof room, &room, sizeof room);
  std::memcpy(text, data(), kept);
  release();
  setPointer(text, kept, kOnHeap);
  return text;
}

void CString::assign(std::string_view text) {
  if (mark() != kLiteral && text.size() <= capacity()) {
    copyBytes(const_cast<char *>(data()), text); // `text` may be part of this text
    setLength(text.size());
    return;
  }
  CString other;
  copyBytes(other.reserve(text.size()), text);
  other.setLength(text.size());
  *this = std::move(other);
}

void CString::append(std::string_view text) { replace(size(), 0, text); }

void CString::replace(std::size_t start, std::size_t count, std::string_view text) {
  const std::size_t oldSize = size();
  const std::size_t newSize = oldSize - count + text.size();
  if (newSize > capacity() || mark() == kLiteral || (text.data() >= data() && text.data() <= data() + oldSize)) {
    // In a new buffer, as `text` may be part of this text.
    CString other;
    char *const room = other.reserve(newSize > kInPlace && start == oldSize ? newSize + newSize / 2 : newSize);
    std::memcpy(room, data(), start);
    copyBytes(room + start, text);
    std::memcpy(room + start + text.size(), data() + start + count, oldSize - start - count);
    other.setLength(newSize);
    *this = std::move(other);
    return;
  }
  char *const room = const_cast<char *>(data());
  std::memmove(room + start + text.size(), room + start + count, oldSize - start - count);
  copyBytes(room + start, text);
  setLength(newSize);
}

void CString::resize(std::size_t length) {
  const std::size_t oldSize = size();
  char *const text = reserve(length);
  if (length > oldSize)
    std::memset(text + oldSize, 0, length - oldSize);
  setLength(length);
}

char CString::GetAt(int index) const {
  if (index < 0 || index > GetLength())
    AfxThrowInvalidArgException();
  return data()[index];
}

void CString::SetAt(int index, char character) {
  if (index < 0 || index >= GetLength())
    AfxThrowInvalidArgException();
  reserve(size())[index] = character;
}

int CString::Compare(const char *other) const { return View().compare(orEmpty(other)); }

int CString::CompareNoCase(const char *other) const {
  return kestrune::platform::CompareNoCase(View(), orEmpty(other));
}

int CString::Find(char character, int start) const {
  const char text[] = {character, '\0'};
  return character != '\0' ? Find(text, start) : -1;
}

int CString::Find(const char *text, int start) const {
  if (start < 0 || start > GetLength())
    return -1;
  std::size_t found = View().find(orEmpty(text), static_cast<std::size_t>(start));
  while (found != std::string_view::npos && isHalf(View(), found))
    found = View().find(orEmpty(text), found + 1);
  return found != std::string_view::npos ? static_cast<int>(found) : -1;
}

int CString::ReverseFind(char character) const {
  std::size_t found = View().rfind(character);
  while (found != std::string_view::npos && isHalf(View(), found))
    found = found > 0 ? View().rfind(character, found - 1) : std::string_view::npos;
  return found != std::string_view::npos ? static_cast<int>(found) : -1;
}

CString CString::Left(int count) const { return Mid(0, count); }

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
  const int start = std::clamp(first, 0, GetLength());
  return {data() + start, std::clamp(count, 0, GetLength() - start)};
}

CString CString::Right(int count) const { return Mid(GetLength() - std::clamp(count, 0, GetLength())); }

int CString::Delete(int index, int count) {
  const int start = std::max(index, 0);
  if (count > 0 && start < GetLength())
    replace(static_cast<std::size_t>(start), static_cast<std::size_t>(std::min(count, GetLength() - start)), {});
  return GetLength();
}

int CString::Insert(int index, char character) {
  replace(static_cast<std::size_t>(std::clamp(index, 0, GetLength())), 0, {&character, 1});
  return GetLength();
}

int CString::Insert(int index, const char *text) {
  replace(static_cast<std::size_t>(std::clamp(index, 0, GetLength())), 0, orEmpty(text));
  return GetLength();
}

int CString::Replace(char from, char to) {
  int count = 0;
  forEachSingleByte(reserve(size()), size(), [&](char &character) {
    if (character == from) {
      character = to;
      ++count;
    }
  });
  return count;
}

CString &CString::Trim(const char *set) {
  const std::string_view characters = orEmpty(set);
  std::string_view text = View();
  text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
  while (!text.empty() && characters.find(text.back()) != std::string_view::npos && !isHalf(text, text.size() - 1))
    text.remove_suffix(1);
  assign(text);
  return *this;
}

CString &CString::TrimRight(char character) {
  std::string_view text = View();
  while (!text.empty() && text.back() == character && !isHalf(text, text.size() - 1))
    text.remove_suffix(1);
  resize(text.size());
  return *this;
}

CString &CString::MakeUpper() {
  forEachSingleByte(reserve(size()), size(),
                    [](char &character) { character = kestrune::platform::AsciiUpper(character); });
  return *this;
}

CString &CString::MakeLower() {
  forEachSingleByte(reserve(size()), size(),
                    [](char &character) { character = kestrune::platform::AsciiLower(character); });
  return *this;
}

void CString::Format(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  FormatV(format, arguments);
  va_end(arguments);
}

void CString::FormatV(const char *format, va_list arguments) {
  const char *const pattern = format != nullptr ? format : "";
  va_list measured;
  va_copy(measured, arguments);
  // The analyser does not see that va_copy and the caller have initialised these lists.
  const int length = std::vsnprintf(nullptr, 0, pattern, measured); // NOLINT(clang-analyzer-valist.Uninitialized)
  va_end(measured);
  CString text;
  char *const room = text.reserve(static_cast<std::size_t>(std::max(length, 0)));
  std::vsnprintf(room, text.capacity() + 1, pattern, arguments); // NOLINT(clang-analyzer-valist.Uninitialized)
  text.setLength(static_cast<std::size_t>(std::max(length, 0)));
  *this = std::move(text);
}

bool CString::LoadString(UINT id) {
  const char *const text = kestrune::platform::FindStringResource(id);
  *this = text;
  return text != nullptr;
}

char *CString::GetBuffer(int minimum) {
  if (minimum > GetLength())
    resize(static_cast<std::size_t>(minimum));
  return reserve(size());
}

char *CString::GetBufferSetLength(int length) {
  resize(static_cast<std::size_t>(std::max(length, 0)));
  return reserve(size());
}

void CString::ReleaseBuffer(int length) {
  const std::size_t end = length < 0 ? std::strlen(data()) : static_cast<std::size_t>(length);
  resize(std::min(end, size()));
}
