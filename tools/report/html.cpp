#include "tools/report/html.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// The length of the UTF-8 character at the beginning of a text, if HTML allows it; else 0.
std::size_t characterLength(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  if (first < 0x80)
    return first >= 0x20 ? (first != 0x7F ? 1 : 0) : (first == '\t' || first == '\n' ? 1 : 0);
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC2 ? 2 : 0;
  if (length == 0 || first > 0xF4 || text.size() < length)
    return 0;
  std::uint32_t code = first & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80)
      return 0;
    code = code << 6 | (byte(i) & 0x3FU);
  }
  constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isAllowed = code >= kLeast[length] && code >= 0xA0 && !(code >= 0xD800 && code <= 0xDFFF) &&
                         !(code >= 0xFDD0 && code <= 0xFDEF) && (code & 0xFFFE) != 0xFFFE && code <= 0x10FFFF;
  return isAllowed ? length : 0;
}

} // namespace

std::string readable(std::string_view text, std::size_t most) {
  std::string result;
  result.reserve(std::min(text.size(), most));
  std::size_t at = 0;
  while (at < text.size() && at < most) {
    const std::size_t length = characterLength(text.substr(at, 4));
    result += length > 0 ? text.substr(at, length) : kReplacement;
    at += length > 0 ? length : 1;
  }
  if (at < text.size())
    result += " \xE2\x80\xA6 (" + std::to_string(text.size() - at) + " more bytes)";
  return result;
}

std::string capitalised(std::string text) {
  if (!text.empty() && text.front() >= 'a' && text.front() <= 'z')
    text.front() = static_cast<char>(text.front() - 'a' + 'A');
  return text;
}

Html &Html::element(const char *tag, Attributes attributes, std::string_view text) {
  begin(tag, attributes);
  m_text += '>';
  escape(text);
  ((m_text += "</") += tag) += '>';
  return *this;
}

Html &Html::empty(const char *tag, Attributes attributes) {
  begin(tag, attributes);
  m_text += '>';
  return *this;
}

Html &Html::shape(const char *tag, Attributes attributes) {
  begin(tag, attributes);
  m_text += "/>";
  return *this;
}

Html &Html::text(std::string_view text) {
  escape(text);
  return *this;
}

Html &Html::line() {
  m_text += '\n';
  return *this;
}

Html &Html::own(std::string_view html) {
  m_text += html;
  return *this;
}

void Html::open(const char *tag, Attributes attributes) {
  begin(tag, attributes);
  m_text += '>';
  m_open.push_back(tag);
}

void Html::begin(const char *tag, Attributes attributes) {
  (m_text += '<') += tag;
  for (const auto &[name, value] : attributes) {
    if (value.data() == nullptr)
      continue;
    ((m_text += ' ') += name) += "=\"";
    escape(value);
    m_text += '"';
  }
}

void Html::close() {
  ((m_text += "</") += m_open.back()) += '>';
  m_open.pop_back();
}

void Html::escape(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t length = characterLength(text.substr(at, 4));
    switch (length == 1 ? text[at] : '\0') {
    case '&':
      m_text += "&amp;";
      break;
    case '<':
      m_text += "&lt;";
      break;
    case '>':
      m_text += "&gt;";
      break;
    case '"':
      m_text += "&quot;";
      break;
    default:
      m_text += length > 0 ? text.substr(at, length) : kReplacement;
    }
    at += length > 0 ? length : 1;
  }
}
