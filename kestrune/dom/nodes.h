#pragma once

#include "kestrune/dom/dom.h"

#include <cstdint>
#include <string_view>

// What nodes hold. They lie in the arena of their tree, are never destroyed one by one, and refer to texts in UTF-8
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
  enum class Kind : std::uint32_t { Element, Text, Instruction };

  Node(MSXML::IXMLDOMDocument *owner, Kind kind, std::uint32_t name)
      : IXMLDOMElement(owner), m_kind(static_cast<std::uint32_t>(kind) & 3U), m_name(name & ((1U << 30U) - 1)) {}

  static Node *of(MSXML::IXMLDOMNode *node) { return static_cast<Node *>(node); }
  static const Node *of(const MSXML::IXMLDOMNode *node) { return static_cast<const Node *>(node); }

  MSXML::IXMLDOMDocument *owner() const { return m_document; }
  bool is(Kind kind) const { return m_kind == static_cast<std::uint32_t>(kind); }
  bool hasTag(std::uint32_t number) const { return is(Kind::Element) && m_name == number; }
  /// Its tag or target, by its number in the tree.
  std::uint32_t name() const { return m_name; }
  std::string_view ownText() const { return {text, length}; }
  void setOwnText(std::string_view kept) {
    text = kept.data();
    length = static_cast<std::uint32_t>(kept.size());
  }
  /// Null where it is not an element.
  inline Element *element();
  inline const Element *element() const;
  inline const Node *firstChild() const;

  Element *parent = nullptr;
  Node *next = nullptr;       // child of the same parent
  const char *text = nullptr; // of an element only while it has no children
  std::uint32_t length = 0;

private:
  std::uint32_t m_kind : 2;
  std::uint32_t m_name : 30;
};

struct Element : Node {
  Element(MSXML::IXMLDOMDocument *owner, std::uint32_t name) : Node(owner, Kind::Element, name) {}

  static Element *of(MSXML::IXMLDOMElement *element) { return static_cast<Element *>(element); }
  static const Element *of(const MSXML::IXMLDOMElement *element) { return static_cast<const Element *>(element); }

  /// Makes `child` the last child.
  void append(Node *child) {
    child->parent = this;
    (last != nullptr ? last->next : first) = child;
    last = child;
  }

  Node *first = nullptr;
  Node *last = nullptr;
  Attribute *attributes = nullptr;
  // Of a parsed element: its number in document order, and that of its last descendant.
  std::uint32_t order = 0;
  std::uint32_t lastOrder = 0;
};

inline Element *Node::element() { return is(Kind::Element) ? static_cast<Element *>(this) : nullptr; }
inline const Element *Node::element() const { return is(Kind::Element) ? static_cast<const Element *>(this) : nullptr; }
inline const Node *Node::firstChild() const {
  return is(Kind::Element) ? static_cast<const Element *>(this)->first : nullptr;
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
