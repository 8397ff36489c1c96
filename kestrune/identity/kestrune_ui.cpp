#include "kestrune/identity/kestrune_ui.h"

#include "kestrune/xml/member_list.h"

template <class Visit>
constexpr void CKestruneUIInfo::forEachMember(Visit visit) {
  visit(&CKestruneUIInfo::ClockSpeeds, "ClockSpeeds");
}

static_assert(sizeof(CKestruneUIInfo) == sizeof(CXMLFolder) + MemberList::size<CKestruneUIInfo>());

CKestruneUIInfo::CKestruneUIInfo() {
  PutTag(CString("UIInfo"));
  CXMLFolder::operator=("UIInfo");
  MemberList::init(*this);
  CKestruneUIInfo::pushMembers();
}

CKestruneUIInfo::CKestruneUIInfo(const CKestruneUIInfo &rhs) : CKestruneUIInfo() { *this = rhs; }

CKestruneUIInfo::~CKestruneUIInfo() = default;

CKestruneUIInfo &CKestruneUIInfo::operator=(const CKestruneUIInfo &rhs) {
  CXMLPersistent::operator=(rhs);
  MemberList::copy(*this, rhs);
  pushMembers();
  return *this;
}

void CKestruneUIInfo::pushMembers() {
  m_members.clear();
  MemberList::append(*this);
}

template <class Visit>
constexpr void CKestruneUI::forEachMember(Visit visit) {
  visit(&CKestruneUI::UIInfo);
}

static_assert(sizeof(CKestruneUI) == sizeof(CXMLTopLevelFolder) + MemberList::size<CKestruneUI>());

CKestruneUI::CKestruneUI() {
  PutTag(CString("KestruneUI"));
  CXMLTopLevelFolder::operator=("KestruneUI");
  CKestruneUI::Init();
  CKestruneUI::pushMembers();
}

CKestruneUI::CKestruneUI(const CKestruneUI &rhs) : CKestruneUI() { *this = rhs; }

CKestruneUI::~CKestruneUI() = default;

CKestruneUI &CKestruneUI::operator=(const CKestruneUI &rhs) {
  CXMLTopLevelFolder::operator=(rhs);
  MemberList::copy(*this, rhs);
  return *this;
}

void CKestruneUI::Init() {
  Contents.Init();
  Contents.Format = 1;
  Contents.Content = 1;
}

void CKestruneUI::pushMembers() {
  CXMLTopLevelFolder::pushMembers();
  MemberList::append(*this);
}

long CKestruneUI::LoadFromFile(const char *name) { return CXMLFolder::LoadFromFile(name, nullptr); }
