#include "kestrune/identity/kestrune_ui.h"

#include "kestrune/xml/record_members.h"

struct CKestruneUIInfo::Members : RecordMembers<Members, CKestruneUIInfo> {
  static constexpr auto rows = std::tuple{Row{&CKestruneUIInfo::ClockSpeeds, "ClockSpeeds"}};
};

CKestruneUIInfo::CKestruneUIInfo() { Members::construct(*this, "UIInfo"); }
CKestruneUIInfo::CKestruneUIInfo(const CKestruneUIInfo &rhs) : CKestruneUIInfo() { *this = rhs; }
CKestruneUIInfo::~CKestruneUIInfo() = default;

CKestruneUIInfo &CKestruneUIInfo::operator=(const CKestruneUIInfo &rhs) { return Members::copy(*this, rhs); }
void CKestruneUIInfo::pushMembers() { Members::push(*this); }

struct CKestruneUI::Members : DocumentMembers<Members, CKestruneUI> {
  static constexpr auto rows = std::tuple{Row{&CKestruneUI::UIInfo}};
};

CKestruneUI::CKestruneUI() { Members::construct(*this, "KestruneUI"); }
CKestruneUI::CKestruneUI(const CKestruneUI &rhs) : CKestruneUI() { *this = rhs; }
CKestruneUI::~CKestruneUI() = default;

CKestruneUI &CKestruneUI::operator=(const CKestruneUI &rhs) { return Members::copy(*this, rhs); }

void CKestruneUI::Init() {
  Contents.Init();
  Contents.Format = 1;
  Contents.Content = 1;
}

void CKestruneUI::pushMembers() { Members::push(*this); }
long CKestruneUI::LoadFromFile(const char *name) { return CXMLFolder::LoadFromFile(name, nullptr); }
