#include "kestrune/dom/member_access.h"

#include "kestrune/dom/layout.h"
#include "kestrune/platform/debug_output.h"

#include <algorithm>
#include <string>
#include <utility>

namespace kestrune::dom {

namespace {

/// Missing members are common, so this is free without a listener.
void reportMissing(const char *message, const IXMLDOMElementPtr &parent, const CString &tag) {
  if (!platform::DebugOutputWanted())
    return;
  const CString found = parent != nullptr ? parent->GettagName() : CString();
  OutputDebugStringA(CString(message) + found + "." + tag + "\n");
}

} // namespace

MSXML::IXMLDOMElement *FindElement(MSXML::IXMLDOMElement *parent, const CString &tag) {
  return IXMLDOMElementPtr(parent)->getElementsByTagName(tag.View()).Getitem(0);
}

bool ReadElement(MSXML::IXMLDOMElement *parent, const CString &tag, CString &text) {
  try {
    if (const auto *const element = FindElement(parent, tag); element != nullptr) {
      text = element->Gettext();
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
    _variant_t value = IXMLDOMElementPtr(parent)->getAttribute(tag.View());
    if (value.vt != VT_NULL) {
      text = std::move(value).text();
      return true;
    }
  } catch (const _com_error &) {
    // Reported like a missing attribute.
  }
  reportMissing("getAttributeValue.  Failed to find ", parent, tag);
  return false;
}

MSXML::IXMLDOMElement *AppendElement(MSXML::IXMLDOMElement *parent, const CString &tag, int depth) {
  AppendLayout(parent, depth);
  IXMLDOMElementPtr element = parent->GetownerDocument()->createElement(tag.View());
  parent->appendChild(element);
  return element;
}

MSXML::IXMLDOMElement *AppendElement(MSXML::IXMLDOMElement *parent, const CString &tag, int depth,
                                     std::string_view text) {
  MSXML::IXMLDOMElement *const element = AppendElement(parent, tag, depth);
  element->Puttext(text);
  return element;
}

void WriteAttribute(MSXML::IXMLDOMElement *parent, const CString &tag, std::string_view text) {
  try {
    IXMLDOMElementPtr(parent)->setAttribute(tag.View(), text.substr(0, text.find('\0')));
  } catch (const _com_error &) {
    // A save of the document would fail too.
  }
}

void AppendLayout(MSXML::IXMLDOMNode *node, int count) {
  const IXMLDOMNodePtr owner(node);
  std::string buffer;
  const std::string_view layout = LayoutText(static_cast<std::size_t>(std::max(count, 0)), buffer);
  owner->appendChild(owner->GetownerDocument()->createTextNode(layout));
}

} // namespace kestrune::dom
