#include "tools/check/checked_file.h"

#include "tools/document.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>

namespace {

/// The text of a reference such as &lt; or &#65;, without its & and ;. Nothing for an entity of the file's own.
std::optional<std::string> referred(std::string_view name) {
  static constexpr std::array<std::pair<std::string_view, const char *>, 5> kEntities = {
      {{"lt", "<"}, {"gt", ">"}, {"amp", "&"}, {"quot", "\""}, {"apos", "'"}}};
  for (const auto &[entity, text] : kEntities) {
    if (entity == name)
      return text;
  }
  if (!name.starts_with('#'))
    return std::nullopt;
  const bool isHex = name.starts_with("#x");
  std::uint32_t code = 0;
  for (const char digit : name.substr(isHex ? 2 : 1)) {
    const int value = digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10;
    code = code * (isHex ? 16U : 10U) + static_cast<std::uint32_t>(value); // the parser has found it to be a character
  }
  std::string bytes;
  const auto add = [&](std::uint32_t byte) { bytes += static_cast<char>(byte); };
  if (code < 0x80) {
    add(code);
  } else if (code < 0x800) {
    add(0xC0 | (code >> 6));
    add(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    add(0xE0 | (code >> 12));
    add(0x80 | ((code >> 6) & 0x3F));
    add(0x80 | (code & 0x3F));
  } else {
    add(0xF0 | (code >> 18));
    add(0x80 | ((code >> 12) & 0x3F));
    add(0x80 | ((code >> 6) & 0x3F));
    add(0x80 | (code & 0x3F));
  }
  return bytes;
}

/// Adds character data as a parser gives it. False if it refers to an entity of the file's own.
bool addText(std::string &text, std::string_view raw, bool withReferences) {
  for (std::size_t at = 0; at < raw.size(); ++at) {
    if (raw[at] == '\r') {
      if (at + 1 >= raw.size() || raw[at + 1] != '\n')
        text += '\n';
    } else if (raw[at] == '&' && withReferences) {
      const std::size_t end = std::min(raw.find(';', at), raw.size());
      const std::optional<std::string> character = referred(raw.substr(at + 1, end - at - 1));
      if (!character)
        return false;
      text += *character;
      at = end;
    } else {
      text += raw[at];
    }
  }
  return true;
}

/// Where the number in the name of an add-on begins, and where it ends; both 0 for other names.
std::pair<std::size_t, std::size_t> addOnDigits(const std::string &name) {
  const std::size_t end = std::min(name.rfind('.'), name.size());
  std::size_t begin = end;
  while (begin > 0 && name[begin - 1] >= '0' && name[begin - 1] <= '9')
    --begin;
  const bool isAddOn = begin < end && end - begin < 9 && begin > 1 && name[begin - 1] == '-' && name[begin] != '0';
  return isAddOn ? std::pair(begin, end) : std::pair<std::size_t, std::size_t>(0, 0);
}

} // namespace

std::optional<std::string> plainText(const Outline &outline, Outline::Index element) {
  const std::string_view all = outline.text();
  std::size_t at = outline.textOffset(element);
  std::string text;
  if (at < 2 || all[at - 2] == '/') // an empty tag
    return text;
  while (true) {
    const std::size_t tag = all.find('<', at);
    if (tag == std::string_view::npos || !addText(text, all.substr(at, tag - at), true))
      return std::nullopt;
    const std::string_view rest = all.substr(tag);
    const bool isComment = rest.starts_with("<!--");
    const bool isSection = rest.starts_with("<![CDATA[");
    if (rest.starts_with("</"))
      return text;
    if (!isComment && !isSection && !rest.starts_with("<?"))
      return std::nullopt; // an element inside
    const std::string_view close = isComment ? "-->" : isSection ? "]]>" : "?>";
    const std::size_t end = all.find(close, tag);
    if (end == std::string_view::npos)
      return std::nullopt;
    if (isSection)
      addText(text, all.substr(tag + 9, end - tag - 9), false);
    at = end + close.size();
  }
}

CheckedFile::CheckedFile(Source source) : m_source(std::move(source)), m_outline(m_source.bytes) {
  if (!m_source.path.empty())
    m_folder = std::filesystem::absolute(m_source.path).lexically_normal().parent_path();
  if (m_outline.size() > 0)
    m_kind = kindOfRoot(m_outline.name(0));
  if (m_kind != nullptr) {
    askLibrary();
    addRecords();
  }
}

void CheckedFile::askLibrary() {
  if (!isWhole() || (!m_outline.extras().doctype && m_outline.extras().encoding.empty()))
    return; // both readers take the same ordinary files
  const std::unique_ptr<CXMLTopLevelFolder> document = m_kind->make(m_kind->newest());
  if (kestrune::LoadFromText(*document, m_source.bytes) != KRX_E_UNEXPECTED_DATA)
    return;
  Outline::Failure failure{Outline::Failure::Kind::kUnknownEncoding, {1, 1}, "the library cannot read the file"};
  for (const kestrune::Finding &finding : kestrune::ReportOf(*document)) {
    const bool isEntity = finding.reason.find("entity") != std::string::npos;
    failure = {isEntity ? Outline::Failure::Kind::kUndeclaredEntity : Outline::Failure::Kind::kUnknownEncoding,
               {static_cast<std::size_t>(finding.line), static_cast<std::size_t>(finding.column)},
               finding.reason};
  }
  m_outline.refuse(std::move(failure));
}

std::string CheckedFile::baseName() const { return std::filesystem::path(name()).filename(); }

int CheckedFile::addOnNumber() const {
  const std::string base = baseName();
  const auto [begin, end] = addOnDigits(base);
  return end == 0 || !isKind("VorlanTyp") ? 0 : std::stoi(base.substr(begin, end - begin));
}

std::string CheckedFile::addOnOf() const {
  std::string base = baseName();
  const auto [begin, end] = addOnDigits(base);
  return base.erase(begin - 1, end - begin + 1);
}

void CheckedFile::addRecords() {
  m_isRecord.resize(m_outline.size());
  addRecord(shapeOf(*m_kind), 0, kNone, nullptr);
  // Records are added behind the others while their turn comes: the depth of the file does not matter.
  for (Index next = 0; next < m_records.size(); ++next)
    addInner(next);
}

CheckedFile::Index CheckedFile::addRecord(const RecordShape &shape, Index element, Index parent,
                                          const MemberShape *collection) {
  const Index number = static_cast<Index>(m_records.size());
  const std::vector<MemberShape> &members = shape.members;
  m_records.push_back({&shape, element, parent, static_cast<Index>(m_slots.size()), collection});
  m_isRecord[element] = true;
  m_slots.resize(m_slots.size() + members.size(), kNone);
  Index *const slots = m_slots.data() + m_records.back().firstSlot;
  for (std::size_t i = 0; i < members.size(); ++i) {
    if (members[i].isAttribute() && m_outline.attribute(element, members[i].tag))
      slots[i] = element;
  }
  std::size_t next = 0; // children mostly stand in the order of the members
  for (Index child = element + 1; child < m_outline.end(element); child = m_outline.end(child)) {
    const std::string_view name = m_outline.name(child);
    for (std::size_t tried = 0; tried < members.size(); ++tried) {
      const std::size_t i = (next + tried) % members.size();
      if (members[i].tag != name || members[i].isAttribute())
        continue;
      if (slots[i] == kNone)
        slots[i] = child;
      next = i + 1;
      break;
    }
  }
  for (std::size_t i = 0; i < members.size(); ++i) {
    if (slots[i] != kNone)
      m_version = std::max(m_version, members[i].version);
  }
  return number;
}

void CheckedFile::addInner(Index number) {
  const RecordShape &shape = *m_records[number].shape;
  const Index firstSlot = m_records[number].firstSlot;
  for (std::size_t i = 0; i < shape.members.size(); ++i) {
    const MemberShape &member = shape.members[i];
    const Index element = m_slots[firstSlot + i];
    if (member.isValue() || element == kNone)
      continue;
    if (!member.isCollection()) {
      addRecord(*member.folder, element, number, nullptr);
      continue;
    }
    for (const Index item : m_outline.below(element, member.folder->tag)) {
      if (++m_looked > std::size_t{4} * m_outline.size()) // collections nested in each other share their items
        break;
      if (!m_isRecord[item])
        addRecord(*member.folder, item, number, &member);
    }
  }
}

std::vector<CheckedFile::Index> CheckedFile::recordsOf(std::string_view tag) const {
  std::vector<Index> found;
  for (Index number = 0; number < m_records.size(); ++number) {
    if (m_records[number].shape->tag == tag)
      found.push_back(number);
  }
  return found;
}

CheckedFile::Index CheckedFile::slot(const Record &record, const MemberShape &member) const {
  return m_slots[record.firstSlot + static_cast<std::size_t>(&member - record.shape->members.data())];
}

std::size_t CheckedFile::textOffset(const Record &record, const MemberShape &member) const {
  return member.isAttribute() ? m_outline.attributeValueOffset(record.element, member.tag)
                              : m_outline.textOffset(slot(record, member));
}

std::size_t CheckedFile::nameOffset(const Record &record, const MemberShape &member) const {
  return member.isAttribute() ? m_outline.attributeOffset(record.element, member.tag)
                              : m_outline.offset(slot(record, member));
}

std::optional<std::string> CheckedFile::text(const Record &record, const MemberShape &member) const {
  const Index element = slot(record, member);
  if (element == kNone)
    return std::nullopt;
  if (!member.isAttribute())
    return m_outline.isLeaf(element) && !isCut(element) ? plainText(m_outline, element) : std::nullopt;
  return std::string(*m_outline.attribute(element, member.tag));
}

std::optional<std::string> CheckedFile::text(const Record &record, std::string_view tag) const {
  const MemberShape *const member = record.shape->member(tag);
  return member != nullptr && member->isValue() ? text(record, *member) : std::nullopt;
}

std::size_t CheckedFile::textOffset(const Record &record, std::string_view tag) const {
  return textOffset(record, *record.shape->member(tag));
}

std::string CheckedFile::nameOf(Index number) const {
  std::string name;
  for (; number != kNone && number != 0; number = m_records[number].parent) {
    const Record &record = m_records[number];
    std::string step = record.shape->tag;
    if (record.collection != nullptr) {
      std::optional<std::string> text = this->text(record, "Name");
      if (!text || text->empty())
        text = m_outline.attribute(record.element, record.shape->keyAttribute);
      if (text && !text->empty())
        step = *text;
    } else if (record.parent != 0) {
      continue; // a folder of an item is part of it
    }
    name = name.empty() ? step : step + "/" + name;
  }
  return name;
}

std::string CheckedFile::addressOf(Index number) const {
  std::string address;
  for (; number != kNone && number != 0; number = m_records[number].parent) {
    const Record &record = m_records[number];
    std::string step = record.shape->tag;
    if (record.collection != nullptr) {
      std::optional<std::string> key = text(record, "Key");
      if (!key || key->empty())
        key = m_outline.attribute(record.element, record.shape->keyAttribute);
      if (!key || key->empty()) {
        const auto same = [&](const Record &other) { return other.parent == record.parent && &other <= &record; };
        key = "[" + std::to_string(std::count_if(m_records.begin(), m_records.end(), same)) + "]";
      }
      step = record.collection->tag + "/" + addressStep(*key);
    }
    address = address.empty() ? step : step + "/" + address;
  }
  return address;
}
