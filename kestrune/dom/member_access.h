#pragma once

#include "kestrune/dom/dom.h"
#include "kestrune/platform/c_string.h"

#include <string_view>

// How the persistent classes read and write their members in a tree. A tag is given as the member has it: a literal, or
// a text short enough to lie in its object, is known again without a comparison of texts. Nothing is counted: what is
// returned belongs to the document, which the caller keeps alive. Texts go in and come out in the code page.

namespace kestrune::dom {

/// The first descendant element of `parent` called `tag`, or null. Throws _com_error where `parent` is null.
MSXML::IXMLDOMElement *FindElement(MSXML::IXMLDOMElement *parent, const CString &tag);

/// All descendant elements of `parent` called `tag`. Throws _com_error where `parent` is null.
MSXML::IXMLDOMNodeList FindElements(MSXML::IXMLDOMElement *parent, const CString &tag);

/// Puts the text of the first descendant element of `parent` called `tag` into `text` and returns true. Where there is
/// none, or the tree fails, `text` stays, the debug channel hears what getElementValue says, and the result is false.
bool ReadElement(MSXML::IXMLDOMElement *parent, const CString &tag, CString &text);

/// The same for an attribute of `parent` itself, and getAttributeValue.
bool ReadAttribute(MSXML::IXMLDOMElement *parent, const CString &tag, CString &text);

/// Appends to `parent` what insertTabs(parent, depth) makes, and then a new element with `text`, which is
/// returned. Throws _com_error.
MSXML::IXMLDOMElement *AppendElement(MSXML::IXMLDOMElement *parent, const CString &tag, int depth,
                                     std::string_view text = {});

/// Creates or replaces an attribute of `parent`; its text ends at the first zero byte. Returns false where the tree
/// fails; a save of the document fails then too.
bool WriteAttribute(MSXML::IXMLDOMElement *parent, const CString &tag, std::string_view text);

/// Appends a line feed and `count` tabs, none if `count` is negative. Throws _com_error.
void AppendLayout(MSXML::IXMLDOMNode *node, int count);

} // namespace kestrune::dom
