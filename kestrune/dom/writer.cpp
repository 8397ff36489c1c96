#include "kestrune/dom/dom.h"
#include "kestrune/dom/tree.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/file_saving.h"

#include <array>
#include <cstring>
#include <expat.h>
#include <memory>
#include <system_error>
#include <vector>

namespace kestrune::dom {

namespace {

/// A text that only grows, in blocks: nothing is moved, and no more room is taken than it needs.
class Output {
public:
  void append(std::string_view text) {
    while (!text.empty()) {
      if (m_used == kBlockSize) {
        m_blocks.push_back(std::make_unique_for_overwrite<char[]>(kBlockSize));
        m_used = 0;
      }
      const std::size_t count = std::min(text.size(), kBlockSize - m_used);
      std::memcpy(m_blocks.back().get() + m_used, text.data(), count);
      m_used += count;
      text.remove_prefix(count);
    }
  }

  std::vector<std::string_view> blocks() const {
    std::vector<std::string_view> views;
    for (const auto &block : m_blocks)
      views.emplace_back(block.get(), &block == &m_blocks.back() ? m_used : kBlockSize);
    return views;
  }

private:
  static constexpr std::size_t kBlockSize = std::size_t{64} << 10;

  std::vector<std::unique_ptr<char[]>> m_blocks;
  std::size_t m_used = kBlockSize; // of the last block
};

/// What a byte of a text needs on its way into a file.
enum class Need : unsigned char { Nothing, Escape, Check, Refuse };

using Needs = std::array<Need, 256>;

constexpr Needs needsOf(std::string_view escaped) {
  Needs needs{};
  for (std::size_t byte = 0; byte < needs.size(); ++byte)
    needs[byte] = byte < 0x20 ? Need::Refuse : byte < 0x80 ? Need::Nothing : Need::Check;
  for (const char plain : std::string_view("\t\n\r"))
    needs[static_cast<unsigned char>(plain)] = Need::Nothing;
  for (const char character : escaped)
    needs[static_cast<unsigned char>(character)] = Need::Escape;
  return needs;
}

// Line ends and tabs in attributes, and carriage returns anywhere, would come back as something else.
constexpr Needs kTextNeeds = needsOf("&<>\r");
constexpr Needs kAttributeNeeds = needsOf("&<\"\t\n\r");

std::string_view escapeOf(char character) {
  switch (character) {
  case '&':
    return "&amp;";
  case '<':
    return "&lt;";
  case '>':
    return "&gt;";
  case '"':
    return "&quot;";
  case '\t':
    return "&#9;";
  case '\n':
    return "&#10;";
  default:
    return "&#13;";
  }
}

[[noreturn]] void fail(const std::string &description) { throw _com_error(E_INVALIDARG, description.c_str()); }

/// The character sequence at the front of `text`, which is not ASCII: its length, or 0 where XML cannot carry it.
std::size_t checkedLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  const std::string_view character = text.substr(0, length);
  const bool isNonCharacter = character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF";
  return !isNonCharacter && platform::IsValidUtf8(character) ? length : 0;
}

bool isAsciiName(std::string_view name) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':'; };
  const auto isFurther = [](char c) { return (c >= '0' && c <= '9') || c == '-' || c == '.'; };
  return !name.empty() && isLetter(name[0]) &&
         std::all_of(name.begin(), name.end(), [&](char c) { return isLetter(c) || isFurther(c); });
}

/// Whether the parser would take `name` for the name of an element.
bool isName(std::string_view name) {
  if (std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
    return isAsciiName(name);
  // Which other letters a name may have, nobody knows better than the parser that has to read the file again.
  const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate("UTF-8"), XML_ParserFree);
  if (!parser)
    throw std::bad_alloc();
  struct Found {
    std::string_view name;
    bool same = false;
  } found{name};
  XML_SetUserData(parser.get(), &found);
  XML_SetStartElementHandler(parser.get(), [](void *data, const char *read, const char **) {
    auto *const expected = static_cast<Found *>(data);
    expected->same = expected->name == read;
  });
  const std::string text = "<" + std::string(name) + "/>";
  return XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), 1) == XML_STATUS_OK && found.same;
}

} // namespace

/// Makes the text of one document.
class Writer {
public:
  explicit Writer(const MSXML::IXMLDOMDocument &document)
      : m_document(document), m_tree(*document.m_tree), m_nameChecked(m_tree.nameCount()) {}

  std::vector<std::string_view> write() {
    if (m_tree.m_unsavable)
      fail("a text is not valid in the code page");
    if (m_document.m_root == nullptr)
      fail("the document has no root element");
    for (const MSXML::IXMLDOMNode *instruction : m_tree.m_instructions)
      writeInstruction(*instruction);
    writeElements(m_document.m_root);
    m_output.append("\n");
    return m_output.blocks();
  }

private:
  using Node = MSXML::IXMLDOMNode;
  using Element = MSXML::IXMLDOMElement;

  void writeInstruction(const Node &instruction) {
    const std::string_view target = name(instruction.m_name);
    if (target == "xml") {
      m_output.append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
      return;
    }
    if (instruction.ownText().find("?>") != std::string_view::npos)
      fail("a processing instruction ends too early");
    m_output.append("<?");
    m_output.append(target);
    m_output.append(" ");
    writeText(instruction.ownText(), needsOf(""));
    m_output.append("?>\n");
  }

  void writeElements(const Element *root) {
    const Node *node = root;
    while (true) {
      const Element *const element = node->is(Node::Kind::Element) ? static_cast<const Element *>(node) : nullptr;
      if (element != nullptr)
        writeStart(*element);
      writeText(node->ownText(), kTextNeeds);
      if (element != nullptr && element->m_first != nullptr) {
        node = element->m_first;
        continue;
      }
      if (element != nullptr)
        writeEnd(*element);
      while (node != root && node->m_next == nullptr) {
        node = node->m_parent;
        writeEnd(*node);
      }
      if (node == root)
        return;
      node = node->m_next;
    }
  }

  void writeStart(const Element &element) {
    m_output.append("<");
    m_output.append(name(element.m_name));
    for (const Element::Attribute *attribute = element.m_attributes; attribute != nullptr;
         attribute = attribute->next) {
      m_output.append(" ");
      m_output.append(name(attribute->name));
      m_output.append("=\"");
      writeText({attribute->text, attribute->length}, kAttributeNeeds);
      m_output.append("\"");
    }
    m_output.append(">");
  }

  void writeEnd(const Node &element) {
    m_output.append("</");
    m_output.append(name(element.m_name));
    m_output.append(">");
  }

  void writeText(std::string_view text, const Needs &needs) {
    std::size_t written = 0;
    for (std::size_t at = 0; at < text.size();) {
      switch (needs[static_cast<unsigned char>(text[at])]) {
      case Need::Nothing:
        ++at;
        break;
      case Need::Check: {
        const std::size_t length = checkedLength(text.substr(at));
        if (length == 0)
          fail("a text holds bytes that are no character of XML");
        at += length;
        break;
      }
      case Need::Escape:
        m_output.append(text.substr(written, at - written));
        m_output.append(escapeOf(text[at]));
        written = ++at;
        break;
      case Need::Refuse:
        fail("a text holds a control character that XML cannot carry");
      }
    }
    m_output.append(text.substr(written));
  }

  std::string_view name(std::uint32_t number) {
    const std::string_view name = m_tree.name(number);
    if (!m_nameChecked[number] && !isName(name))
      fail("no XML name: '" + std::string(name) + "'");
    m_nameChecked[number] = true;
    return name;
  }

  const MSXML::IXMLDOMDocument &m_document;
  const Tree &m_tree;
  std::vector<bool> m_nameChecked;
  Output m_output;
};

} // namespace kestrune::dom

HRESULT MSXML::IXMLDOMDocument::save(const char *path) const {
  kestrune::dom::Writer writer(*this);
  const int error = kestrune::platform::SaveFile(path, writer.write());
  if (error != 0)
    throw _com_error(E_FAIL, std::generic_category().message(error).c_str());
  return S_OK;
}
