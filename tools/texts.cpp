#include "tools/texts.h"

#include "kestrune/platform/code_page.h"
#include "tools/meanings.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace {

constexpr std::string_view kPrefix = "0x";

bool isWithoutPrefix(const Record &record, const Member &member) {
  const Meaning *const meaning = findMeaning(record.shape->tag, member.shape->tag);
  return meaning != nullptr && meaning->reading == Reading::kHexDigits;
}

void put(const Member &member, const std::string &text) { member.value->CXMLPersistent::operator=(text.c_str()); }

/// The character at the front of a UTF-8 text, and its bytes; no bytes if they are none.
struct Character {
  std::uint32_t code = 0;
  std::size_t bytes = 0;
};

Character characterAt(std::string_view text) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  constexpr std::array<std::uint32_t, 5> kLowest = {0, 0, 0x80, 0x800, 0x10000};
  const unsigned first = byte(0);
  const std::size_t bytes = first < 0x80 ? 1 : first < 0xC0 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (bytes == 0 || bytes > text.size())
    return {};
  std::uint32_t code = bytes == 1 ? first : first & (0xFFU >> (bytes + 1));
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((byte(i) & 0xC0U) != 0x80)
      return {};
    code = code << 6 | (byte(i) & 0x3FU);
  }
  const bool isSound = code >= kLowest[bytes] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
  return isSound ? Character{code, bytes} : Character{};
}

std::string hex(const char *format, unsigned number) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), format, number);
  return text.data();
}

} // namespace

std::string textInFile(const Record &record, const Member &member) {
  const std::string text(member.text());
  const bool isDefault = !member.isInFile() && text == "Unassigned"; // what programs get, which has no prefix
  return isWithoutPrefix(record, member) && !isDefault ? std::string(kPrefix) + text : text;
}

void putText(const Record &record, const Member &member, std::string_view text) {
  if (!isWithoutPrefix(record, member)) {
    put(member, std::string(text));
    return;
  }
  CString upper(std::string(text).c_str());
  upper.MakeUpper();
  const std::string digits(upper.View());
  const std::size_t end = digits.find('X');
  put(member, end == 0 ? digits : end == std::string::npos ? std::string() : digits.substr(end + 1));
}

void putDefault(const Record &record, const Member &member) {
  if (isWithoutPrefix(record, member))
    put(member, {});
}

std::string whyNotXml(std::string_view text) {
  std::string utf8;
  if (!kestrune::platform::TextToUtf8(text, utf8))
    return "it is not valid in the code page";
  for (std::size_t at = 0; at < utf8.size();) {
    const Character character = characterAt(std::string_view(utf8).substr(at));
    if (character.bytes == 0)
      return "its byte " + hex("0x%02X", static_cast<unsigned char>(utf8[at])) + " is not UTF-8";
    const bool isControl =
        character.code < 0x20 && character.code != '\t' && character.code != '\n' && character.code != '\r';
    if (isControl || character.code == 0xFFFE || character.code == 0xFFFF)
      return "XML cannot carry its character " + hex("U+%04X", character.code);
    at += character.bytes;
  }
  return {};
}
