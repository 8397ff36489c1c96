#include "kestrune/xml/xml_document.h"

#include "kestrune/errors/krx_exception.h"
#include "kestrune/errors/string_table.h"
#include "kestrune/platform/c_runtime.h"
#include "kestrune/xml/member_list.h"

template <class Visit>
constexpr void CXMLContents::forEachMember(Visit visit) {
  visit(&CXMLContents::MajorVersion, "MajorVersion", "0");
  visit(&CXMLContents::MinorVersion, "MinorVersion", "0");
  visit(&CXMLContents::CreationDate, "CreationDate", "0");
  visit(&CXMLContents::Format, "Format", "0");
  visit(&CXMLContents::Content, "Content", "0");
  visit(&CXMLContents::FileDescription, "FileDescription", "Empty File Description");
  visit(&CXMLContents::UpgradeStatus, "UpgradeStatus", "0");
}

static_assert(sizeof(CXMLContents) == sizeof(CXMLFolder) + MemberList::size<CXMLContents>());

CXMLContents::CXMLContents() {
  PutTag(CString("Contents"));
  CXMLFolder::operator=("Contents");
  CXMLContents::Init();
}

CXMLContents::CXMLContents(const CXMLContents &rhs) : CXMLContents() { *this = rhs; }

CXMLContents::~CXMLContents() = default;

CXMLContents &CXMLContents::operator=(const CXMLContents &rhs) {
  CXMLPersistent::operator=(rhs);
  MemberList::copy(*this, rhs);
  pushMembers();
  return *this;
}

void CXMLContents::Init() {
  MemberList::init(*this);
  CreationDate = static_cast<int>(_time64(nullptr));
  pushMembers();
}

void CXMLContents::pushMembers() {
  m_members.clear();
  MemberList::append(*this);
}

unsigned int CXMLContents::getUpgradeStatus() {
  const char *const text = UpgradeStatus;
  char *end = nullptr;
  const unsigned int status = platform::strtoul(text, &end, 0);
  if (*end != '\0')
    throw new CKRXException(IDS_NON_NUMERIC, "UpgradeStatus");
  return status;
}

void CXMLContents::setUpgradeStatus(unsigned int status) { UpgradeStatus = static_cast<int>(status); }

CXMLTopLevelFolder::CXMLTopLevelFolder() { CXMLTopLevelFolder::pushMembers(); }

CXMLTopLevelFolder::CXMLTopLevelFolder(const CXMLTopLevelFolder &rhs) : CXMLFolder(rhs), Contents(rhs.Contents) {
  CXMLTopLevelFolder::pushMembers();
}

CXMLTopLevelFolder::~CXMLTopLevelFolder() = default;

CXMLTopLevelFolder &CXMLTopLevelFolder::operator=(const CXMLTopLevelFolder &rhs) {
  CXMLPersistent::operator=(rhs);
  Contents = rhs.Contents;
  return *this;
}

CXMLTopLevelFolder &CXMLTopLevelFolder::operator=(const char *text) {
  CXMLFolder::operator=(text);
  return *this;
}

void CXMLTopLevelFolder::pushMembers() {
  m_members.clear();
  m_members.push_back(&Contents);
}

long CXMLTopLevelFolder::Load(MSXML::IXMLDOMElement *parent) { return CXMLFolder::Load(parent); }

IXMLDOMElementPtr CXMLTopLevelFolder::Save(IXMLDOMElementPtr parent, int level) {
  for (CXMLPersistent *const member : m_members)
    member->Save(parent, level);
  insertTabs(parent, level);
  return parent;
}
