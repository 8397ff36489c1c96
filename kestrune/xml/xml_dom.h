#pragma once

#include "kestrune/dom/dom.h"
#include "kestrune/export.h"
#include "kestrune/platform/c_string.h"

// The functions between the persistent classes and the XML tree, and the text conversions that programs use beside
// them. All of them are stateless.

/// Puts the text of the first descendant element of `parent` called `name` into `value` and returns true. Otherwise,
/// also when the tree fails, `value` is empty and the result false.
KESTRUNE_API bool getElementValue(IXMLDOMElementPtr parent, const char *name, CString &value);

/// Replaces the text of the first descendant element called `name`. False, and nothing changes, when there is none.
KESTRUNE_API bool setElementValue(IXMLDOMElementPtr parent, const char *name, const char *value);

/// Puts attribute `name` of `parent` itself into `value` and returns true, also for an empty one. Otherwise `value` is
/// empty and the result false.
KESTRUNE_API bool getAttributeValue(IXMLDOMElementPtr parent, const char *name, CString &value);

/// Creates or replaces attribute `name` of `parent` itself. False when the tree fails.
KESTRUNE_API bool setAttributeValue(IXMLDOMElementPtr parent, const char *name, const char *value);

/// The first descendant element of `parent` called `name`, or null. A failure of the tree is thrown as _com_error.
KESTRUNE_API IXMLDOMElementPtr getElementByName(MSXML::IXMLDOMElement *parent, const char *name);

/// Appends to `node` a text node of a line feed and `count` tabs; of a line feed alone when `count` is 0 or less.
/// Throws _com_error.
KESTRUNE_API void insertTabs(MSXML::IXMLDOMNode *node, int count);

/// Appends to `node` a text node of a line feed. Throws _com_error.
KESTRUNE_API void appendNewline(MSXML::IXMLDOMNode *node);

/// The number in decimal: -5 gives "-5".
KESTRUNE_API CString IntToCString(int value);

/// The number in capital hexadecimal digits with "0x" in front: 255 gives "0xFF", -1 gives "0xFFFFFFFF".
KESTRUNE_API CString IntToHexStr(int value);

/// The same without prefix, in at least two digits: 5 gives "05".
KESTRUNE_API CString IntToHexStrNoX(int value);

/// The hexadecimal number at the front of a text, with or without "0x", as decimal text; "0" when there is none.
KESTRUNE_API CString HexStrToIntStr(const CString &text);

/// The decimal number at the front of a text as hexadecimal text with "0x"; "0x0" when there is none.
KESTRUNE_API CString IntStrToHexStr(const CString &text);

/// Wide text in the code page; null counts as empty.
KESTRUNE_API CString BSTRtoCString(wchar_t *text);

/// A text of the code page on its way to a COM object.
KESTRUNE_API _bstr_t CStringToBSTR(const CString &text);
