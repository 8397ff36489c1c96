#include "kestrune/dom/dom.h"
#include "kestrune/dom/tree.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/file_saving.h"
#include "kestrune/platform/system_text.h"

#include <algorithm>
#include <array>
#include <expat.h>
#include <memory>
#include <string>
#include <vector>

#if defined(__SSE2__) && !defined(KESTRUNE_NO_SIMD)
#include <bit>
#include <emmintrin.h>
#endif

namespace kestrune::dom {

namespace {

/// Counts what would be written.
class Counter {
public:
  void append(std::string_view text) { m_size += text.size(); }
  std::uint64_t size() const { return m_size; }

private:
  std::uint64_t m_size = 0;
};

/// What has to be done with a byte of a text when it is written.
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
constexpr Needs kInstructionNeeds = needsOf("");

/// The offset, at or after `at`, of the first byte of a text of the tree for which something has to be done, or its
/// size. It may also stop for a byte that only other texts have to care about.
#if defined(__SSE2__) && !defined(KESTRUNE_NO_SIMD)

std::size_t skipPlain(std::string_view text, std::size_t at, const Needs & /*needs*/) {
  for (; at < text.size(); at += sizeof(__m128i)) {
    const __m128i bytes = _mm_loadu_si128(static_cast<const __m128i *>(static_cast<const void *>(text.data() + at)));
    const auto equal = [&](char each) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(each)); };
    // One signed compare finds the controls and what is not ASCII.
    const __m128i found = _mm_or_si128(_mm_or_si128(_mm_cmplt_epi8(bytes, _mm_set1_epi8(' ')), equal('&')),
                                       _mm_or_si128(_mm_or_si128(equal('<'), equal('>')), equal('"')));
    auto bits = static_cast<unsigned>(_mm_movemask_epi8(found));
    if (const std::size_t left = text.size() - at; left < sizeof(__m128i))
      bits &= (1U << left) - 1;
    if (bits != 0)
      return at + static_cast<std::size_t>(std::countr_zero(bits));
  }
  return text.size();
}
static_assert(Tree::kReadableBehind >= sizeof(__m128i) - 1);

#else

std::size_t skipPlain(std::string_view text, std::size_t at, const Needs &needs) {
  while (at < text.size() && needs[static_cast<unsigned char>(text[at])] == Need::Nothing)
    ++at;
  return at;
}

#endif

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

[[noreturn]] void refuse(const std::string &description) { Fail(E_INVALIDARG, description); }

/// The length of the character at the front of `text`, which is not ASCII, or 0 where XML cannot carry it.
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

/// Whether Expat accepts `name` as the name of an element.
bool isName(std::string_view name) {
  if (std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
    return isAsciiName(name);
  // Expat has to read the file again, so it also decides which other letters a name may have.
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

/// Makes the text of one document: counts it first, which checks everything, and writes it then.
class Writer final : public platform::SavedText {
public:
  explicit Writer(const Tree &tree) : m_tree(tree), m_nameChecked(tree.names.size()) {
    if (m_tree.unsavable)
      refuse("a text is not valid in the code page");
    if (m_tree.root == nullptr)
      refuse("the document has no root element");
    Counter counter;
    try {
      write(counter);
    } catch (const _com_error &error) {
      throw SaveRefused(error, faultyPlace().c_str());
    }
    m_size = counter.size();
  }

  std::uint64_t size() const override { return m_size; }
  void writeTo(platform::FileOutput &file) const override { write(file); }
  std::string text() const {
    std::string text;
    text.reserve(static_cast<std::size_t>(m_size));
    write(text);
    return text;
  }

private:
  template <class Output>
  void write(Output &output) const {
    for (const Node *instruction : m_tree.instructions)
      writeInstruction(output, *instruction);
    Walk(
        m_tree.root,
        [&](const Node &node) {
          if (const Element *const element = node.element(); element != nullptr)
            writeStart(output, *element);
          writeText(output, node.ownText(), kTextNeeds);
        },
        [&](const Node &node) {
          if (const Element *const element = node.element(); element != nullptr)
            writeEnd(output, *element);
        });
    output.append("\n");
  }

  template <class Output>
  void writeInstruction(Output &output, const Node &instruction) const {
    const std::string_view target = name(instruction.name());
    if (target == "xml") {
      output.append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
      return;
    }
    if (instruction.ownText().find("?>") != std::string_view::npos)
      refuse("a processing instruction ends too early");
    output.append("<?");
    output.append(target);
    output.append(" ");
    writeText(output, instruction.ownText(), kInstructionNeeds);
    output.append("?>\n");
  }

  template <class Output>
  void writeStart(Output &output, const Element &element) const {
    writeLayout(output, element.layoutBefore());
    output.append("<");
    output.append(name(element.name()));
    for (const Attribute *attribute = element.firstAttribute(); attribute != nullptr; attribute = attribute->next) {
      output.append(" ");
      output.append(name(attribute->name));
      output.append("=\"");
      writeText(output, attribute->value(), kAttributeNeeds);
      output.append("\"");
    }
    output.append(">");
  }

  template <class Output>
  void writeEnd(Output &output, const Element &element) const {
    writeLayout(output, element.layoutAtEnd());
    output.append("</");
    output.append(name(element.name()));
    output.append(">");
  }

  template <class Output>
  static void writeLayout(Output &output, std::uint32_t length) {
    static constexpr std::string_view kLayout = "\n\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t";
    output.append(kLayout.substr(0, length));
    for (std::size_t done = kLayout.size(); done < length; done += kLayout.size() - 1)
      output.append(kLayout.substr(1, length - done));
  }

  template <class Output>
  static void writeText(Output &output, std::string_view text, const Needs &needs) {
    std::size_t written = 0;
    for (std::size_t at = 0; (at = skipPlain(text, at, needs)) < text.size();) {
      switch (needs[static_cast<unsigned char>(text[at])]) {
      case Need::Nothing:
        ++at;
        break;
      case Need::Check: {
        const std::size_t length = checkedLength(text.substr(at));
        if (length == 0)
          refuse("a text holds bytes that are not a character of XML");
        at += length;
        break;
      }
      case Need::Escape:
        output.append(text.substr(written, at - written));
        output.append(escapeOf(text[at]));
        written = ++at;
        break;
      case Need::Refuse:
        refuse("a text holds a control character that XML cannot carry");
      }
    }
    output.append(text.substr(written));
  }

  /// Where the first text or name is that cannot be saved.
  std::string faultyPlace() const {
    Counter unused;
    const auto isRefused = [](auto check) {
      try {
        check();
      } catch (const _com_error &) {
        return true;
      }
      return false;
    };
    for (const Node *node = m_tree.root; node != nullptr; node = NextBelow(m_tree.root, node)) {
      if (const Element *const element = node->element(); element != nullptr) {
        if (isRefused([&] { name(element->name()); }))
          return pathTo(element->parent);
        for (const Attribute *attribute = element->firstAttribute(); attribute != nullptr;
             attribute = attribute->next) {
          if (isRefused([&] { name(attribute->name); }))
            return pathTo(element);
          if (isRefused([&] { writeText(unused, attribute->value(), kAttributeNeeds); }))
            return pathTo(element) + "/@" + inCodePage(m_tree.name(attribute->name));
        }
      }
      if (isRefused([&] { writeText(unused, node->ownText(), kTextNeeds); }))
        return pathTo(node->isElement() ? node : node->parent);
    }
    return {};
  }

  /// The elements that lead to a node, each with its first attribute, which is mostly its name. Not all of them, where
  /// they are many.
  std::string pathTo(const Node *node) const {
    constexpr int kMostSteps = 8;
    std::string path;
    for (int steps = 0; node != nullptr; node = node->parent, ++steps) {
      if (steps == kMostSteps)
        return "..." + path;
      const Attribute *const attribute = node->element()->firstAttribute();
      std::string step = "/" + inCodePage(m_tree.name(node->name()));
      if (attribute != nullptr && isShowable(attribute->value()))
        step += "[" + inCodePage(m_tree.name(attribute->name)) + "='" + inCodePage(attribute->value()) + "']";
      else if (attribute != nullptr)
        step += "[" + std::to_string(placeOf(*node)) + "]";
      path.insert(0, step);
    }
    return path;
  }

  /// The number of an element among those of its name beside it, from 1.
  static int placeOf(const Node &element) {
    int place = 1;
    for (const Node *node = element.parent != nullptr ? element.parent->element()->firstChild() : &element;
         node != &element; node = node->next)
      place += node->isElement() && node->name() == element.name() ? 1 : 0;
    return place;
  }

  static bool isShowable(std::string_view text) {
    constexpr std::size_t kLongest = 100;
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20; };
    return text.size() <= kLongest && platform::IsValidUtf8(text) && std::none_of(text.begin(), text.end(), isControl);
  }
  static std::string inCodePage(std::string_view text) { return isShowable(text) ? platform::Utf8ToText(text) : "..."; }

  std::string_view name(std::uint32_t number) const {
    const std::string_view name = m_tree.name(number);
    if (!m_nameChecked[number] && !isName(name))
      refuse("not an XML name: '" + std::string(name) + "'");
    m_nameChecked[number] = true;
    return name;
  }

  const Tree &m_tree;
  mutable std::vector<bool> m_nameChecked;
  std::uint64_t m_size = 0;
};

} // namespace

} // namespace kestrune::dom

HRESULT MSXML::IXMLDOMDocument::save(const char *path) const {
  const kestrune::dom::Writer writer(kestrune::dom::Document::of(this)->tree);
  const int error = kestrune::platform::SaveFile(path, writer);
  if (error != 0)
    kestrune::dom::Fail(E_FAIL, kestrune::platform::SystemText(error));
  return S_OK;
}

void MSXML::IXMLDOMDocument::saveXML(std::string &text) const {
  text = kestrune::dom::Writer(kestrune::dom::Document::of(this)->tree).text();
}
