#include "kestrune/xml/xml_dom.h"

#include "kestrune/dom/member_access.h"
#include "kestrune/platform/c_runtime.h"
#include "kestrune/platform/debug_output.h"

#include <string_view>

namespace {

std::string_view orEmpty(const char *text) { return text != nullptr ? std::string_view(text) : std::string_view(); }

CString formatted(const char *format, int value) {
  CString text;
  text.Format(format, value);
  return text;
}

} // namespace

bool getElementValue(IXMLDOMElementPtr parent, const char *name, CString &value) {
  value.Empty();
  return kestrune::dom::ReadElement(parent, CString(name), value);
}

bool setElementValue(IXMLDOMElementPtr parent, const char *name, const char *value) {
  try {
    parent->getElementsByTagName(orEmpty(name)).Getitem(0)->Puttext(orEmpty(value));
    return true;
  } catch (const _com_error &) {
    return false;
  }
}

bool getAttributeValue(IXMLDOMElementPtr parent, const char *name, CString &value) {
  value.Empty();
  return kestrune::dom::ReadAttribute(parent, CString(name), value);
}

bool setAttributeValue(IXMLDOMElementPtr parent, const char *name, const char *value) {
  return kestrune::dom::WriteAttribute(parent, CString(name), orEmpty(value));
}

IXMLDOMElementPtr getElementByName(MSXML::IXMLDOMElement *parent, const char *name) {
  const IXMLDOMElementPtr owner(parent);
  IXMLDOMElementPtr element = owner->getElementsByTagName(orEmpty(name)).Getitem(0);
  if (element == nullptr && kestrune::platform::DebugOutputWanted())
    OutputDebugStringA("getElementByName. Failed to find " + owner->GettagName() + "/" + name + "\n");
  return element;
}

void insertTabs(MSXML::IXMLDOMNode *node, int count) { kestrune::dom::AppendLayout(node, count); }

void appendNewline(MSXML::IXMLDOMNode *node) { insertTabs(node, 0); }

CString IntToCString(int value) { return formatted("%d", value); }

CString IntToHexStr(int value) { return formatted("0x%X", value); }

CString IntToHexStrNoX(int value) { return formatted("%02X", value); }

CString HexStrToIntStr(const CString &text) {
  int value = 0;
  kestrune::platform::ScanHexadecimal(text, value);
  return IntToCString(value);
}

CString IntStrToHexStr(const CString &text) {
  int value = 0;
  kestrune::platform::ScanDecimal(text, value);
  return IntToHexStr(value);
}

CString BSTRtoCString(wchar_t *text) { return {static_cast<const wchar_t *>(text)}; }

_bstr_t CStringToBSTR(const CString &text) { return {text}; }
