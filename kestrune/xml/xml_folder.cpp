#include "kestrune/xml/xml_folder.h"

CXMLFolder::CXMLFolder() = default;

CXMLFolder::CXMLFolder(const CXMLFolder &rhs) : CXMLPersistent() { CXMLFolder::operator=(rhs); }

CXMLFolder::~CXMLFolder() = default;

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
  for (CXMLPersistent *const member : m_members) {
    if (!member->isFolder())
      result = member->Load(parent);
    else if (const IXMLDOMElementPtr element = getElementByName(parent, member->GetTag()); element != nullptr)
      result = member->Load(element);
    if (result < 0 && firstFailure == S_OK)
      firstFailure = result;
  }
  return firstFailure != S_OK ? firstFailure : result;
}

IXMLDOMElementPtr CXMLFolder::Save(IXMLDOMElementPtr parent, int level) {
  IXMLDOMElementPtr element = saveMembers(parent, level);
  insertTabs(element, level + 1);
  return element;
}

IXMLDOMElementPtr CXMLFolder::saveMembers(const IXMLDOMElementPtr &parent, int level) {
  pushMembers();
  insertTabs(parent, level + 1);
  IXMLDOMElementPtr element = parent->GetownerDocument()->createElement(m_tag.View());
  parent->appendChild(element);
  for (CXMLPersistent *const member : m_members)
    member->Save(element, level + 1);
  return element;
}

unsigned char CXMLFolder::GetModified() {
  if (m_modified != 0)
    return m_modified;
  for (CXMLPersistent *const member : m_members) {
    const bool modified = member->isFolder() ? static_cast<CXMLFolder *>(member)->GetModified() != 0
                                             : std::as_const(*member).GetModified() != 0;
    if (modified) {
      m_modified = 1;
      break;
    }
  }
  return m_modified;
}

void CXMLFolder::PutModified(unsigned char modified) {
  for (CXMLPersistent *const member : m_members)
    member->PutModified(modified);
  m_modified = modified;
}
