#include "tools/table.h"

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <sstream>

namespace {

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

/// The character at the front of a UTF-8 text.
std::string_view firstCharacter(std::string_view text) {
  std::size_t length = 1;
  while (length < text.size() && isContinuation(text[length]))
    ++length;
  return text.substr(0, length);
}

/// Most East Asian characters, which are three bytes from U+2E80 on, take two columns; the half-width forms take one.
std::size_t columns(std::string_view character) {
  const bool wide = character.size() >= 3 && character >= "\xE2\xBA\x80" &&
                    !(character >= "\xEF\xBD\xA1" && character <= "\xEF\xBF\x9C");
  return wide ? 2 : 1;
}

std::string escaped(char control) {
  switch (control) {
  case '\n':
    return "\\n";
  case '\t':
    return "\\t";
  case '\r':
    return "\\r";
  default: {
    std::ostringstream text;
    text << "\\x" << std::hex << std::uppercase << std::setw(2) << std::setfill('0')
         << static_cast<unsigned>(static_cast<unsigned char>(control));
    return text.str();
  }
  }
}

} // namespace

std::string shown(std::string_view text, std::size_t mostColumns) {
  std::string result;
  std::size_t used = 0;
  while (!text.empty()) {
    const std::string_view character = firstCharacter(text);
    text.remove_prefix(character.size());
    // C1 controls, which begin with C2, can steer a terminal too.
    const bool control = static_cast<unsigned char>(character[0]) < 0x20 || character[0] == '\x7F';
    const bool c1 = character.size() == 2 && character >= "\xC2\x80" && character <= "\xC2\x9F";
    const std::string piece = control ? escaped(character[0]) : c1 ? "?" : std::string(character);
    used += columns(piece);
    if (used > mostColumns)
      return result + "...";
    result += piece;
  }
  return result;
}

std::size_t width(std::string_view text) {
  std::size_t total = 0;
  while (!text.empty()) {
    const std::string_view character = firstCharacter(text);
    total += columns(character);
    text.remove_prefix(character.size());
  }
  return total;
}

void Table::print(std::ostream &out) const {
  std::vector<std::size_t> widths(m_rows.front().size());
  for (const auto &row : m_rows) {
    for (std::size_t i = 0; i < row.size(); ++i)
      widths[i] = std::max(widths[i], width(row[i]));
  }
  for (const auto &row : m_rows) {
    std::string line = "  ";
    for (std::size_t i = 0; i < row.size(); ++i)
      line += row[i] + std::string(widths[i] - width(row[i]) + 2, ' ');
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  }
}
