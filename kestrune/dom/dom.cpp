#include "kestrune/dom/dom.h"

#include "kestrune/dom/tree.h"

#include <algorithm>
#include <utility>

namespace MSXML {

using kestrune::dom::Attribute;
using kestrune::dom::Document;
using kestrune::dom::Element;
using kestrune::dom::Fail;
using kestrune::dom::NextBelow;
using kestrune::dom::Node;
using kestrune::dom::Tree;
using kestrune::dom::TreeOf;

IXMLDOMDocumentPtr IXMLDOMNode::GetownerDocument() const { return ownerDocument; }

IXMLDOMNodePtr IXMLDOMNode::appendChild(IXMLDOMNode *child) {
  if (child == nullptr)
    _com_issue_error(E_POINTER);
  Tree &tree = TreeOf(this);
  Element *const self = Node::of(this)->element();
  Node *const added = Node::of(child);
  if (self == nullptr || added->owner() != ownerDocument || added->parent != nullptr ||
      added->is(Node::Kind::Instruction) || added == tree.root)
    Fail(E_INVALIDARG, "not a new node of this document");
  // Only a new element that has children already can be above this one.
  if (added == self || added->firstChild() != nullptr) {
    for (const Element *above = self; above != nullptr; above = above->parent) {
      if (above == added)
        Fail(E_INVALIDARG, "a node cannot be below itself");
    }
  }
  tree.append(*self, *added);
  return child;
}

CString IXMLDOMNode::Gettext() const { return TreeOf(this).textOf(*Node::of(this)); }

void IXMLDOMNode::Puttext(std::string_view text) {
  Tree &tree = TreeOf(this);
  std::string buffer;
  const std::string_view kept = tree.keep(tree.fromCodePage(text, buffer));
  Element *const self = Node::of(this)->element();
  if (self != nullptr && self->first() != nullptr) {
    // The index would still find the elements below.
    tree.indexed = false;
    for (Node *child = self->first(); child != nullptr;) {
      if (Element *const element = child->element(); element != nullptr && !element->isParsed())
        element->setLayoutBefore(0);
      child->parent = nullptr;
      child = std::exchange(child->next, nullptr);
    }
    self->forgetChildren();
  }
  if (self != nullptr && !self->isParsed())
    self->setLayoutAtEnd(0);
  Node::of(this)->setOwnText(kept);
}

CString IXMLDOMElement::GettagName() const {
  Tree &tree = TreeOf(this);
  return tree.toCodePage(tree.name(Node::of(this)->name()));
}

_variant_t IXMLDOMElement::getAttribute(std::string_view name) const {
  Tree &tree = TreeOf(this);
  std::string buffer;
  const std::uint32_t number = tree.find(tree.fromCodePage(name, buffer));
  if (const Attribute *const attribute = Element::of(this)->attribute(number); attribute != nullptr)
    return tree.toCodePage(attribute->value());
  return {};
}

void IXMLDOMElement::setAttribute(std::string_view name, std::string_view text) {
  Tree &tree = TreeOf(this);
  std::string buffer;
  const std::uint32_t number = tree.intern(tree.fromCodePage(name, buffer));
  tree.setAttribute(*Element::of(this), number, tree.keep(tree.fromCodePage(text, buffer)));
}

IXMLDOMNodeList::IXMLDOMNodeList(const IXMLDOMElement *root, std::string_view name)
    : IXMLDOMNodeList(root, [&] {
        Tree &tree = TreeOf(root);
        std::string buffer;
        return tree.find(tree.fromCodePage(name, buffer));
      }()) {}

/// `name` is the number of the name in the tree.
IXMLDOMNodeList::Items::Items(const IXMLDOMElement *root, std::uint32_t name)
    : m_root(root), m_name(name), m_indexed(TreeOf(root).indexed), m_last(root) {
  Tree &tree = TreeOf(root);
  if (m_indexed && m_name != Tree::kNoName) {
    const std::uint32_t first = tree.firstAfter(m_name, Element::of(root)->order());
    m_first = first <= Element::of(root)->lastOrder() ? first : 0;
  }
}

long IXMLDOMNodeList::Getlength() const {
  if (item.m_name == Tree::kNoName)
    return 0;
  const Element *const root = Element::of(item.m_root);
  if (item.m_indexed) {
    if (item.m_first == 0)
      return 0;
    Tree &tree = TreeOf(root);
    const std::vector<std::uint32_t> &all = tree.all(tree.names[item.m_name]);
    const auto begin = std::lower_bound(all.begin(), all.end(), item.m_first);
    return static_cast<long>(std::upper_bound(begin, all.end(), root->lastOrder()) - begin);
  }
  long length = 0;
  for (const Node *node = root; (node = NextBelow(root, node)) != nullptr;)
    length += node->hasTag(item.m_name) ? 1 : 0;
  return length;
}

IXMLDOMElementPtr IXMLDOMNodeList::Getitem(long index) const { return item[index]; }

IXMLDOMElementPtr IXMLDOMNodeList::Items::operator[](long index) const {
  if (index < 0 || m_name == Tree::kNoName)
    return nullptr;
  if (m_indexed) {
    const std::uint32_t number = m_first != 0 ? indexed(index) : 0;
    if (number == 0 || number > Element::of(m_root)->lastOrder())
      return nullptr;
    m_lastIndex = index;
    m_last = &TreeOf(m_root).element(number);
    return const_cast<IXMLDOMElement *>(m_last);
  }
  if (m_lastIndex > index) {
    m_lastIndex = -1;
    m_last = m_root;
  }
  const Element *const root = Element::of(m_root);
  for (const Node *node = Node::of(m_last); m_lastIndex < index;) {
    node = NextBelow(root, node);
    if (node == nullptr)
      return nullptr;
    if (node->hasTag(m_name)) {
      ++m_lastIndex;
      m_last = node;
    }
  }
  return const_cast<IXMLDOMElement *>(m_last);
}

/// The number of the element at `index`, counted from the first, in the index of the document; 0 where it ends before.
std::uint32_t IXMLDOMNodeList::Items::indexed(long index) const {
  if (index == 0)
    return m_first;
  if (index == m_lastIndex + 1)
    return Element::of(m_last)->behind();
  Tree &tree = TreeOf(m_root);
  const std::vector<std::uint32_t> &all = tree.all(tree.names[m_name]);
  const auto first = std::lower_bound(all.begin(), all.end(), m_first);
  return index < all.end() - first ? first[index] : 0;
}

HRESULT IXMLDOMDocument::CreateInstance(IXMLDOMDocumentPtr &document) {
  if (!kestrune::platform::ComInitialized())
    return CO_E_NOTINITIALIZED;
  document = new Document;
  return S_OK;
}

void IXMLDOMDocument::destroy() const noexcept { delete Document::of(this); }

const ParseError &IXMLDOMDocument::GetparseError() const noexcept { return Document::of(this)->parseError; }

IXMLDOMElementPtr IXMLDOMDocument::GetdocumentElement() const noexcept { return Document::of(this)->tree.root; }

void IXMLDOMDocument::PutdocumentElement(IXMLDOMElement *root) {
  if (root == nullptr)
    _com_issue_error(E_POINTER);
  Element *const element = Element::of(root);
  if (element->owner() != this || element->parent != nullptr)
    Fail(E_INVALIDARG, "not a new element of this document");
  Tree &tree = Document::of(this)->tree;
  tree.indexed = false;
  tree.root = element;
}

IXMLDOMElementPtr IXMLDOMDocument::createElement(std::string_view name) {
  Tree &tree = Document::of(this)->tree;
  std::string buffer;
  return tree.newElement(Node::Kind::Element, tree.intern(tree.fromCodePage(name, buffer)));
}

IXMLDOMNodePtr IXMLDOMDocument::createTextNode(std::string_view text) {
  Tree &tree = Document::of(this)->tree;
  std::string buffer;
  return tree.newNode(Node::Kind::Text, 0, tree.keep(tree.fromCodePage(text, buffer)));
}

IXMLDOMNodePtr IXMLDOMDocument::createProcessingInstruction(std::string_view target, std::string_view data) {
  Tree &tree = Document::of(this)->tree;
  std::string buffer;
  const std::uint32_t name = tree.intern(tree.fromCodePage(target, buffer));
  return tree.newNode(Node::Kind::Instruction, name, tree.keep(tree.fromCodePage(data, buffer)));
}

IXMLDOMNodePtr IXMLDOMDocument::appendChild(IXMLDOMNode *instruction) {
  if (instruction == nullptr)
    _com_issue_error(E_POINTER);
  Node *const added = Node::of(instruction);
  if (added->owner() != this || !added->is(Node::Kind::Instruction))
    Fail(E_INVALIDARG, "not a processing instruction of this document");
  Document::of(this)->tree.instructions.push_back(added);
  return instruction;
}

void IXMLDOMDocument::CheckReadable() const { Document::of(this)->tree.checkReadable(); }

} // namespace MSXML
