#pragma once

#include "kestrune/dom/member_access.h"
#include "kestrune/xml/xml_folder.h"

#include <type_traits>

namespace kestrune {

/// What the four value classes do, for an object that is exactly of one of them: without a virtual call.
struct ValueAccess {
  static bool isValue(const MemberRow &row) { return row.fieldClass != MemberRow::Class::kOther; }

  /// The member of a row that is a value.
  template <class Folder>
  static auto &value(Folder &record, const MemberRow &row) {
    using Value = std::conditional_t<std::is_const_v<Folder>, const CXMLPersistent, CXMLPersistent>;
    switch (row.fieldClass) {
    case MemberRow::Class::kAttribute:
      return static_cast<Value &>(record.*row.field.attribute);
    case MemberRow::Class::kBoolAttribute:
      return static_cast<Value &>(record.*row.field.boolAttribute);
    case MemberRow::Class::kElement:
      return static_cast<Value &>(record.*row.field.element);
    default:
      return static_cast<Value &>(record.*row.field.hexElement);
    }
  }

  /// The member that a row describes.
  static CXMLPersistent &member(CXMLFolder &record, const MemberRow &row) {
    return isValue(row) ? value(record, row) : row.field.other(record);
  }

  static unsigned char modified(const CXMLPersistent &value) { return value.m_modified; }
  /// Writes only what changes: most flags of a large document are clear already, and not in the processor's caches.
  static void setModified(CXMLPersistent &value, unsigned char modified) {
    if (value.m_modified != modified)
      value.m_modified = modified;
  }

  /// The copying operator=.
  static void copy(CXMLPersistent &to, const CXMLPersistent &from) {
    if (to.m_tag != from.m_tag && !from.m_tag.IsEmpty())
      to.m_tag = from.m_tag;
    setText(to, from);
  }

  /// Sets the text, and the flag if it differs from the current one.
  static void setText(CXMLPersistent &value, const CString &text) {
    if (static_cast<const CString &>(value) == text)
      return;
    value.m_modified = 1;
    value.CString::operator=(text);
  }

  /// What Init does with a row: sets the tag, and the text if the row has one.
  static void init(CXMLPersistent &value, const MemberRow &row) {
    value.m_tag = row.tag;
    if (!row.setsText)
      return;
    if (row.fieldClass == MemberRow::Class::kHexElement)
      initHexElement(value, row);
    else
      value.CString::operator=(row.defaultText);
  }

  static void initHexElement(CXMLPersistent &value, const MemberRow &row) {
    if (row.isUnusual)
      value.Init(row.tag, row.defaultText);
    else
      setText(value, row.defaultText.Text());
  }

  static long load(CXMLPersistent &value, const MemberRow &row, MSXML::IXMLDOMElement *parent) {
    switch (row.fieldClass) {
    case MemberRow::Class::kAttribute:
    case MemberRow::Class::kBoolAttribute:
      return dom::ReadAttribute(parent, value.m_tag, value) ? S_OK : KRX_S_NO_ATTRIBUTE;
    case MemberRow::Class::kElement:
      return dom::ReadElement(parent, value.m_tag, value) ? S_OK : KRX_S_NO_ELEMENT;
    default:
      return loadHexElement(value, parent);
    }
  }

  static long loadHexElement(CXMLPersistent &value, MSXML::IXMLDOMElement *parent) {
    CString text;
    if (!dom::ReadElement(parent, value.m_tag, text))
      return KRX_S_NO_ELEMENT;
    setText(value, text);
    return S_OK;
  }

  static void save(const CXMLPersistent &value, const MemberRow &row, MSXML::IXMLDOMElement *parent, int level) {
    if (row.fieldClass == MemberRow::Class::kAttribute || row.fieldClass == MemberRow::Class::kBoolAttribute)
      dom::WriteAttribute(parent, value.m_tag, value.View());
    else
      dom::AppendElement(parent, value.m_tag, level + 1, value.View());
  }
};

} // namespace kestrune
