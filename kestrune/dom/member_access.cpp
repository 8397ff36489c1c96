#include "kestrune/dom/member_access.h"

#include "kestrune/dom/tree.h"
#include "kestrune/platform/debug_output.h"

#include <algorithm>
#include <string>

namespace kestrune::dom {

namespace {

[[noreturn]] void refuse(const MSXML::IXMLDOMNode *node) {
  if (node == nullptr)
    _com_issue_error(E_POINTER);
  Fail(E_INVALIDARG, "not an element");
}

Element &elementOf(MSXML::IXMLDOMNode *node) {
  Element *const element = node != nullptr ? Node::of(node)->element() : nullptr;
  if (element == nullptr)
    refuse(node);
  return *element;
}

/// The length of a line feed and `count` tabs.
std::uint32_t layoutLength(int count) {
  if (count == std::numeric_limits<int>::max())
    Fail(E_INVALIDARG, kTextTooLong);
  return static_cast<std::uint32_t>(std::max(count, 0)) + 1;
}

/// Missing members are common, so this is free without a listener.
void reportMissing(const char *message, MSXML::IXMLDOMElement *parent, const CString &tag) {
  if (!platform::DebugOutputWanted())
    return;
  const CString found = parent != nullptr ? parent->GettagName() : CString();
  OutputDebugStringA(CString(message) + found + "." + tag + "\n");
}

} // namespace

MSXML::IXMLDOMElement *FindElement(MSXML::IXMLDOMElement *parent, const CString &tag) {
  const Element &self = elementOf(parent);
  Tree &tree = TreeOf(parent);
  return tree.firstBelow(self, tree.number(tag));
}

MSXML::IXMLDOMNodeList FindElements(MSXML::IXMLDOMElement *parent, const CString &tag) {
  elementOf(parent);
  return {parent, TreeOf(parent).number(tag)};
}

bool ReadElement(MSXML::IXMLDOMElement *parent, const CString &tag, CString &text) {
  try {
    if (const MSXML::IXMLDOMElement *const element = FindElement(parent, tag); element != nullptr) {
      text = TreeOf(element).textOf(*Node::of(element));
      return true;
    }
    reportMissing("getElementValue.  Failed to find ", parent, tag);
  } catch (const _com_error &) {
    // As if it were missing, but without a report.
  }
  return false;
}

bool ReadAttribute(MSXML::IXMLDOMElement *parent, const CString &tag, CString &text) {
  try {
    const Element &self = elementOf(parent);
    Tree &tree = TreeOf(parent);
    if (const Attribute *const attribute = self.attribute(tree.number(tag)); attribute != nullptr) {
      text = tree.toCodePage(attribute->value());
      return true;
    }
  } catch (const _com_error &) {
    // Reported like a missing attribute.
  }
  reportMissing("getAttributeValue.  Failed to find ", parent, tag);
  return false;
}

MSXML::IXMLDOMElement *AppendElement(MSXML::IXMLDOMElement *parent, const CString &tag, int depth,
                                     std::string_view text) {
  Element &self = elementOf(parent);
  Tree &tree = TreeOf(parent);
  std::string buffer;
  Element *const added = tree.newElement(Node::Kind::Element, tree.number(tag));
  added->setOwnText(tree.keep(tree.fromCodePage(text, buffer)));
  tree.appendLayout(self, layoutLength(depth));
  tree.append(self, *added);
  return added;
}

bool WriteAttribute(MSXML::IXMLDOMElement *parent, const CString &tag, std::string_view text) {
  try {
    Element &self = elementOf(parent);
    Tree &tree = TreeOf(parent);
    std::string buffer;
    const std::string_view kept = tree.keep(tree.fromCodePage(text.substr(0, text.find('\0')), buffer));
    tree.setAttribute(self, tree.number(tag), kept);
    return true;
  } catch (const _com_error &) {
    return false;
  }
}

void AppendLayout(MSXML::IXMLDOMNode *node, int count) {
  Element &self = elementOf(node);
  TreeOf(node).appendLayout(self, layoutLength(count));
}

} // namespace kestrune::dom
