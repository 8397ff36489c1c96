#include "kestrune/xml/xml_folder.h"

#include "kestrune/xml/reporting.h"
#include "kestrune/xml/value_access.h"

#include <algorithm>
#include <utility>

using kestrune::ValueAccess;

CXMLFolder::CXMLFolder() = default;

CXMLFolder::CXMLFolder(const CXMLFolder &rhs) : CXMLPersistent() { CXMLFolder::operator=(rhs); }

CXMLFolder::~CXMLFolder() {
  if (m_hasReport)
    kestrune::Reporting::forget(*this);
}

CXMLFolder &CXMLFolder::operator=(const CXMLFolder &rhs) {
  if (this == &rhs)
    return *this;
  CXMLPersistent::operator=(rhs);
  m_fileName.Empty();
  pushMembers();
  return *this;
}

CXMLFolder &CXMLFolder::operator=(const char *text) {
  CXMLPersistent::operator=(text);
  return *this;
}

bool CXMLFolder::operator<(const CXMLFolder &rhs) const { return Key().Compare(rhs.Key()) < 0; }

void CXMLFolder::Init() {}

bool CXMLFolder::isFolder() { return true; }

CString CXMLFolder::Key() const { return *this; }

void CXMLFolder::pushMembers() {}

long CXMLFolder::Load(MSXML::IXMLDOMElement *parent) {
  *this = static_cast<const char *>(m_tag);
  pushMembers();
  long result = S_OK;
  long firstFailure = S_OK;
  const auto load = [&](CXMLPersistent &member) {
    if (!member.isFolder())
      result = member.Load(parent);
    else if (const IXMLDOMElementPtr element = getElementByName(parent, member.GetTag()); element != nullptr)
      result = member.Load(element);
    if (result < 0 && firstFailure == S_OK)
      firstFailure = result;
  };
  for (const kestrune::MemberRow &row : m_members.rows()) {
    if (ValueAccess::isValue(row))
      result = ValueAccess::load(ValueAccess::value(*this, row), row, parent);
    else
      load(row.field.other(*this));
  }
  for (CXMLPersistent *const member : m_members.pointers())
    load(*member);
  return firstFailure != S_OK ? firstFailure : result;
}

IXMLDOMElementPtr CXMLFolder::Save(IXMLDOMElementPtr parent, int level) {
  IXMLDOMElementPtr element = saveMembers(parent, level);
  insertTabs(element, level + 1);
  return element;
}

IXMLDOMElementPtr CXMLFolder::saveMembers(const IXMLDOMElementPtr &parent, int level) {
  pushMembers();
  IXMLDOMElementPtr element = kestrune::dom::AppendElement(parent, m_tag, level + 1);
  for (const kestrune::MemberRow &row : m_members.rows()) {
    if (ValueAccess::isValue(row))
      ValueAccess::save(ValueAccess::value(*this, row), row, element, level + 1);
    else
      row.field.other(*this).Save(element, level + 1);
  }
  for (CXMLPersistent *const member : m_members.pointers())
    member->Save(element, level + 1);
  return element;
}

unsigned char CXMLFolder::GetModified() {
  if (m_modified != 0)
    return m_modified;
  const auto isModified = [](CXMLPersistent &member) {
    return (member.isFolder() ? static_cast<CXMLFolder &>(member).GetModified()
                              : std::as_const(member).GetModified()) != 0;
  };
  const bool modified =
      std::ranges::any_of(m_members.rows(),
                          [&](const kestrune::MemberRow &row) {
                            return ValueAccess::isValue(row)
                                       ? ValueAccess::modified(ValueAccess::value(*this, row)) != 0
                                       : isModified(row.field.other(*this));
                          }) ||
      std::ranges::any_of(m_members.pointers(), [&](CXMLPersistent *member) { return isModified(*member); });
  if (modified)
    m_modified = 1;
  return m_modified;
}

void CXMLFolder::PutModified(unsigned char modified) {
  putMembersModified(modified);
  m_modified = modified;
}

void CXMLFolder::putMembersModified(unsigned char modified) {
  for (const kestrune::MemberRow &row : m_members.rows()) {
    if (ValueAccess::isValue(row))
      ValueAccess::setModified(ValueAccess::value(*this, row), modified);
    else
      row.field.other(*this).PutModified(modified);
  }
  for (CXMLPersistent *const member : m_members.pointers())
    member->PutModified(modified);
}
