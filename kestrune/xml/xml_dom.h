#pragma once

#include "kestrune/dom/dom.h"
#include "kestrune/export.h"
#include "kestrune/platform/c_string.h"

/// \file
/// The functions that connect the persistent classes to the XML tree, and text conversions for programs. All are
/// stateless.

/// Stores the text of the first descendant element of `parent` called `name` in `value` and returns true. If there is
/// none or the tree fails, empties `value` and returns false.
KESTRUNE_API bool getElementValue(IXMLDOMElementPtr parent, const char *name, CString &value);

/// Replaces the text of the first descendant element called `name`. Returns false, and changes nothing, if there is
/// none or the tree fails.
KESTRUNE_API bool setElementValue(IXMLDOMElementPtr parent, const char *name, const char *value);

/// Stores attribute `name` of `parent` itself, which may be empty, in `value` and returns true. Otherwise empties
/// `value` and returns false.
KESTRUNE_API bool getAttributeValue(IXMLDOMElementPtr parent, const char *name, CString &value);

/// Creates or replaces attribute `name` of `parent` itself. Returns false if the tree fails.
KESTRUNE_API bool setAttributeValue(IXMLDOMElementPtr parent, const char *name, const char *value);

/// The first descendant element of `parent` called `name`, or null. Throws _com_error if the tree fails.
KESTRUNE_API IXMLDOMElementPtr getElementByName(MSXML::IXMLDOMElement *parent, const char *name);

/// Appends a text node to `node`: a line feed followed by `count` tabs, none if `count` is negative. Throws _com_error.
KESTRUNE_API void insertTabs(MSXML::IXMLDOMNode *node, int count);

/// Appends a text node with a line feed to `node`. Throws _com_error.
KESTRUNE_API void appendNewline(MSXML::IXMLDOMNode *node);

/// The number in decimal: -5 becomes "-5".
KESTRUNE_API CString IntToCString(int value);

/// The number as "0x" and capital hexadecimal digits: 255 becomes "0xFF", -1 becomes "0xFFFFFFFF".
KESTRUNE_API CString IntToHexStr(int value);

/// The number in capital hexadecimal digits, at least two, without a prefix: 5 becomes "05".
KESTRUNE_API CString IntToHexStrNoX(int value);

/// The hexadecimal number at the start of a text, with or without "0x", as decimal text; "0" if there is none.
KESTRUNE_API CString HexStrToIntStr(const CString &text);

/// The decimal number at the start of a text, as hexadecimal text with "0x"; "0x0" if there is none.
KESTRUNE_API CString IntStrToHexStr(const CString &text);

/// Wide text converted to the code page; null counts as empty.
KESTRUNE_API CString BSTRtoCString(wchar_t *text);

/// A text of the code page, ready to pass to a COM object.
KESTRUNE_API _bstr_t CStringToBSTR(const CString &text);
