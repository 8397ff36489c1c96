#pragma once

#include "kestrune/dom/nodes.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/keyed_hash.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
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

/// A document that cannot be saved, and the place of what is at fault, such as "/VorlanTyp/Contents"; may be empty.
struct SaveRefused : _com_error {
  SaveRefused(const _com_error &error, const char *at) : _com_error(error), place(at) {}
  CString place;
};

constexpr const char *kTextTooLong = "a text of 2 GiB or more";

/// Texts in here are UTF-8.
class Tree {
public:
  /// The longest text that a CString can hold.
  static constexpr std::size_t kLongestText = std::numeric_limits<int>::max();

  static constexpr std::uint32_t kNoName = (1U << 29U) - 1;

  /// The zero bytes behind each name.
  static constexpr std::size_t kNamePadding = 8;

  struct Name {
    std::string_view text;
    // The elements of that name in a parsed document, by their numbers; each knows the next one.
    std::uint32_t first = 0;
    Element *last = nullptr;
    // Where the last search ended, and the element in front of that; 0 at the ends.
    std::uint32_t found = 0;
    std::uint32_t before = 0;
    std::vector<std::uint32_t> all; // once a search needs it
  };

  explicit Tree(MSXML::IXMLDOMDocument *document) : m_document(document) {}

  /// The number of a name, a new one where it is not known yet.
  std::uint32_t intern(std::string_view name);
  /// The number of a name, or kNoName.
  std::uint32_t find(std::string_view name) const;
  /// The number of a tag of the code page, a new one where it is not known yet.
  std::uint32_t number(const CString &tag) {
    CString::LastingKey key{};
    if (!m_knownTags.empty() && tag.GetLastingKey(key)) {
      const KnownTag *const place = placeOf(key);
      if (place[0].is(key))
        return place[0].number;
      if (place[1].is(key))
        return place[1].number;
    }
    return learnNumber(tag);
  }
  std::string_view name(std::uint32_t number) const { return names[number].text; }

  /// Elements are numbered as they are made, from 1.
  Element *newElement(Node::Kind kind, std::uint32_t name) {
    if (m_nextElement == m_lastElement)
      addElements();
    ++m_elementCount;
    return new (&(m_nextElement++)->element) Element(m_document, kind, name);
  }
  Element &element(std::uint32_t number) {
    return m_elements[(number - 1) / kElementsPerBlock][(number - 1) % kElementsPerBlock].element;
  }
  std::uint32_t elementCount() const { return m_elementCount; }

  /// A text, or an instruction whose target is `name`. `kept` is its text.
  Node *newNode(Node::Kind kind, std::uint32_t name, std::string_view kept) {
    Node *const node = make<Node>(m_document, kind, name);
    node->setOwnText(kept);
    return node;
  }
  Attribute *newAttribute(std::uint32_t name) { return make<Attribute>(name); }
  /// Gives `element` room for children and attributes, where it has none yet.
  void giveMore(Element &element) {
    if (!element.hasMore())
      element.giveMore(make<Element::More>());
  }

  void setAttribute(Element &element, std::uint32_t name, std::string_view kept) {
    giveMore(element);
    Attribute **place = &element.attributes();
    while (*place != nullptr && (*place)->name != name)
      place = &(*place)->next;
    if (*place == nullptr)
      *place = newAttribute(name);
    (*place)->setValue(kept);
  }

  /// Makes `child` the last child of `parent`.
  void append(Element &parent, Node &child);
  /// The same with a line feed and `length` - 1 tabs, as a text node or in its place.
  void appendLayout(Element &parent, std::uint32_t length);

  /// What can be read behind each text that the tree keeps, so that 16 bytes can be looked at at once.
  static constexpr std::size_t kReadableBehind = 15;

  /// The tree's own copy of a UTF-8 text. Throws where it is too long for a CString.
  std::string_view keep(std::string_view text) {
    if (text.size() > kLongestText)
      Fail(E_INVALIDARG, kTextTooLong);
    if (text.empty())
      return std::string_view("");
    char *const copy = static_cast<char *>(allocateBytes(text.size()));
    std::memcpy(copy, text.data(), text.size());
    return {copy, text.size()};
  }

  /// A text of the code page in UTF-8: itself, or converted in `buffer`. One that is not valid makes the document
  /// unsavable.
  std::string_view fromCodePage(std::string_view text, std::string &buffer) {
    return platform::GetCodePage() == platform::kUtf8 ? text : convert(text, buffer);
  }

  /// Of a parsed document: the number of the first element of that name behind `order`, or 0.
  std::uint32_t firstAfter(std::uint32_t name, std::uint32_t order) {
    Name &entry = names[name];
    // Records are read in the order of the file, so that the answer is mostly the last one or the next.
    if (entry.found != 0 && entry.found <= order) {
      entry.before = entry.found;
      entry.found = element(entry.found).behind();
    }
    const bool isRight = entry.before <= order && (entry.found > order || entry.found == 0);
    return isRight ? entry.found : searchAfter(entry, order);
  }

  /// The numbers of all elements of that name in a parsed document, in its order.
  const std::vector<std::uint32_t> &all(Name &entry);

  /// The first descendant of `root` with that name, or null.
  Element *firstBelow(const Element &root, std::uint32_t name);

  /// All text in `node`.
  CString textOf(const Node &node);

  /// A UTF-8 text in the code page. One that is too long makes the document unreadable and throws.
  CString toCodePage(std::string_view utf8);

  /// Throws where the document is unreadable.
  void checkReadable() const;

  Element *root = nullptr;
  std::vector<Name> names;
  std::vector<Node *> instructions; // before the root
  std::size_t bound = 0;  // of a parsed document: what texts of elements with child elements may cost together
  bool indexed = false;   // parsed, and nothing added since
  bool unsavable = false; // holds a text that is not valid in the code page

private:
  static constexpr std::uint32_t kElementsPerBlock = 512;

  union Slot {
    Slot() noexcept {} // NOLINT(modernize-use-equals-default): the element comes later
    Element element;
  };

  /// A tag whose number was asked for.
  struct KnownTag {
    bool is(const CString::LastingKey &other) const { return key[0] == other[0] && key[1] == other[1]; }

    CString::LastingKey key{};
    std::uint32_t number = 0;
  };
  static constexpr unsigned kTagHashBits = 8;

  /// The two places for a key.
  KnownTag *placeOf(const CString::LastingKey &key) {
    const std::uint64_t hash = (key[0] ^ (key[1] << 1U)) * 0x9E3779B97F4A7C15U;
    return &m_knownTags[(hash >> (64 - kTagHashBits)) * 2];
  }
  std::uint32_t learnNumber(const CString &tag);
  void addElements();

  /// Room for `size` bytes that lives as long as the tree.
  void *allocate(std::size_t size, std::size_t alignment) {
    return std::align(alignment, size, m_free, m_freeSize) != nullptr ? allocateBytes(size) : allocateBlock(size);
  }
  void *allocateBytes(std::size_t size) {
    if (size > m_freeSize)
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
  std::uint32_t searchAfter(Name &entry, std::uint32_t order);
  void makeRoomForChild(Element &parent);
  Node *newLayout(std::uint32_t length);
  CString joinedTextOf(const Node &node);
  void charge(std::size_t amount);

  // Blocks below the size from which malloc asks the system for each anew: a later document finds them in the heap.
  static constexpr std::size_t kBlockSize = std::size_t{64} << 10;

  MSXML::IXMLDOMDocument *m_document;
  std::vector<std::unique_ptr<Slot[]>> m_elements;
  Slot *m_nextElement = nullptr; // in the last block
  Slot *m_lastElement = nullptr; // behind it
  std::uint32_t m_elementCount = 0;
  std::vector<std::unique_ptr<std::byte[]>> m_blocks;
  void *m_free = nullptr; // the rest of the last block
  std::size_t m_freeSize = 0;
  std::unordered_map<std::string_view, std::uint32_t, platform::KeyedTextHash> m_numbers;
  std::vector<KnownTag> m_knownTags; // once one was asked for: two for each value of a hash
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
