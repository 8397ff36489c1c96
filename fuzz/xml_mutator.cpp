#include "fuzz/xml_mutator.h"

#include "fuzz/document_support.h"

#include <algorithm>
#include <cstring>
#include <expat.h>
#include <map>
#include <random>

extern "C" std::size_t LLVMFuzzerMutate(unsigned char *data, std::size_t size, std::size_t maxSize);

namespace {

/// Values at the limits of what the accessors read, and values that have to be escaped.
constexpr const char *kTexts[] = {"",      " ",        "0",          "0x",           "0xFFFF",
                                  "010",   "1e400",    "1/2",        "10 MHz",       "TRUE",
                                  "false", "16;17;16", "a&<>\"']]>", "\r\n\t",       "Unassigned",
                                  "Dummy", "$A$",      "\xC3\xA9",   "\xE8\xA1\xA8", "\xF0\x9F\x98\x80"};

/// An element or an attribute. A file is a list of them in file order: an element is followed by its attributes, then
/// by its child elements.
struct Node {
  std::size_t depth;
  bool isAttribute;
  std::string name;
  std::string text;
};
using Nodes = std::vector<Node>;

/// What an element of each name can contain, taken from the document classes.
using Vocabulary = std::map<std::string, Nodes>;

void describe(CXMLFolder &folder, Vocabulary &vocabulary) {
  Nodes &members = vocabulary[std::string(folder.GetTag().View())];
  for (const kestrune::MemberView &member : kestrune::MembersOf(folder)) {
    using enum kestrune::MemberKind;
    const std::string_view text = member.folder != nullptr ? "" : member.value->View();
    members.push_back({0, member.kind == Attribute || member.kind == BoolAttribute,
                       std::string(member.value->GetTag().View()), std::string(text)});
    if (member.folder != nullptr)
      describe(*member.folder, vocabulary);
  }
  if (auto *const list = dynamic_cast<CXMLCollectionFolder *>(&folder)) {
    const kestrune::ItemClass itemClass = kestrune::ItemClassOf(*list);
    members.push_back({0, false, std::string(itemClass.tag.View()), ""});
    describe(*itemClass.item, vocabulary);
  }
}

const Vocabulary &vocabulary() {
  static const Vocabulary all = [] {
    Vocabulary names;
    ForEachDocument([&](CXMLFolder &document) { describe(document, names); });
    return names;
  }();
  return all;
}

/// Parses a file into nodes.
class Reader {
public:
  /// Returns false if the file is not well-formed, or if its entities make it much larger than it is.
  bool read(std::string_view input) {
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> owner(XML_ParserCreate(nullptr), XML_ParserFree);
    m_parser = owner.get();
    m_room = input.size() * 4;
    XML_SetUserData(m_parser, this);
    XML_SetElementHandler(m_parser, onStart,
                          [](void *self, const char *) { static_cast<Reader *>(self)->m_open.pop_back(); });
    XML_SetCharacterDataHandler(m_parser, onText);
    if (XML_Parse(m_parser, input.data(), static_cast<int>(input.size()), 1) != XML_STATUS_OK)
      return false;
    prolog = input.substr(0, prolog.size());
    if (const std::size_t end = prolog.find("?>"); prolog.starts_with("<?xml ") && end != std::string::npos)
      prolog.erase(0, end + 2);
    if (prolog.find('\0') != std::string::npos) // UTF-16
      prolog.clear();
    return true;
  }

  Nodes nodes;
  std::string prolog; // without the XML declaration, because the output is UTF-8

private:
  static void onStart(void *self, const char *name, const char **attributes) {
    auto &reader = *static_cast<Reader *>(self);
    if (reader.nodes.empty())
      reader.prolog.resize(static_cast<std::size_t>(XML_GetCurrentByteIndex(reader.m_parser)));
    const std::size_t depth = reader.m_open.size();
    reader.m_open.push_back(reader.nodes.size());
    reader.nodes.push_back({depth, false, name, ""});
    for (int i = 0, given = XML_GetSpecifiedAttributeCount(reader.m_parser); i < given; i += 2)
      reader.nodes.push_back({depth + 1, true, attributes[i], attributes[i + 1]});
    reader.spend(1);
  }

  static void onText(void *self, const char *text, int length) {
    auto &reader = *static_cast<Reader *>(self);
    reader.nodes[reader.m_open.back()].text.append(text, static_cast<std::size_t>(length));
    reader.spend(static_cast<std::size_t>(length));
  }

  void spend(std::size_t amount) {
    if (amount > m_room)
      XML_StopParser(m_parser, XML_FALSE);
    m_room -= std::min(amount, m_room);
  }

  XML_Parser m_parser = nullptr;
  std::vector<std::size_t> m_open;
  std::size_t m_room = 0;
};

std::string escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (std::string_view("&<>\"\r\n\t").find(c) != std::string_view::npos)
      out += "&#" + std::to_string(static_cast<int>(c)) + ';';
    else
      out += c;
  }
  return out;
}

std::string written(const Nodes &nodes) {
  std::string out;
  std::vector<const Node *> open;
  const auto closeTo = [&](std::size_t depth) {
    for (; open.size() > depth; open.pop_back())
      out += "</" + open.back()->name + '>';
  };
  for (std::size_t i = 0; i < nodes.size();) {
    closeTo(nodes[i].depth);
    open.push_back(&nodes[i]);
    out += '<' + nodes[i].name;
    for (++i; i < nodes.size() && nodes[i].isAttribute; ++i)
      out += ' ' + nodes[i].name + "=\"" + escaped(nodes[i].text) + '"';
    out += '>' + escaped(open.back()->text);
  }
  closeTo(0);
  return out;
}

class Mutation {
public:
  Mutation(Nodes &nodes, std::minstd_rand &random) : m_nodes(nodes), m_random(random) {}

  void apply() {
    const std::size_t at = below(m_nodes.size());
    Node &node = m_nodes[at];
    const auto from = m_nodes.begin() + static_cast<std::ptrdiff_t>(at);
    const auto end = endOf(from);
    switch (below(7)) {
    case 0: // remove, except the root
      m_nodes.erase(at != 0 ? from : end, end);
      break;
    case 1: // copy to somewhere else
      insertBelow(below(m_nodes.size()), Nodes(from, end));
      break;
    case 2: // swap with the next
      if (end != m_nodes.end() && end->depth == node.depth && end->isAttribute == node.isAttribute)
        std::rotate(from, end, endOf(end));
      break;
    case 3: // rename
      node.name = std::next(vocabulary().begin(), static_cast<std::ptrdiff_t>(below(vocabulary().size())))->first;
      break;
    case 4: // add something that the library looks for there
    case 5:
      if (const auto known = vocabulary().find(node.name); known != vocabulary().end() && !known->second.empty())
        insertBelow(at, {known->second[below(known->second.size())]});
      break;
    default:
      changeText(node.text);
    }
  }

private:
  std::size_t below(std::size_t bound) { return m_random() % bound; }

  Nodes::iterator endOf(Nodes::iterator node) {
    return std::find_if(node + 1, m_nodes.end(), [&](const Node &each) { return each.depth <= node->depth; });
  }

  /// Inserts `part` before the child elements of `parent`, unless it is an attribute that the element already has.
  void insertBelow(std::size_t parent, Nodes part) {
    while (m_nodes[parent].isAttribute)
      --parent;
    auto place = m_nodes.begin() + static_cast<std::ptrdiff_t>(parent) + 1;
    for (; place != m_nodes.end() && place->isAttribute; ++place)
      if (part.front().isAttribute && place->name == part.front().name)
        return;
    const std::size_t top = part.front().depth;
    for (Node &each : part)
      each.depth += m_nodes[parent].depth + 1 - top;
    m_nodes.insert(place, part.begin(), part.end());
  }

  void changeText(std::string &text) {
    constexpr long long kSteps[] = {-1, 1, -256, 256, 1LL << 31, 1LL << 32};
    const std::size_t size = text.size();
    switch (below(4)) {
    case 0:
      text = kTexts[below(std::size(kTexts))];
      break;
    case 1: // a text from elsewhere in the file, such as a key
      text = m_nodes[below(m_nodes.size())].text;
      break;
    case 2:
      text = std::to_string(std::atoi(text.c_str()) + kSteps[below(std::size(kSteps))]);
      break;
    default:
      text.resize(size + 16);
      text.resize(LLVMFuzzerMutate(reinterpret_cast<unsigned char *>(text.data()), size, text.size()));
    }
  }

  Nodes &m_nodes;
  std::minstd_rand &m_random;
};

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(unsigned char *data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
  constexpr unsigned kBytesAlone = 8;
  std::minstd_rand random(seed);
  const std::string_view input(reinterpret_cast<const char *>(data), size);
  const std::size_t mark = input.find(kCompanionMark);
  const std::size_t cut = mark == std::string_view::npos ? size : mark;
  // Changes one of the two files; the rest of the input stays.
  const bool inCompanion = cut != size && random() % 2 == 0;
  const std::size_t begin = inCompanion ? cut + kCompanionMark.size() : 0;
  const std::size_t end = inCompanion ? size : cut;
  Reader file;
  if (random() % kBytesAlone != 0 && file.read(input.substr(begin, end - begin))) {
    for (std::size_t i = 0, count = 1 + random() % 4; i < count; ++i)
      Mutation(file.nodes, random).apply();
    std::string changed(input);
    changed.replace(begin, end - begin, file.prolog + written(file.nodes));
    if (changed.size() <= maxSize) {
      std::memcpy(data, changed.data(), changed.size());
      return changed.size();
    }
  }
  return LLVMFuzzerMutate(data, size, maxSize);
}
