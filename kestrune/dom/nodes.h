#pragma once

#include "kestrune/dom/dom.h"

#include <cstdint>
#include <string_view>

// What nodes hold. They lie in the memory of their tree, are never destroyed one by one, and refer to texts in UTF-8
// that the tree keeps.

namespace kestrune::dom {

struct Element;

struct Attribute {
  explicit Attribute(std::uint32_t number) : name(number) {}

  std::string_view value() const { return {text, length}; }
  void setValue(std::string_view kept) {
    text = kept.data();
    length = static_cast<std::uint32_t>(kept.size());
  }

  Attribute *next = nullptr;
  const char *text = nullptr;
  std::uint32_t length = 0;
  std::uint32_t name; // its number in the tree
};

/// A node of any kind. The operations of elements are a base of all of them, so that one cast leads from either
/// interface to the node; a program gets them for elements alone.
struct Node : MSXML::IXMLDOMElement {
  enum class Kind : std::uint32_t { ParsedElement, Element, Text, Instruction };

  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): of the union, the text is
  Node(MSXML::IXMLDOMDocument *owner, Kind kind, std::uint32_t name)
      : IXMLDOMElement(owner), m_kind(static_cast<std::uint32_t>(kind) & 3U), m_hasMore(0),
        m_name(name & ((1U << 29U) - 1)) {}

  static Node *of(MSXML::IXMLDOMNode *node) { return static_cast<Node *>(node); }
  static const Node *of(const MSXML::IXMLDOMNode *node) { return static_cast<const Node *>(node); }

  MSXML::IXMLDOMDocument *owner() const { return ownerDocument; }
  bool is(Kind kind) const { return m_kind == static_cast<std::uint32_t>(kind); }
  bool isElement() const { return m_kind <= static_cast<std::uint32_t>(Kind::Element); }
  bool hasTag(std::uint32_t number) const { return isElement() && m_name == number; }
  /// Its tag or target, by its number in the tree.
  std::uint32_t name() const { return m_name; }
  /// Of an element only while it has no children.
  inline std::string_view ownText() const;
  inline void setOwnText(std::string_view kept);
  /// Null where it is not an element.
  inline Element *element();
  inline const Element *element() const;
  inline const Node *firstChild() const;

  Element *parent = nullptr;
  Node *next = nullptr; // child of the same parent

protected:
  struct More;

  union {
    const char *m_text = nullptr;
    More *m_more; // in its place
  };
  std::uint32_t m_length = 0;
  std::uint32_t m_kind : 2;
  std::uint32_t m_hasMore : 1;
  std::uint32_t m_name : 29;
};

/// What only few elements have.
struct Node::More {
  Node *first = nullptr;
  Node *last = nullptr;
  Attribute *attributes = nullptr;
  const char *text = nullptr;
  std::uint32_t lastOrder = 0;
};

struct Element : Node {
  using More = Node::More;

  Element(MSXML::IXMLDOMDocument *owner, Kind kind, std::uint32_t name) : Node(owner, kind, name) {}

  static Element *of(MSXML::IXMLDOMElement *element) { return static_cast<Element *>(element); }
  static const Element *of(const MSXML::IXMLDOMElement *element) { return static_cast<const Element *>(element); }

  bool hasMore() const { return m_hasMore != 0; }
  /// Gives it room for children and attributes, which takes those calls that need it: `room` is new, and stays.
  void giveMore(More *room) {
    room->text = m_text;
    room->lastOrder = order();
    m_more = room;
    m_hasMore = 1;
  }

  Node *first() const { return hasMore() ? m_more->first : nullptr; }
  const Attribute *firstAttribute() const { return hasMore() ? m_more->attributes : nullptr; }
  /// The attribute with that name, or null.
  const Attribute *attribute(std::uint32_t name) const {
    const Attribute *attribute = firstAttribute();
    while (attribute != nullptr && attribute->name != name)
      attribute = attribute->next;
    return attribute;
  }
  Attribute *&attributes() { return m_more->attributes; }

  /// Makes `child` the last child.
  void append(Node *child) {
    child->parent = this;
    (m_more->last != nullptr ? m_more->last->next : m_more->first) = child;
    m_more->last = child;
  }
  void forgetChildren() { m_more->first = m_more->last = nullptr; }

  bool isParsed() const { return is(Kind::ParsedElement); }

  /// Of a parsed element: its number in document order, that of its last descendant, and that of the next element of
  /// its name. 0 where there is none.
  std::uint32_t order() const { return isParsed() ? m_order : 0; }
  std::uint32_t lastOrder() const { return hasMore() ? m_more->lastOrder : order(); }
  std::uint32_t behind() const { return m_behind; }
  void setOrder(std::uint32_t order) { m_order = order; }
  void setBehind(std::uint32_t order) { m_behind = order; }
  void close(std::uint32_t lastOrder) {
    if (hasMore())
      m_more->lastOrder = lastOrder;
  }

  /// Layout, a line feed and some tabs, in front of it and in front of its end tag: its length, or 0. Only what was not
  /// parsed has any; a text node holds what does not fit here.
  std::uint32_t layoutBefore() const { return isParsed() ? 0 : m_order; }
  std::uint32_t layoutAtEnd() const { return isParsed() ? 0 : m_behind; }
  void setLayoutBefore(std::uint32_t length) { m_order = length; }
  void setLayoutAtEnd(std::uint32_t length) { m_behind = length; }

private:
  std::uint32_t m_order = 0;
  std::uint32_t m_behind = 0;
};

// A file has many elements, and a tree is most of what a load needs.
static_assert(sizeof(void *) != 8 || sizeof(Element) == 48);

inline std::string_view Node::ownText() const { return {m_hasMore != 0 ? m_more->text : m_text, m_length}; }
inline void Node::setOwnText(std::string_view kept) {
  (m_hasMore != 0 ? m_more->text : m_text) = kept.data();
  m_length = static_cast<std::uint32_t>(kept.size());
}
inline Element *Node::element() { return isElement() ? static_cast<Element *>(this) : nullptr; }
inline const Element *Node::element() const { return isElement() ? static_cast<const Element *>(this) : nullptr; }
inline const Node *Node::firstChild() const { return isElement() && m_hasMore != 0 ? m_more->first : nullptr; }

/// Calls `enter` with `root` and each node below it in document order, and `leave` behind all that is in it. Depth
/// costs no stack.
template <class Enter, class Leave>
void Walk(const Node *root, Enter enter, Leave leave) {
  const Node *node = root;
  while (true) {
    enter(*node);
    if (const Node *const child = node->firstChild(); child != nullptr) {
      node = child;
      continue;
    }
    leave(*node);
    while (node != root && node->next == nullptr) {
      node = node->parent;
      leave(*node);
    }
    if (node == root)
      return;
    node = node->next;
  }
}

/// The node after `node` in document order among the descendants of `root`, or null. Depth costs no stack.
inline const Node *NextBelow(const Node *root, const Node *node) {
  if (const Node *const child = node->firstChild(); child != nullptr)
    return child;
  while (node != root && node->next == nullptr)
    node = node->parent;
  return node != root ? node->next : nullptr;
}

} // namespace kestrune::dom
