#include "kestrune/platform/c_string.h"

#include "kestrune/platform/code_page.h"
#include "kestrune/platform/exceptions.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

std::string_view orEmpty(const char *text) { return text != nullptr ? std::string_view(text) : std::string_view(); }

/// Whether the byte at `position` is the trail byte of a character of a double-byte page: only a walk from the start of
/// the text can tell.
bool isTrailByte(const std::string &text, std::size_t position) {
  std::size_t start = 0;
  while (start < position)
    start += IsDBCSLeadByte(static_cast<unsigned char>(text[start])) != 0 && start + 1 < text.size() ? 2 : 1;
  return start > position;
}

/// Calls `change` with each byte that is a character of its own.
template <class Change>
void forEachSingleByte(std::string &text, Change change) {
  const bool doubleByte = platform::IsDoubleByteCodePage();
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (doubleByte && IsDBCSLeadByte(static_cast<unsigned char>(text[i])) != 0 && i + 1 < text.size())
      ++i;
    else
      change(text[i]);
  }
}

} // namespace

CString::CString(const wchar_t *text) : m_text(text != nullptr ? platform::WideToText(text) : std::string()) {}

CString::CString(char character, int count) : m_text(static_cast<std::size_t>(std::max(count, 0)), character) {}

CString::CString(const char *text, int length)
    : m_text(orEmpty(text).data(), text != nullptr ? static_cast<std::size_t>(std::max(length, 0)) : 0) {}

CString &CString::operator=(const char *text) {
  m_text.assign(orEmpty(text));
  return *this;
}

CString &CString::operator=(const wchar_t *text) { return *this = CString(text); }

CString &CString::operator+=(const char *text) {
  m_text.append(orEmpty(text));
  return *this;
}

char CString::GetAt(int index) const {
  if (index < 0 || index > GetLength())
    AfxThrowInvalidArgException();
  return m_text.c_str()[index];
}

void CString::SetAt(int index, char character) {
  if (index < 0 || index >= GetLength())
    AfxThrowInvalidArgException();
  m_text[static_cast<std::size_t>(index)] = character;
}

int CString::Compare(const char *other) const { return m_text.compare(orEmpty(other)); }

int CString::CompareNoCase(const char *other) const { return platform::CompareNoCase(m_text, orEmpty(other)); }

int CString::Find(char character, int start) const {
  const char text[] = {character, '\0'};
  return character != '\0' ? Find(text, start) : -1;
}

int CString::Find(const char *text, int start) const {
  if (start < 0 || start > GetLength())
    return -1;
  std::size_t found = m_text.find(orEmpty(text), static_cast<std::size_t>(start));
  while (found != std::string::npos && platform::IsDoubleByteCodePage() && isTrailByte(m_text, found))
    found = m_text.find(orEmpty(text), found + 1);
  return found != std::string::npos ? static_cast<int>(found) : -1;
}

int CString::ReverseFind(char character) const {
  std::size_t found = m_text.rfind(character);
  while (found != std::string::npos && platform::IsDoubleByteCodePage() && isTrailByte(m_text, found))
    found = found > 0 ? m_text.rfind(character, found - 1) : std::string::npos;
  return found != std::string::npos ? static_cast<int>(found) : -1;
}

CString CString::Left(int count) const { return Mid(0, count); }

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
  const int start = std::clamp(first, 0, GetLength());
  return {m_text.data() + start, std::clamp(count, 0, GetLength() - start)};
}

CString CString::Right(int count) const { return Mid(GetLength() - std::clamp(count, 0, GetLength())); }

int CString::Delete(int index, int count) {
  const int start = std::max(index, 0);
  if (count > 0 && start < GetLength())
    m_text.erase(static_cast<std::size_t>(start), static_cast<std::size_t>(count));
  return GetLength();
}

int CString::Insert(int index, char character) {
  m_text.insert(static_cast<std::size_t>(std::clamp(index, 0, GetLength())), 1, character);
  return GetLength();
}

int CString::Insert(int index, const char *text) {
  m_text.insert(static_cast<std::size_t>(std::clamp(index, 0, GetLength())), std::string(orEmpty(text)));
  return GetLength();
}

int CString::Replace(char from, char to) {
  int count = 0;
  forEachSingleByte(m_text, [&](char &character) {
    if (character == from) {
      character = to;
      ++count;
    }
  });
  return count;
}

CString &CString::Trim(const char *set) {
  const std::string_view characters = orEmpty(set);
  const std::size_t start = std::min(m_text.find_first_not_of(characters), m_text.size());
  m_text.erase(0, start);
  while (!m_text.empty() && characters.find(m_text.back()) != std::string_view::npos) {
    if (platform::IsDoubleByteCodePage() && isTrailByte(m_text, m_text.size() - 1))
      break;
    m_text.pop_back();
  }
  return *this;
}

CString &CString::TrimRight(char character) {
  while (!m_text.empty() && m_text.back() == character) {
    if (platform::IsDoubleByteCodePage() && isTrailByte(m_text, m_text.size() - 1))
      break;
    m_text.pop_back();
  }
  return *this;
}

CString &CString::MakeUpper() {
  forEachSingleByte(m_text, [](char &character) {
    if (character >= 'a' && character <= 'z')
      character = static_cast<char>(character - 'a' + 'A');
  });
  return *this;
}

CString &CString::MakeLower() {
  forEachSingleByte(m_text, [](char &character) {
    if (character >= 'A' && character <= 'Z')
      character = static_cast<char>(character - 'A' + 'a');
  });
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
  const int length = std::vsnprintf(nullptr, 0, pattern, measured);
  va_end(measured);
  std::string text(static_cast<std::size_t>(std::max(length, 0)), '\0');
  // The terminator goes where std::string keeps one of its own.
  if (length > 0)
    std::vsnprintf(text.data(), text.size() + 1, pattern, arguments);
  m_text = std::move(text);
}

bool CString::LoadString(UINT id) {
  const char *const text = platform::FindStringResource(id);
  *this = text;
  return text != nullptr;
}

char *CString::GetBuffer(int minimum) {
  if (minimum > GetLength())
    m_text.resize(static_cast<std::size_t>(minimum));
  return m_text.data();
}

char *CString::GetBufferSetLength(int length) {
  m_text.resize(static_cast<std::size_t>(std::max(length, 0)));
  return m_text.data();
}

void CString::ReleaseBuffer(int length) {
  const std::size_t end = length < 0 ? std::strlen(m_text.c_str()) : static_cast<std::size_t>(length);
  m_text.resize(std::min(end, m_text.size()));
}
