#pragma once

#include "kestrune/dom/dom.h"
#include "kestrune/platform/keyed_hash.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// What is inside a document: the arena of its nodes and texts, its names, and the order of its elements. For the files
// dom*.cpp only.

namespace kestrune::dom {

/// Texts in here are UTF-8.
class Tree {
public:
  using Element = MSXML::IXMLDOMElement;

  /// The longest text that a CString can hold.
  static constexpr std::size_t kLongestText = std::numeric_limits<int>::max();

  static constexpr std::uint32_t kNoName = 0x3FFFFFFF;

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
  std::string_view name(std::uint32_t number) const { return m_names[number].text; }
  std::size_t nameCount() const { return m_names.size(); }

  Element *newElement(std::uint32_t name);
  MSXML::IXMLDOMNode *newNode(MSXML::IXMLDOMNode::Kind kind, std::uint32_t name);
  Element::Attribute *newAttribute(std::uint32_t name);

  /// Makes `child` the last child of `parent`.
  static void link(Element *parent, MSXML::IXMLDOMNode *child);

  /// The tree's own copy of a UTF-8 text. Throws where it is too long for a CString.
  std::string_view keep(std::string_view text);
  /// Gives a node a kept text.
  static void setText(MSXML::IXMLDOMNode &node, std::string_view kept);
  static void setText(Element::Attribute &attribute, std::string_view kept);

  /// A text of the code page in UTF-8: itself, or converted in `buffer`. One that is not valid makes the document
  /// unsavable.
  std::string_view fromCodePage(std::string_view text, std::string &buffer);

  /// Offset of the first element of that name behind `order` in document order, in the name's list.
  std::size_t firstBehind(std::uint32_t name, std::uint32_t order);

  /// A UTF-8 text in the code page. One that is too long makes the document unreadable and throws.
  CString toCodePage(std::string_view utf8);

  /// Counts `amount` towards what texts of elements with child elements may cost together; throws beyond the bound.
  void charge(std::size_t amount);

  /// Throws where the document is unreadable.
  void checkReadable() const;

  std::vector<Name> m_names;
  std::vector<MSXML::IXMLDOMNode *> m_instructions;
  std::size_t m_bound = 0; // of a parsed document: what charge() allows
  std::size_t m_charged = 0;
  std::uint32_t m_elementCount = 0;
  bool m_indexed = false;    // parsed, and nothing added since
  bool m_unsavable = false;  // holds a text that is not valid in the code page
  bool m_unreadable = false; // has, or would make, a text that is too large

private:
  MSXML::IXMLDOMDocument *m_document;
  /// Room for `size` bytes that lives as long as the tree.
  void *allocate(std::size_t size, std::size_t alignment);

  // Blocks below the size from which malloc asks the system for each anew: a later document finds them in the heap.
  static constexpr std::size_t kBlockSize = std::size_t{64} << 10;
  std::vector<std::unique_ptr<std::byte[]>> m_blocks;
  void *m_free = nullptr; // the rest of the last block
  std::size_t m_freeSize = 0;
  std::unordered_map<std::string_view, std::uint32_t, platform::KeyedTextHash> m_numbers;
};

/// What input may make of itself: a hundred times its size, but 8 MiB in any case, as the parser bounds entities too.
constexpr std::size_t AmplificationBound(std::size_t inputSize) {
  constexpr std::size_t kFactor = 100;
  constexpr std::size_t kAlwaysAllowed = std::size_t{8} << 20;
  return std::max(inputSize * kFactor, kAlwaysAllowed);
}

} // namespace kestrune::dom
