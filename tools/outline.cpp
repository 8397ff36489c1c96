#include "tools/outline.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <expat.h>
#include <iconv.h>
#include <iomanip>
#include <limits>
#include <memory>
#include <new>
#include <sstream>

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t\r\n";

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

std::string lowered(std::string text) {
  for (char &letter : text)
    letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  return text;
}

/// The encoding that a file's first bytes or its declaration tell; empty for UTF-8.
std::string encodingOf(std::string_view bytes) {
  const std::string_view start = bytes.substr(0, 2);
  if (start == "\xFF\xFE" || start == std::string_view("<\0", 2))
    return "UTF-16LE";
  if (start == "\xFE\xFF" || start == std::string_view("\0<", 2))
    return "UTF-16BE";
  if (bytes.starts_with(kByteOrderMark) || !bytes.starts_with("<?xml"))
    return {};
  const std::string_view declaration = bytes.substr(0, std::min<std::size_t>(bytes.find("?>"), 1000));
  const std::size_t name = declaration.find("encoding");
  const std::size_t open = name != std::string_view::npos ? declaration.find_first_of("'\"", name) : name;
  const std::size_t close = open != std::string_view::npos ? declaration.find(declaration[open], open + 1) : open;
  if (close == std::string_view::npos)
    return {};
  std::string encoding(declaration.substr(open + 1, close - open - 1));
  const std::string plain = lowered(encoding);
  return plain == "utf-8" || plain == "utf8" ? "" : encoding;
}

/// The name that iconv has for it: four names stand for the code pages that Windows means by them.
std::string iconvName(const std::string &encoding) {
  static constexpr std::array<std::array<const char *, 2>, 4> kWindowsNames = {
      {{"shift_jis", "CP932"}, {"gb2312", "CP936"}, {"euc-kr", "CP949"}, {"big5", "CP950"}}};
  const std::string plain = lowered(encoding);
  for (const auto &[name, page] : kWindowsNames) {
    if (plain == name)
      return page;
  }
  return plain == "utf-16" ? "UTF-16LE" : encoding;
}

/// The length of the UTF-8 character at the front of `text`; 0 if there is none.
std::size_t validLength(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  if (first < 0x80)
    return 1;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length)
    return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (!isContinuation(text[i]))
      return 0;
  }
  const bool overlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
  const bool outside = (first == 0xED && byte(1) >= 0xA0) || (first == 0xF4 && byte(1) >= 0x90);
  return overlong || outside ? 0 : length;
}

/// The offset of the first byte that is not UTF-8.
std::size_t firstInvalid(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t length = validLength(text.substr(at));
    if (length == 0)
      return at;
    at += length;
  }
  return std::string_view::npos;
}

std::string byteName(char byte) {
  std::ostringstream name;
  name << "0x" << std::hex << std::uppercase << std::setw(2) << std::setfill('0')
       << static_cast<unsigned>(static_cast<unsigned char>(byte));
  return name.str();
}

struct ParserEnd {
  void operator()(XML_ParserStruct *parser) const { XML_ParserFree(parser); }
};

struct ConverterEnd {
  void operator()(iconv_t converter) const { iconv_close(converter); }
};

} // namespace

struct Outline::Parser {
  explicit Parser(Outline &outline) : outline(outline), owner(XML_ParserCreate("UTF-8")) {
    if (!owner)
      throw std::bad_alloc();
    XML_SetUserData(owner.get(), this);
    XML_SetElementHandler(owner.get(), onStart, onEnd);
    XML_SetCharacterDataHandler(owner.get(), onText);
    XML_SetCommentHandler(owner.get(), onComment);
    XML_SetProcessingInstructionHandler(owner.get(), onInstruction);
    XML_SetStartDoctypeDeclHandler(owner.get(), onDoctype);
  }

  void run() {
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    const std::string_view text = outline.m_text;
    for (std::size_t at = 0; at <= text.size(); at += kPiece) {
      const std::size_t size = std::min(kPiece, text.size() - at);
      if (XML_Parse(owner.get(), text.data() + at, static_cast<int>(size), at + size == text.size() ? 1 : 0) !=
          XML_STATUS_OK) {
        fail();
        break;
      }
      if (at + size == text.size())
        break;
    }
    for (; !open.empty(); open.pop_back()) // after a failure
      outline.m_elements[open.back()].end = outline.size();
  }

  void fail() {
    const XML_Error code = XML_GetErrorCode(owner.get());
    if (code == XML_ERROR_NO_MEMORY)
      throw std::bad_alloc();
    using Kind = Failure::Kind;
    outline.m_failure.kind = code == XML_ERROR_NO_ELEMENTS && outline.m_elements.empty() ? Kind::kEmpty
                             : code == XML_ERROR_UNDEFINED_ENTITY                        ? Kind::kUndeclaredEntity
                                                                                         : Kind::kNotWellFormed;
    outline.m_failure.place = {XML_GetCurrentLineNumber(owner.get()), XML_GetCurrentColumnNumber(owner.get()) + 1};
    outline.m_failure.reason = reasonOf(code);
  }

  /// What is wrong, with the text that is.
  std::string reasonOf(XML_Error code) const {
    const std::size_t at = outline.offsetOf(outline.m_failure.place);
    const std::string name(outline.m_text.substr(at, outline.m_text.find_first_of(" \t\r\n=/<>'\"", at) - at));
    const Index around = open.empty() ? kNone : open.back();
    if (around != kNone && (code == XML_ERROR_TAG_MISMATCH || code == XML_ERROR_NO_ELEMENTS)) {
      const std::string start =
          "'<" + std::string(outline.name(around)) + ">' in line " + std::to_string(outline.place(around).line);
      return code == XML_ERROR_NO_ELEMENTS ? "the file ends before " + start + " is closed"
                                           : "'</" + name + ">' does not close " + start;
    }
    const std::string words = XML_ErrorString(code);
    return code == XML_ERROR_DUPLICATE_ATTRIBUTE ? words + " '" + name + "'" : words;
  }

  std::uint32_t offset() const {
    const XML_Index at = XML_GetCurrentByteIndex(owner.get());
    return at < 0 ? 0 : static_cast<std::uint32_t>(at);
  }

  static Parser &of(void *self) { return *static_cast<Parser *>(self); }

  static void onStart(void *self, const char *name, const char **attributes) {
    Parser &parser = of(self);
    Outline &outline = parser.outline;
    const Index index = outline.size();
    const std::uint32_t number = outline.intern(name);
    outline.m_elements.push_back({number, parser.open.empty() ? kNone : parser.open.back(), index + 1, parser.offset(),
                                  static_cast<std::uint32_t>(outline.m_values.size()), 0});
    outline.m_byName[number].push_back(index);
    for (; *attributes != nullptr; attributes += 2) {
      const std::string_view value = attributes[1];
      outline.m_values.push_back({outline.intern(attributes[0]), static_cast<std::uint32_t>(outline.m_pool.size()),
                                  static_cast<std::uint32_t>(value.size())});
      outline.m_pool += value;
    }
    parser.open.push_back(index);
  }

  static void onEnd(void *self, const char * /*name*/) {
    Parser &parser = of(self);
    parser.outline.m_elements[parser.open.back()].end = parser.outline.size();
    parser.open.pop_back();
  }

  static void onText(void *self, const char *text, int length) {
    Parser &parser = of(self);
    const std::string_view piece(text, static_cast<std::size_t>(length));
    if (parser.open.empty() || parser.outline.m_elements[parser.open.back()].ink != 0)
      return;
    const std::size_t ink = piece.find_first_not_of(kBlanks);
    if (ink != std::string_view::npos)
      parser.outline.m_elements[parser.open.back()].ink = parser.offset() + static_cast<std::uint32_t>(ink);
  }

  static void onComment(void *self, const char * /*text*/) {
    of(self).outline.m_extras.remarks.push_back(of(self).offset());
  }

  static void onInstruction(void *self, const char * /*target*/, const char * /*data*/) {
    of(self).outline.m_extras.remarks.push_back(of(self).offset());
  }

  static void onDoctype(void *self, const char *, const char *, const char *, int) {
    const std::size_t begin = of(self).outline.m_text.rfind("<!DOCTYPE", of(self).offset());
    of(self).outline.m_extras.doctype = static_cast<std::uint32_t>(begin);
  }

  Outline &outline;
  std::unique_ptr<XML_ParserStruct, ParserEnd> owner;
  std::vector<Index> open;
};

Outline::Outline(std::string_view bytes) {
  decode(bytes);
  m_extras.carriageReturns = m_text.find('\r') != std::string_view::npos;
  m_lines.push_back(0);
  for (std::size_t at = m_text.find('\n'); at != std::string_view::npos; at = m_text.find('\n', at + 1))
    m_lines.push_back(at + 1);
  if (m_text.size() >= std::numeric_limits<std::uint32_t>::max()) {
    m_failure = {Failure::Kind::kNotWellFormed, {1, 1}, "the file is too large"};
    return;
  }
  if (m_failure.kind == Failure::Kind::kUnknownEncoding)
    return;
  const Failure badBytes = m_failure;
  Parser(*this).run();
  if (badBytes.kind != Failure::Kind::kNone) {
    m_failure = badBytes;
    m_failure.place = at(m_text.size());
  }
}

void Outline::decode(std::string_view bytes) {
  const std::string encoding = encodingOf(bytes);
  m_extras.encoding = encoding;
  if (encoding.empty()) {
    m_extras.byteOrderMark = bytes.starts_with(kByteOrderMark);
    m_text = bytes.substr(m_extras.byteOrderMark ? kByteOrderMark.size() : 0);
    const std::size_t invalid = firstInvalid(m_text);
    if (invalid != std::string_view::npos) {
      m_failure.kind = Failure::Kind::kBadBytes;
      m_failure.reason = "the byte " + byteName(m_text[invalid]) + " is not UTF-8";
      m_text = m_text.substr(0, invalid); // what stands before it can be read
    }
    return;
  }
  const iconv_t made = iconv_open("UTF-8", iconvName(encoding).c_str());
  // NOLINTNEXTLINE(performance-no-int-to-ptr,cppcoreguidelines-pro-type-cstyle-cast): how iconv says that it failed
  if (made == (iconv_t)-1) {
    m_failure = {Failure::Kind::kUnknownEncoding, {1, 1}, "the encoding '" + encoding + "' is unknown"};
    return;
  }
  const std::unique_ptr<void, ConverterEnd> converter(made);
  std::string input(bytes);
  char *from = input.data();
  std::size_t left = input.size();
  std::array<char, 65536> piece{};
  while (true) {
    char *to = piece.data();
    std::size_t room = piece.size();
    const std::size_t result = iconv(converter.get(), left > 0 ? &from : nullptr, &left, &to, &room);
    const int reason = errno;
    m_converted.append(piece.data(), piece.size() - room);
    if (result != std::numeric_limits<std::size_t>::max()) {
      if (from == nullptr || left == 0)
        break;
    } else if (reason != E2BIG) {
      m_failure.kind = Failure::Kind::kBadBytes;
      m_failure.reason = "the byte " + byteName(*from) + " is not " + encoding;
      break;
    }
  }
  m_text = m_converted;
  if (m_text.starts_with(kByteOrderMark)) {
    m_extras.byteOrderMark = true;
    m_text.remove_prefix(kByteOrderMark.size());
  }
}

void Outline::refuse(Failure failure) {
  const std::size_t line = std::clamp<std::size_t>(failure.place.line, 1, m_lines.size());
  failure.place = at(std::min(m_lines[line - 1] + std::max<std::size_t>(failure.place.column, 1) - 1, m_text.size()));
  m_failure = std::move(failure);
}

std::uint32_t Outline::intern(std::string_view name) {
  const auto [place, isNew] = m_numbers.try_emplace(std::string(name), static_cast<std::uint32_t>(m_names.size()));
  if (isNew) {
    m_names.emplace_back(name);
    m_byName.emplace_back();
  }
  return place->second;
}

std::span<const Outline::Value> Outline::values(Index element) const {
  const std::size_t begin = m_elements[element].firstAttribute;
  const std::size_t end = element + 1 < m_elements.size() ? m_elements[element + 1].firstAttribute : m_values.size();
  return std::span(m_values).subspan(begin, end - begin);
}

std::vector<Outline::Attribute> Outline::attributes(Index element) const {
  std::vector<Attribute> result;
  for (const Value &value : values(element))
    result.push_back({m_names[value.name], std::string_view(m_pool).substr(value.begin, value.length)});
  return result;
}

std::optional<std::string_view> Outline::attribute(Index element, std::string_view name) const {
  for (const Value &value : values(element)) {
    if (m_names[value.name] == name)
      return std::string_view(m_pool).substr(value.begin, value.length);
  }
  return std::nullopt;
}

std::span<const Outline::Index> Outline::below(Index element, std::string_view name) const {
  const auto number = m_numbers.find(std::string(name));
  if (number == m_numbers.end())
    return {};
  const std::vector<Index> &all = m_byName[number->second];
  const auto begin = std::upper_bound(all.begin(), all.end(), element);
  const auto end = std::lower_bound(begin, all.end(), m_elements[element].end);
  return {begin, end};
}

Outline::Index Outline::first(Index element, std::string_view name) const {
  // The members of a record mostly stand directly in it, a few elements on.
  constexpr Index kNear = 8;
  const Index end = m_elements[element].end;
  for (Index near = element + 1; near < std::min(end, element + kNear); ++near) {
    if (this->name(near) == name)
      return near;
  }
  const std::span<const Index> found = below(element, name);
  return found.empty() ? kNone : found.front();
}

// Walks over the tag as the parser has found it to be well-formed.
Outline::Offsets Outline::attributeOffsets(Index element, std::string_view wanted, std::size_t *tagEnd) const {
  const std::size_t tag = m_elements[element].offset;
  const std::size_t begin = m_text.find_first_of(" \t\r\n/>", tag);
  // Attributes are mostly asked for in their order, and there may be very many.
  const bool goesOn = tagEnd == nullptr && m_lastAttribute.name == element && m_lastAttribute.value > begin;
  std::size_t at = goesOn ? m_lastAttribute.value : begin;
  while (at != std::string_view::npos) {
    at = m_text.find_first_not_of(" \t\r\n/", at);
    if (at == std::string_view::npos || m_text[at] == '>')
      break;
    const std::size_t nameEnd = m_text.find_first_of(" \t\r\n=", at);
    const std::size_t quote = m_text.find_first_of("'\"", nameEnd);
    if (quote == std::string_view::npos)
      break;
    if (tagEnd == nullptr && m_text.substr(at, nameEnd - at) == wanted) {
      m_lastAttribute = {element, at};
      return {at, quote + 1};
    }
    at = m_text.find(m_text[quote], quote + 1);
    at = at == std::string_view::npos ? at : at + 1;
  }
  if (tagEnd != nullptr)
    *tagEnd = at == std::string_view::npos ? m_elements[element].offset : at + 1;
  if (goesOn) {
    m_lastAttribute = {};
    return attributeOffsets(element, wanted, tagEnd);
  }
  return {tag, tag};
}

std::size_t Outline::textOffset(Index element) const {
  std::size_t end = 0;
  attributeOffsets(element, {}, &end);
  return end;
}

Position Outline::textPlace(Index element) const { return at(textOffset(element)); }

std::size_t Outline::offsetOf(Position place) const {
  std::size_t at = place.line <= m_lines.size() ? m_lines[place.line - 1] : m_text.size();
  for (std::size_t column = 1; column < place.column && at < m_text.size(); ++column) {
    for (++at; at < m_text.size() && isContinuation(m_text[at]);)
      ++at;
  }
  return at;
}

std::optional<Position> Outline::inkPlace(Index element) const {
  const std::uint32_t ink = m_elements[element].ink;
  return ink != 0 ? std::optional(at(ink)) : std::nullopt;
}

Position Outline::attributePlace(Index element, std::string_view name) const {
  return at(attributeOffsets(element, name, nullptr).name);
}

Position Outline::attributeValuePlace(Index element, std::string_view name) const {
  return at(attributeOffsets(element, name, nullptr).value);
}

Position Outline::at(std::size_t offset) const {
  if (offset < m_last.offset || (m_last.line < m_lines.size() && m_lines[m_last.line] <= offset)) {
    m_last.line = static_cast<std::size_t>(std::upper_bound(m_lines.begin(), m_lines.end(), offset) - m_lines.begin());
    m_last.offset = m_lines[m_last.line - 1];
    m_last.column = 1;
  }
  // In a long line, only what follows the last place is counted.
  const std::string_view between = m_text.substr(m_last.offset, offset - m_last.offset);
  const auto continued = std::count_if(between.begin(), between.end(), isContinuation);
  m_last.column += between.size() - static_cast<std::size_t>(continued);
  m_last.offset = offset;
  return {m_last.line, m_last.column};
}
