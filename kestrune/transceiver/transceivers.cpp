#include "kestrune/transceiver/transceivers.h"

#include "kestrune/xml/number_text.h"
#include "kestrune/xml/record_members.h"

struct CTransceiver::Members : RecordMembers<Members, CTransceiver> {
  static constexpr auto rows = std::tuple{
      Row{&CTransceiver::TevroskApproved, "TevroskApproved", "FALSE"},
      Row{&CTransceiver::Name, "Name"},
      Row{&CTransceiver::std_id, "std_id"},
      Row{&CTransceiver::support_level, "support_level"},
      Row{&CTransceiver::ChannelTypeNumber, "ChannelTypeNumber", "0"},
      Row{&CTransceiver::std_xcvr_id, "std_xcvr_id", "0"},
      Row{&CTransceiver::UsesVorlanComPort, "UsesVorlanComPort", "TRUE"},
      Row{&CTransceiver::Timing},
      Row{&CTransceiver::Channel},
      Row{&CTransceiver::ModeSpec},
  };
};

CTransceiver::CTransceiver() { Members::construct(*this, "Transceiver"); }
CTransceiver::CTransceiver(const char *name) : CTransceiver() { Name = name; }
CTransceiver::CTransceiver(const CTransceiver &rhs) : CTransceiver() { *this = rhs; }
CTransceiver::~CTransceiver() = default;

CTransceiver &CTransceiver::operator=(const CTransceiver &rhs) { return Members::copy(*this, rhs); }
void CTransceiver::Init() { Members::init(*this); }
CString CTransceiver::Key() const { return Name; }
void CTransceiver::pushMembers() { Members::push(*this); }

struct CTransceiver2::Members : RecordMembers<Members, CTransceiver2, CTransceiver> {
  static constexpr auto rows = std::tuple{
      Row{&CTransceiver2::SignalStrengthIndicator, "SignalStrengthIndicator", "FALSE"},
      Row{&CTransceiver2::SupportAlternateClockRates, "SupportAlternateClockRates", "FALSE"},
  };
};

CTransceiver2::CTransceiver2() { Members::construct(*this); }
CTransceiver2::CTransceiver2(const char *name) : CTransceiver2() { Name = name; }
CTransceiver2::CTransceiver2(const CTransceiver2 &rhs) : CTransceiver2() { *this = rhs; }
CTransceiver2::~CTransceiver2() = default;

CTransceiver2 &CTransceiver2::operator=(const CTransceiver2 &rhs) { return Members::copy(*this, rhs); }
void CTransceiver2::Init() { Members::init(*this); }
void CTransceiver2::pushMembers() { Members::push(*this); }

struct CTransceiver3::Members : RecordMembers<Members, CTransceiver3, CTransceiver2> {
  static constexpr auto rows = std::tuple{
      Row{&CTransceiver3::ModeSpec2},
      Row{&CTransceiver3::SchedulerMode, "SchedulerMode", "Unassigned"},
  };

  // ModeSpec2 takes the position of ModeSpec, which it replaces in the file.
  static constexpr auto allRows() { return replacing(&CTransceiver::ModeSpec); }
};

CTransceiver3::CTransceiver3() { Members::construct(*this); }
CTransceiver3::CTransceiver3(const char *name) : CTransceiver3() { Name = name; }
CTransceiver3::CTransceiver3(const CTransceiver3 &rhs) : CTransceiver3() { *this = rhs; }
CTransceiver3::~CTransceiver3() = default;

CTransceiver3 &CTransceiver3::operator=(const CTransceiver3 &rhs) {
  if (this == &rhs)
    return *this;
  Members::copy(*this, rhs);
  ModeSpec = ModeSpec2;
  return *this;
}

void CTransceiver3::Init() { Members::init(*this); }

long CTransceiver3::Load(MSXML::IXMLDOMElement *parent) {
  const long result = CXMLFolder::Load(parent);
  ModeSpec = ModeSpec2;
  return result;
}

long CTransceiver3::LoadFromFile(const char *name, const char *base) {
  const long result = CXMLFolder::LoadFromFile(name, base);
  ModeSpec = ModeSpec2;
  return result;
}

void CTransceiver3::pushMembers() { Members::push(*this); }

unsigned int CTransceiver3::GetSchedulerMode() const {
  return SchedulerMode.Compare(kestrune::kUnassigned) == 0 ? 0 : ParseUnsigned(SchedulerMode, 10);
}

CTransceivers::CTransceivers() {
  CXMLFolder::operator=("Transceivers");
  CTransceivers::Init();
}

CTransceivers::CTransceivers(const CTransceivers &rhs) : CTransceivers() { *this = rhs; }
CTransceivers::~CTransceivers() = default;

CTransceivers &CTransceivers::operator=(const CTransceivers &rhs) {
  assignCollection<CTransceiver>(rhs);
  return *this;
}

void CTransceivers::Init() {
  setTags("Transceivers", "Transceiver", "Name");
  pushMembers();
}

CTransceiver *CTransceivers::Add(const char *name) { return addKeyed<CTransceiver>(name, &CTransceiver::Name); }

CTransceiver *CTransceivers::operator[](int index) {
  return static_cast<CTransceiver *>(CXMLCollectionFolder::operator[](index));
}

CTransceiver *CTransceivers::Find(const char *name) { return static_cast<CTransceiver *>(FindItem(name)); }

CTransceiver *CTransceivers::FindByID(int id) {
  return findFirst<CTransceiver>([id](CTransceiver &item) { return static_cast<int>(item.std_id) == id; });
}

CXMLFolder *CTransceivers::NewFolder() { return new CTransceiver; }
kestrune::ItemIterator<CTransceiver> CTransceivers::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CTransceiver> CTransceivers::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CTransceiver> CTransceivers::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CTransceiver> CTransceivers::end() const { return {m_items, m_items.size()}; }

CTransceivers2::CTransceivers2() = default;
CTransceivers2::CTransceivers2(const CTransceivers2 &rhs) : CTransceivers2() { *this = rhs; }
CTransceivers2::~CTransceivers2() = default;

CTransceivers2 &CTransceivers2::operator=(const CTransceivers2 &rhs) {
  assignCollection<CTransceiver2>(rhs);
  return *this;
}

CTransceiver2 *CTransceivers2::Add(const char *name) { return static_cast<CTransceiver2 *>(CTransceivers::Add(name)); }

CTransceiver2 *CTransceivers2::operator[](int index) {
  return static_cast<CTransceiver2 *>(CXMLCollectionFolder::operator[](index));
}

CTransceiver2 *CTransceivers2::Find(const char *name) { return static_cast<CTransceiver2 *>(FindItem(name)); }
CTransceiver2 *CTransceivers2::FindByID(int id) { return static_cast<CTransceiver2 *>(CTransceivers::FindByID(id)); }
CXMLFolder *CTransceivers2::NewFolder() { return new CTransceiver2; }
kestrune::ItemIterator<CTransceiver2> CTransceivers2::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CTransceiver2> CTransceivers2::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CTransceiver2> CTransceivers2::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CTransceiver2> CTransceivers2::end() const { return {m_items, m_items.size()}; }

CTransceivers3::CTransceivers3() = default;
CTransceivers3::CTransceivers3(const CTransceivers3 &rhs) : CTransceivers3() { *this = rhs; }
CTransceivers3::~CTransceivers3() = default;

CTransceivers3 &CTransceivers3::operator=(const CTransceivers3 &rhs) {
  assignCollection<CTransceiver3>(rhs);
  return *this;
}

CTransceiver3 *CTransceivers3::Add(const char *name) { return static_cast<CTransceiver3 *>(CTransceivers::Add(name)); }

CTransceiver3 *CTransceivers3::operator[](int index) {
  return static_cast<CTransceiver3 *>(CXMLCollectionFolder::operator[](index));
}

CTransceiver3 *CTransceivers3::Find(const char *name) { return static_cast<CTransceiver3 *>(FindItem(name)); }
CTransceiver3 *CTransceivers3::FindByID(int id) { return static_cast<CTransceiver3 *>(CTransceivers::FindByID(id)); }
CXMLFolder *CTransceivers3::NewFolder() { return new CTransceiver3; }
kestrune::ItemIterator<CTransceiver3> CTransceivers3::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CTransceiver3> CTransceivers3::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CTransceiver3> CTransceivers3::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CTransceiver3> CTransceivers3::end() const { return {m_items, m_items.size()}; }
