#pragma once

#include "kestrune/dom/nodes.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/keyed_hash.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// What is inside a document: the arena of its nodes and texts, its names, and the order of its elements.

namespace kestrune::dom {

[[noreturn]] void Fail(HRESULT error, const std::string &description);

constexpr const char *kTextTooLong = "a text of 2 GiB or more";

/// Texts in here are UTF-8.
class Tree {
public:
  /// The longest text that a CString can hold.
  static constexpr std::size_t kLongestText = std::numeric_limits<int>::max();

  static constexpr std::uint32_t kNoName = 0x3FFFFFFF;

  /// The zero bytes behind each name.
  static constexpr std::size_t kNamePadding = 8;

  struct Name {
    std::string_view text;
    std::vector<Element *> elements; // of a parsed document, in document order
    std::size_t cursor = 0;          // where the last search ended: the next one mostly ends beside it
  };

  explicit Tree(MSXML::IXMLDOMDocument *document) : m_document(document) {}

  /// The number of a name, a new one where it is not known yet.
  std::uint32_t intern(std::string_view name);
  /// The number of a name, or kNoName.
  std::uint32_t find(std::string_view name) const;
  std::string_view name(std::uint32_t number) const { return names[number].text; }

  Element *newElement(std::uint32_t name) { return make<Element>(m_document, name); }
  /// A text, or an instruction whose target is `name`. `kept` is its text.
  Node *newNode(Node::Kind kind, std::uint32_t name, std::string_view kept) {
    Node *const node = make<Node>(m_document, kind, name);
    node->setOwnText(kept);
    return node;
  }
  Attribute *newAttribute(std::uint32_t name) { return make<Attribute>(name); }

  /// The tree's own copy of a UTF-8 text. Throws where it is too long for a CString.
  std::string_view keep(std::string_view text);

  /// A text of the code page in UTF-8: itself, or converted in `buffer`. One that is not valid makes the document
  /// unsavable.
  std::string_view fromCodePage(std::string_view text, std::string &buffer) {
    return platform::GetCodePage() == platform::kUtf8 ? text : convert(text, buffer);
  }

  /// Offset of the first element of that name after `order` in document order, in the name's list.
  std::size_t firstAfter(std::uint32_t name, std::uint32_t order);

  /// A UTF-8 text in the code page. One that is too long makes the document unreadable and throws.
  CString toCodePage(std::string_view utf8);

  /// Counts `amount` towards what texts of elements with child elements may cost together; throws beyond the bound.
  void charge(std::size_t amount);

  /// Throws where the document is unreadable.
  void checkReadable() const;

  Element *root = nullptr;
  std::vector<Name> names;
  std::vector<Node *> instructions; // before the root
  std::size_t bound = 0;            // of a parsed document: what charge() allows
  bool indexed = false;             // parsed, and nothing added since
  bool unsavable = false;           // holds a text that is not valid in the code page

private:
  /// Room for `size` bytes that lives as long as the tree.
  void *allocate(std::size_t size, std::size_t alignment) {
    if (std::align(alignment, size, m_free, m_freeSize) == nullptr)
      return allocateBlock(size);
    void *const room = m_free;
    m_free = static_cast<std::byte *>(m_free) + size;
    m_freeSize -= size;
    return room;
  }
  void *allocateBlock(std::size_t size);

  template <class Type, class... Arguments>
  Type *make(Arguments... arguments) {
    return new (allocate(sizeof(Type), alignof(Type))) Type(arguments...);
  }

  std::string_view convert(std::string_view text, std::string &buffer);

  // Blocks below the size from which malloc asks the system for each anew: a later document finds them in the heap.
  static constexpr std::size_t kBlockSize = std::size_t{64} << 10;

  MSXML::IXMLDOMDocument *m_document;
  std::vector<std::unique_ptr<std::byte[]>> m_blocks;
  void *m_free = nullptr; // the rest of the last block
  std::size_t m_freeSize = 0;
  std::unordered_map<std::string_view, std::uint32_t, platform::KeyedTextHash> m_numbers;
  std::size_t m_charged = 0;
  bool m_unreadable = false; // has, or would make, a text that is too large
};

/// What a program holds by the interface of a document.
struct Document : MSXML::IXMLDOMDocument {
  static Document *of(MSXML::IXMLDOMDocument *document) { return static_cast<Document *>(document); }
  static const Document *of(const MSXML::IXMLDOMDocument *document) { return static_cast<const Document *>(document); }

  Tree tree{this};
  MSXML::ParseError parseError;
};

/// The tree of a node.
inline Tree &TreeOf(const MSXML::IXMLDOMNode *node) { return Document::of(Node::of(node)->owner())->tree; }

/// What input may expand to: a hundred times its size, but 8 MiB in any case, as the parser bounds entities too.
constexpr std::size_t AmplificationBound(std::size_t inputSize) {
  constexpr std::size_t kFactor = 100;
  constexpr std::size_t kAlwaysAllowed = std::size_t{8} << 20;
  return std::max(inputSize * kFactor, kAlwaysAllowed);
}

} // namespace kestrune::dom
