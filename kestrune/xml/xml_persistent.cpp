#include "kestrune/xml/xml_persistent.h"

#include "kestrune/dom/member_access.h"
#include "kestrune/errors/krx_exception.h"
#include "kestrune/errors/string_table.h"
#include "kestrune/platform/debug_output.h"
#include "kestrune/xml/number_text.h"

#include <utility>

namespace {

using kestrune::kUnassigned;

const char *orUnassigned(const char *text) { return text != nullptr ? text : kUnassigned; }

} // namespace

CXMLPersistent::CXMLPersistent(CString &tag) : CString(kestrune::kUnassignedText), m_tag(tag) {}

CXMLPersistent::CXMLPersistent(const CXMLPersistent &rhs) : CString() { CXMLPersistent::operator=(rhs); }

void CXMLPersistent::Init() {
  CString::operator=(kestrune::kUnassignedText);
  m_tag = kestrune::kUndefinedTag;
}

void CXMLPersistent::setTag(const char *tag) {
  if (m_tag.Compare(orUnassigned(tag)) != 0)
    m_tag = orUnassigned(tag);
}

void CXMLPersistent::Init(const char *tag, const char *value) {
  setTag(tag);
  CString::operator=(orUnassigned(value));
}

void CXMLPersistent::Init(const char *tag, int value) {
  setTag(tag);
  if (value == 0)
    CString::operator=(kUnassigned);
  else
    *this = value;
}

unsigned char CXMLPersistent::GetModified() const { return m_modified; }

void CXMLPersistent::PutModified(unsigned char modified) { m_modified = modified; }

CString CXMLPersistent::GetTag() const { return m_tag; }

void CXMLPersistent::PutTag(const CString &tag) { m_tag = tag; }

bool CXMLPersistent::isFolder() { return false; }

IXMLDOMElementPtr CXMLPersistent::Save(IXMLDOMElementPtr parent, int /*level*/) {
  kestrune::dom::WriteAttribute(parent, m_tag, View());
  return parent;
}

long CXMLPersistent::Load(MSXML::IXMLDOMElement *parent) {
  return kestrune::dom::ReadAttribute(parent, m_tag, *this) ? S_OK : KRX_S_NO_ATTRIBUTE;
}

CXMLPersistent &CXMLPersistent::operator=(const char *text) {
  if (Compare(text) != 0)
    PutModified(1);
  CString::operator=(text);
  return *this;
}

CXMLPersistent &CXMLPersistent::operator=(int value) { return *this = static_cast<const char *>(IntToCString(value)); }

CXMLPersistent &CXMLPersistent::operator=(const CXMLPersistent &rhs) {
  if (this == &rhs)
    return *this;
  const CString tag = rhs.GetTag();
  if (!tag.IsEmpty())
    PutTag(tag);
  if (static_cast<const CString &>(*this) != static_cast<const CString &>(rhs))
    PutModified(1);
  CString::operator=(rhs);
  return *this;
}

CXMLPersistent::operator int() { return toInt(); }

int CXMLPersistent::toInt() const {
  const auto value = WholeInt(*this);
  if (!value)
    throwBadValue();
  return *value;
}

unsigned int kestrune::Hex(const CXMLPersistent &value) {
  const auto number = WholeUnsigned(value, 16);
  if (!number)
    value.throwBadValue();
  return *number;
}

double kestrune::Real(const CXMLPersistent &value) {
  const auto number = WholeDouble(value);
  if (!number)
    value.throwBadValue();
  return *number;
}

void CXMLPersistent::throwBadValue() const {
  CString argument;
  argument.Format("Error accessing XML tag: %s Value: '%s'", static_cast<const char *>(m_tag),
                  static_cast<const char *>(*this));
  throw new CKRXException(IDS_NON_NUMERIC, static_cast<const char *>(argument));
}

CXMLAttribute::CXMLAttribute(const CXMLAttribute &rhs) : CXMLPersistent() { CXMLPersistent::operator=(rhs); }

CXMLAttribute &CXMLAttribute::operator=(const CXMLAttribute &rhs) {
  CXMLPersistent::operator=(rhs);
  return *this;
}

CXMLAttribute &CXMLAttribute::operator=(const char *text) {
  CXMLPersistent::operator=(text);
  return *this;
}

CXMLAttribute &CXMLAttribute::operator=(int value) {
  CXMLPersistent::operator=(value);
  return *this;
}

CXMLBoolAttribute::CXMLBoolAttribute(const CXMLBoolAttribute &rhs) : CXMLAttribute() { CXMLAttribute::operator=(rhs); }

CXMLBoolAttribute &CXMLBoolAttribute::operator=(const CXMLBoolAttribute &rhs) {
  CXMLAttribute::operator=(rhs);
  return *this;
}

void CXMLBoolAttribute::Init(const char *tag, bool value) {
  setTag(tag);
  *this = value;
}

CXMLBoolAttribute &CXMLBoolAttribute::operator=(bool value) {
  CXMLAttribute::operator=(value ? "TRUE" : "FALSE");
  return *this;
}

void CXMLBoolAttribute::Init() { CXMLAttribute::Init(); }

CXMLBoolAttribute::operator int() { return std::as_const(*this).operator int(); }

CXMLBoolAttribute::operator int() const {
  if (CompareNoCase("TRUE") == 0)
    return 1;
  if (CompareNoCase("FALSE") != 0)
    throwBadValue();
  return 0;
}

bool CXMLBoolAttribute::operator!() { return operator int() != 0; }

bool CXMLBoolAttribute::operator!() const { return operator int() != 0; }

CXMLElement::CXMLElement(const CXMLElement &rhs) : CXMLPersistent() { CXMLPersistent::operator=(rhs); }

CXMLElement &CXMLElement::operator=(const CXMLElement &rhs) {
  CXMLPersistent::operator=(rhs);
  return *this;
}

IXMLDOMElementPtr CXMLElement::Save(IXMLDOMElementPtr parent, int level) {
  return kestrune::dom::AppendElement(parent, m_tag, level + 1, View());
}

long CXMLElement::Load(MSXML::IXMLDOMElement *parent) {
  return kestrune::dom::ReadElement(parent, m_tag, *this) ? S_OK : KRX_S_NO_ELEMENT;
}

CXMLElement &CXMLElement::operator=(const char *text) {
  CXMLPersistent::operator=(text);
  return *this;
}

CXMLElement &CXMLElement::operator=(int value) {
  CXMLPersistent::operator=(value);
  return *this;
}

CXMLHexElement::CXMLHexElement(const CXMLHexElement &rhs) : CXMLElement() { CXMLElement::operator=(rhs); }

CXMLHexElement &CXMLHexElement::operator=(const CXMLHexElement &rhs) {
  CXMLElement::operator=(rhs);
  return *this;
}

void CXMLHexElement::Init() { CXMLElement::Init(); }

void CXMLHexElement::Init(const char *tag, int value) {
  setTag(tag);
  *this = value;
}

void CXMLHexElement::Init(const char *tag, const char *value) {
  setTag(tag);
  if (value == nullptr)
    CString::operator=(kUnassigned);
  else
    *this = value;
}

long CXMLHexElement::Load(MSXML::IXMLDOMElement *parent) {
  CString text;
  if (!kestrune::dom::ReadElement(parent, m_tag, text))
    return KRX_S_NO_ELEMENT;
  CXMLPersistent::operator=(text);
  return S_OK;
}

CXMLHexElement &CXMLHexElement::operator=(const char *text) {
  CString copy(text);
  if (copy == "0")
    copy = "0x0";
  if (copy.Find("0x") < 0 && kestrune::platform::DebugOutputWanted()) {
    CString warning;
    warning.Format("KO. CXMLHexElement. You must prefix hex values with 0x, you tried: %s\n",
                   text != nullptr ? text : "");
    OutputDebugStringA(warning);
  }
  CXMLElement::operator=(copy);
  return *this;
}

CXMLHexElement &CXMLHexElement::operator=(int value) {
  CXMLElement::operator=(static_cast<const char *>(IntToHexStr(value)));
  return *this;
}
