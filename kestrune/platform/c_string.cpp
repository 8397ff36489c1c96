#include "kestrune/platform/c_string.h"

#include "kestrune/platform/ascii.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/exceptions.h"

#include <algorithm>
#include <atomic>
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

/// Stands in front of a text on the heap.
struct Header {
  std::atomic<std::uint32_t> owners;
  std::uint32_t room; // without the terminator
};

// More owners get a copy, so that the count cannot overflow.
constexpr std::uint32_t kMostOwners = std::uint32_t{1} << 31U;

Header &headerOf(const char *text) {
  return *std::launder(reinterpret_cast<Header *>(const_cast<char *>(text) - sizeof(Header)));
}

} // namespace

CString::CString(const wchar_t *text)
    : CString(std::string_view(text != nullptr ? kestrune::platform::WideToText(text) : std::string())) {}

CString::CString(char character, int count)
    : CString(std::string_view(std::string(static_cast<std::size_t>(std::max(count, 0)), character))) {}

CString::CString(const char *text, int length)
    : CString(text != nullptr ? std::string_view(text, static_cast<std::size_t>(std::max(length, 0)))
                              : std::string_view()) {}

CString &CString::operator=(const char *text) {
  assign(orEmpty(text));
  return *this;
}

CString &CString::operator=(const wchar_t *text) { return *this = CString(text); }

CString &CString::operator+=(char character) {
  append({&character, 1});
  return *this;
}

CString &CString::operator+=(const char *text) {
  append(orEmpty(text));
  return *this;
}

void CString::share() {
  std::atomic<std::uint32_t> &owners = headerOf(data()).owners;
  if (mark() == kOnHeap && owners.load(std::memory_order_relaxed) < kMostOwners) {
    owners.fetch_add(1, std::memory_order_relaxed);
  } else {
    CString copy(View());
    m_inside = std::exchange(copy.m_inside, kEmpty);
  }
}

void CString::freeHeap() noexcept {
  Header &header = headerOf(data());
  // A single owner has nobody to count with.
  if (header.owners.load(std::memory_order_acquire) == 1 || header.owners.fetch_sub(1, std::memory_order_acq_rel) == 1)
    ::operator delete(&header);
}

void CString::setLength(std::size_t length) noexcept {
  if (isInPlace()) {
    std::memset(m_inside.text + length, 0, kInPlace - length);
    m_inside.text[kInPlace] = static_cast<char>(kInPlace - length);
  } else {
    m_inside.pointed.length = static_cast<std::uint32_t>(length);
    const_cast<char *>(m_inside.pointed.text)[length] = '\0';
  }
}

char *CString::allocate(std::size_t length, std::size_t room) {
  if (length <= kInPlace)
    return m_inside.text;
  if (length > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    throw std::length_error("CString");
  void *const memory = ::operator new(sizeof(Header) + room + 1);
  char *const text = static_cast<char *>(memory) + sizeof(Header);
  new (memory) Header{{1}, static_cast<std::uint32_t>(room)};
  m_inside.pointed = {text, 0, {}, kOnHeap};
  return text;
}

char *CString::ownBuffer(std::size_t length) noexcept {
  if (isInPlace())
    return length <= kInPlace ? m_inside.text : nullptr;
  if (mark() == kLiteral)
    return nullptr;
  const Header &header = headerOf(data());
  return length <= header.room && header.owners.load(std::memory_order_acquire) == 1 ? const_cast<char *>(data())
                                                                                     : nullptr;
}

char *CString::reserve(std::size_t length) {
  if (char *const own = ownBuffer(length))
    return own;
  const std::size_t kept = std::min(size(), length);
  CString other;
  // Growing by half keeps appending byte by byte cheap.
  copyBytes(other.allocate(length, length > kept && kept > kInPlace ? std::max(length, kept + kept / 2) : length),
            View().substr(0, kept));
  other.setLength(kept);
  *this = std::move(other);
  return const_cast<char *>(data());
}

void CString::assign(std::string_view text) {
  if (!isOnHeap() && text.size() <= kInPlace) {
    Inside inside{}; // `text` may be part of this text
    copyBytes(inside.text, text);
    inside.text[kInPlace] = static_cast<char>(kInPlace - text.size());
    m_inside = inside;
    return;
  }
  if (char *const own = ownBuffer(text.size())) {
    copyBytes(own, text); // `text` may be part of this text
    setLength(text.size());
    return;
  }
  CString other;
  copyBytes(other.allocate(text.size(), text.size()), text);
  other.setLength(text.size());
  *this = std::move(other);
}

void CString::append(std::string_view text) { replace(size(), 0, text); }

void CString::replace(std::size_t start, std::size_t count, std::string_view text) {
  const std::size_t oldSize = size();
  const std::size_t newSize = oldSize - count + text.size();
  char *const own = ownBuffer(newSize);
  if (own == nullptr || (text.data() >= own && text.data() <= own + oldSize)) {
    // In a new buffer, as `text` may be part of this text. One that grows at its end is likely to go on.
    CString other;
    char *const room = other.allocate(newSize, start == oldSize ? newSize + newSize / 2 : newSize);
    std::memcpy(room, data(), start);
    copyBytes(room + start, text);
    std::memcpy(room + start + text.size(), data() + start + count, oldSize - start - count);
    other.setLength(newSize);
    *this = std::move(other);
    return;
  }
  std::memmove(own + start + text.size(), own + start + count, oldSize - start - count);
  copyBytes(own + start, text);
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
  const auto size = static_cast<std::size_t>(std::max(length, 0));
  std::vsnprintf(text.reserve(size), size + 1, pattern, arguments); // NOLINT(clang-analyzer-valist.Uninitialized)
  text.setLength(size);
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
  return lend();
}

char *CString::GetBufferSetLength(int length) {
  resize(static_cast<std::size_t>(std::max(length, 0)));
  return lend();
}

char *CString::lend() {
  char *const buffer = reserve(size());
  if (!isInPlace())
    m_inside.pointed.mark = kLent;
  return buffer;
}

void CString::ReleaseBuffer(int length) {
  const std::size_t end = length < 0 ? std::strlen(data()) : static_cast<std::size_t>(length);
  resize(std::min(end, size()));
  if (mark() == kLent)
    m_inside.pointed.mark = kOnHeap;
}
