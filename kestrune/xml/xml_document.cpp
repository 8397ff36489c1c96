#include "kestrune/xml/xml_document.h"

#include "kestrune/errors/krx_exception.h"
#include "kestrune/errors/string_table.h"
#include "kestrune/platform/c_runtime.h"
#include "kestrune/xml/number_text.h"
#include "kestrune/xml/record_members.h"

#include <utility>

struct CXMLContents::Members : RecordMembers<Members, CXMLContents> {
  static constexpr auto rows = std::tuple{
      Row{&CXMLContents::MajorVersion, "MajorVersion", "0"},
      Row{&CXMLContents::MinorVersion, "MinorVersion", "0"},
      Row{&CXMLContents::CreationDate, "CreationDate", "0"},
      Row{&CXMLContents::Format, "Format", "0"},
      Row{&CXMLContents::Content, "Content", "0"},
      Row{&CXMLContents::FileDescription, "FileDescription", "Empty File Description"},
      Row{&CXMLContents::UpgradeStatus, "UpgradeStatus", "0"},
  };
};

CXMLContents::CXMLContents() {
  Members::construct(*this, "Contents");
  CreationDate = static_cast<int>(_time64(nullptr));
}

CXMLContents::CXMLContents(const CXMLContents &rhs) : CXMLContents() { *this = rhs; }
CXMLContents::~CXMLContents() = default;

CXMLContents &CXMLContents::operator=(const CXMLContents &rhs) { return Members::copy(*this, rhs); }

void CXMLContents::Init() {
  Members::init(*this);
  CreationDate = static_cast<int>(_time64(nullptr));
}

void CXMLContents::pushMembers() { Members::push(*this); }

unsigned int CXMLContents::getUpgradeStatus() {
  const auto status = WholeUnsigned(UpgradeStatus);
  if (!status)
    throw new CKRXException(IDS_NON_NUMERIC, "UpgradeStatus");
  return *status;
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
  for (CXMLPersistent *const member : std::as_const(m_members))
    member->Save(parent, level);
  insertTabs(parent, level);
  return parent;
}
