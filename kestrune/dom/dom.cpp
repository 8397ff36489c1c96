#include "kestrune/dom/dom.h"

#include "kestrune/dom/tree.h"
#include "kestrune/platform/code_page.h"

#include <array>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace kestrune::dom {

namespace {

// The layout between elements is the text that a save makes most often. It all lies here, so that no document keeps
// copies of it.
constexpr std::size_t kMostTabs = 63;
constexpr auto kLayout = [] {
  std::array<char, kMostTabs + 2> text{};
  text.fill('\t');
  text[0] = '\n';
  text[kMostTabs + 1] = '\0';
  return text;
}();

bool isLayout(std::string_view text) {
  return !text.empty() && text.size() <= kMostTabs + 1 && text == std::string_view(kLayout.data(), text.size());
}

[[noreturn]] void fail(HRESULT error, const char *description) { throw _com_error(error, description); }

} // namespace

std::string_view LayoutText(std::size_t count, std::string &buffer) {
  if (count <= kMostTabs)
    return {kLayout.data(), count + 1};
  buffer.assign(count + 1, '\t');
  buffer[0] = '\n';
  return buffer;
}

std::uint32_t Tree::intern(std::string_view name) {
  const auto found = m_numbers.find(name);
  if (found != m_numbers.end())
    return found->second;
  const auto number = static_cast<std::uint32_t>(m_names.size());
  if (number >= kNoName)
    fail(E_FAIL, "too many names");
  m_names.push_back({keep(name), {}, 0});
  m_numbers.emplace(m_names.back().text, number);
  return number;
}

std::uint32_t Tree::find(std::string_view name) const {
  const auto found = m_numbers.find(name);
  return found != m_numbers.end() ? found->second : kNoName;
}

Tree::Element *Tree::newElement(std::uint32_t name) {
  return new (allocate(sizeof(Element), alignof(Element))) Element(m_document, name);
}

MSXML::IXMLDOMNode *Tree::newNode(MSXML::IXMLDOMNode::Kind kind, std::uint32_t name) {
  using Node = MSXML::IXMLDOMNode;
  return new (allocate(sizeof(Node), alignof(Node))) Node(m_document, kind, name);
}

Tree::Element::Attribute *Tree::newAttribute(std::uint32_t name) {
  using Attribute = Element::Attribute;
  return new (allocate(sizeof(Attribute), alignof(Attribute))) Attribute{nullptr, nullptr, 0, name};
}

void *Tree::allocate(std::size_t size, std::size_t alignment) {
  if (std::align(alignment, size, m_free, m_freeSize) == nullptr) {
    const bool large = size > kBlockSize / 4;
    m_blocks.push_back(std::make_unique_for_overwrite<std::byte[]>(large ? size : kBlockSize));
    if (large)
      return m_blocks.back().get(); // the block before goes on
    m_free = m_blocks.back().get();
    m_freeSize = kBlockSize;
  }
  void *const room = m_free;
  m_free = static_cast<std::byte *>(m_free) + size;
  m_freeSize -= size;
  return room;
}

void Tree::link(Element *parent, MSXML::IXMLDOMNode *child) {
  child->m_parent = parent;
  if (parent->m_last != nullptr)
    parent->m_last->m_next = child;
  else
    parent->m_first = child;
  parent->m_last = child;
}

std::string_view Tree::keep(std::string_view text) {
  if (text.size() > kLongestText)
    fail(E_INVALIDARG, "a text of 2 GiB or more");
  if (isLayout(text))
    return {kLayout.data(), text.size()};
  if (text.empty())
    return std::string_view("");
  char *const copy = static_cast<char *>(allocate(text.size(), 1));
  std::memcpy(copy, text.data(), text.size());
  return {copy, text.size()};
}

void Tree::setText(MSXML::IXMLDOMNode &node, std::string_view kept) {
  node.m_text = kept.data();
  node.m_length = static_cast<std::uint32_t>(kept.size());
}

void Tree::setText(Element::Attribute &attribute, std::string_view kept) {
  attribute.text = kept.data();
  attribute.length = static_cast<std::uint32_t>(kept.size());
}

std::string_view Tree::fromCodePage(std::string_view text, std::string &buffer) {
  if (platform::GetCodePage() == platform::kUtf8)
    return text;
  m_unsavable |= !platform::TextToUtf8(text, buffer);
  return buffer;
}

std::size_t Tree::firstBehind(std::uint32_t name, std::uint32_t order) {
  Name &entry = m_names[name];
  const std::vector<Element *> &elements = entry.elements;
  const auto isFirstBehind = [&](std::size_t i) {
    return (i == 0 || elements[i - 1]->m_order <= order) && (i == elements.size() || elements[i]->m_order > order);
  };
  // Records are read in the order of the file, so that the answer is mostly the last one or the one behind it.
  std::size_t first = entry.cursor;
  if (!isFirstBehind(first) && (first == elements.size() || !isFirstBehind(++first))) {
    const auto behind = [](std::uint32_t number, const Element *element) { return number < element->m_order; };
    first =
        static_cast<std::size_t>(std::upper_bound(elements.begin(), elements.end(), order, behind) - elements.begin());
  }
  entry.cursor = first;
  return first;
}

CString Tree::toCodePage(std::string_view utf8) {
  std::string converted;
  if (platform::GetCodePage() != platform::kUtf8)
    utf8 = converted = platform::Utf8ToText(utf8);
  m_unreadable = m_unreadable || utf8.size() > kLongestText;
  checkReadable();
  return CString(utf8);
}

void Tree::charge(std::size_t amount) {
  if (m_bound == 0)
    return; // not parsed: no input stands behind it
  m_charged += amount;
  m_unreadable = m_unreadable || m_charged > m_bound;
  checkReadable();
}

void Tree::checkReadable() const {
  if (m_unreadable)
    fail(E_FAIL, "a text, or the texts of nested elements together, are too large");
}

} // namespace kestrune::dom

namespace MSXML {

using kestrune::dom::fail;
using kestrune::dom::Tree;

IXMLDOMDocumentPtr IXMLDOMNode::GetownerDocument() const { return m_document; }

IXMLDOMNodePtr IXMLDOMNode::appendChild(IXMLDOMNode *child) {
  if (child == nullptr)
    _com_issue_error(E_POINTER);
  if (!is(Kind::Element) || child->m_document != m_document || child->m_parent != nullptr ||
      child->is(Kind::Instruction) || child == m_document->m_root)
    fail(E_INVALIDARG, "not a new node of this document");
  auto *const self = static_cast<IXMLDOMElement *>(this);
  // Only a new element that has children already can stand above this one.
  if (child->is(Kind::Element) && static_cast<IXMLDOMElement *>(child)->m_first != nullptr) {
    for (const IXMLDOMNode *above = this; above != nullptr; above = above->m_parent) {
      if (above == child)
        fail(E_INVALIDARG, "a node cannot stand below itself");
    }
  }
  Tree &tree = *m_document->m_tree;
  if (self->m_length != 0) {
    IXMLDOMNode *const text = tree.newNode(Kind::Text, 0);
    Tree::setText(*text, self->ownText());
    Tree::setText(*self, {});
    Tree::link(self, text);
  }
  tree.m_indexed = false;
  Tree::link(self, child);
  return child;
}

CString IXMLDOMNode::Gettext() const {
  if (!is(Kind::Element) || static_cast<const IXMLDOMElement *>(this)->m_first == nullptr)
    return m_document->m_tree->toCodePage(ownText());

  std::string joined;
  for (const IXMLDOMNode *node = static_cast<const IXMLDOMElement *>(this)->m_first; node != nullptr;) {
    m_document->m_tree->charge(1 + node->m_length);
    joined.append(node->ownText());
    const IXMLDOMNode *const below =
        node->is(Kind::Element) ? static_cast<const IXMLDOMElement *>(node)->m_first : nullptr;
    if (below != nullptr) {
      node = below;
      continue;
    }
    while (node != this && node->m_next == nullptr)
      node = node->m_parent;
    node = node != this ? node->m_next : nullptr;
  }
  return m_document->m_tree->toCodePage(joined);
}

void IXMLDOMNode::Puttext(std::string_view text) {
  Tree &tree = *m_document->m_tree;
  std::string buffer;
  const std::string_view kept = tree.keep(tree.fromCodePage(text, buffer));
  if (is(Kind::Element)) {
    auto *const self = static_cast<IXMLDOMElement *>(this);
    // Elements that stood below are out of the tree; a list of names would still find them.
    tree.m_indexed = tree.m_indexed && self->m_first == nullptr;
    for (IXMLDOMNode *child = self->m_first; child != nullptr;) {
      child->m_parent = nullptr;
      child = std::exchange(child->m_next, nullptr); // each stands alone now, and may be put elsewhere
    }
    self->m_first = self->m_last = nullptr;
  }
  Tree::setText(*this, kept);
}

CString IXMLDOMElement::GettagName() const { return m_document->m_tree->toCodePage(m_document->m_tree->name(m_name)); }

_variant_t IXMLDOMElement::getAttribute(std::string_view name) const {
  Tree &tree = *m_document->m_tree;
  std::string buffer;
  const std::uint32_t number = tree.find(tree.fromCodePage(name, buffer));
  for (const Attribute *attribute = m_attributes; attribute != nullptr; attribute = attribute->next) {
    if (attribute->name == number)
      return tree.toCodePage({attribute->text, attribute->length});
  }
  return {};
}

void IXMLDOMElement::setAttribute(std::string_view name, std::string_view text) {
  Tree &tree = *m_document->m_tree;
  std::string buffer;
  const std::uint32_t number = tree.intern(tree.fromCodePage(name, buffer));
  Attribute **place = &m_attributes;
  while (*place != nullptr && (*place)->name != number)
    place = &(*place)->next;
  if (*place == nullptr)
    *place = tree.newAttribute(number);
  Tree::setText(**place, tree.keep(tree.fromCodePage(text, buffer)));
}

IXMLDOMNodeList::IXMLDOMNodeList(const IXMLDOMElement *root, std::string_view name) : m_root(root) {
  Tree &tree = *root->m_document->m_tree;
  std::string buffer;
  m_name = tree.find(tree.fromCodePage(name, buffer));
  m_indexed = tree.m_indexed || m_name == Tree::kNoName;
  if (m_name == Tree::kNoName)
    return;
  if (m_indexed)
    m_begin = tree.firstBehind(m_name, root->m_order);
}

long IXMLDOMNodeList::Getlength() const {
  if (m_indexed) {
    if (m_name == Tree::kNoName)
      return 0;
    const auto &elements = m_root->m_document->m_tree->m_names[m_name].elements;
    const auto behind = [](std::uint32_t order, const IXMLDOMElement *element) { return order < element->m_order; };
    const auto begin = elements.begin() + static_cast<std::ptrdiff_t>(m_begin);
    return static_cast<long>(std::upper_bound(begin, elements.end(), m_root->m_lastOrder, behind) - begin);
  }
  long length = 0;
  for (IXMLDOMElement *element = next(nullptr); element != nullptr; element = next(element))
    ++length;
  return length;
}

IXMLDOMElementPtr IXMLDOMNodeList::Getitem(long index) const {
  if (index < 0 || m_name == Tree::kNoName)
    return nullptr;
  if (m_indexed) {
    const auto &elements = m_root->m_document->m_tree->m_names[m_name].elements;
    const auto offset = static_cast<std::size_t>(index);
    if (offset >= elements.size() - m_begin || elements[m_begin + offset]->m_order > m_root->m_lastOrder)
      return nullptr;
    return elements[m_begin + offset];
  }
  if (m_last == nullptr || m_lastIndex > index) {
    m_lastIndex = -1;
    m_last = nullptr;
  }
  IXMLDOMElement *found = m_last;
  for (long at = m_lastIndex; at < index; ++at) {
    found = next(found);
    if (found == nullptr)
      return nullptr;
    m_lastIndex = at + 1;
    m_last = found;
  }
  return found;
}

IXMLDOMElement *IXMLDOMNodeList::next(IXMLDOMElement *after) const {
  const IXMLDOMNode *node = after != nullptr ? after : m_root;
  while (true) {
    const IXMLDOMNode *const below =
        node->is(IXMLDOMNode::Kind::Element) ? static_cast<const IXMLDOMElement *>(node)->m_first : nullptr;
    if (below != nullptr) {
      node = below;
    } else {
      while (node != m_root && node->m_next == nullptr)
        node = node->m_parent;
      if (node == m_root)
        return nullptr;
      node = node->m_next;
    }
    if (node->is(IXMLDOMNode::Kind::Element) && node->m_name == m_name)
      return const_cast<IXMLDOMElement *>(static_cast<const IXMLDOMElement *>(node));
  }
}

IXMLDOMDocument::IXMLDOMDocument() : m_tree(std::make_unique<Tree>(this)) {}
IXMLDOMDocument::~IXMLDOMDocument() = default;

HRESULT IXMLDOMDocument::CreateInstance(IXMLDOMDocumentPtr &document) {
  if (!kestrune::platform::ComInitialized())
    return CO_E_NOTINITIALIZED;
  document = new IXMLDOMDocument;
  return S_OK;
}

void IXMLDOMDocument::Release() const noexcept {
  if (--m_references == 0)
    delete this;
}

void IXMLDOMDocument::PutdocumentElement(IXMLDOMElement *root) {
  if (root == nullptr)
    _com_issue_error(E_POINTER);
  if (root->m_document != this || root->m_parent != nullptr)
    fail(E_INVALIDARG, "not a new element of this document");
  m_tree->m_indexed = false;
  m_root = root;
}

IXMLDOMElementPtr IXMLDOMDocument::createElement(std::string_view name) {
  std::string buffer;
  return m_tree->newElement(m_tree->intern(m_tree->fromCodePage(name, buffer)));
}

IXMLDOMNodePtr IXMLDOMDocument::createTextNode(std::string_view text) {
  std::string buffer;
  IXMLDOMNode *const node = m_tree->newNode(IXMLDOMNode::Kind::Text, 0);
  Tree::setText(*node, m_tree->keep(m_tree->fromCodePage(text, buffer)));
  return node;
}

IXMLDOMNodePtr IXMLDOMDocument::createProcessingInstruction(std::string_view target, std::string_view data) {
  std::string buffer;
  IXMLDOMNode *const node =
      m_tree->newNode(IXMLDOMNode::Kind::Instruction, m_tree->intern(m_tree->fromCodePage(target, buffer)));
  Tree::setText(*node, m_tree->keep(m_tree->fromCodePage(data, buffer)));
  return node;
}

IXMLDOMNodePtr IXMLDOMDocument::appendChild(IXMLDOMNode *instruction) {
  if (instruction == nullptr)
    _com_issue_error(E_POINTER);
  if (instruction->m_document != this || !instruction->is(IXMLDOMNode::Kind::Instruction))
    fail(E_INVALIDARG, "not a processing instruction of this document");
  m_tree->m_instructions.push_back(instruction);
  return instruction;
}

void IXMLDOMDocument::CheckReadable() const { m_tree->checkReadable(); }

} // namespace MSXML
