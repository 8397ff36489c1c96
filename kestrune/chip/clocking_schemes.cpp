#include "kestrune/chip/clocking_schemes.h"

#include "kestrune/xml/number_text.h"
#include "kestrune/xml/record_members.h"

namespace {

/// A search for a clock and then for a multiplier of that clock, by any kind of key.
template <class Key>
bool FindPair(CClocks &clocks, CClock *(CClocks::*findClock)(Key), CMultiplier *(CMultipliers::*findMultiplier)(Key),
              Key clock, Key multiplier, CClock **clockFound, CMultiplier **multiplierFound) {
  *clockFound = (clocks.*findClock)(clock);
  if (*clockFound == nullptr)
    return false;
  *multiplierFound = ((*clockFound)->Multipliers()->*findMultiplier)(multiplier);
  return *multiplierFound != nullptr;
}

} // namespace

struct CClockingScheme::Members : RecordMembers<Members, CClockingScheme> {
  static constexpr auto rows = std::tuple{
      Row{&CClockingScheme::m_id, "Id"},
      Row{&CClockingScheme::m_description, "Description", ""},
      Row{&CClockingScheme::m_algorithm, "Algorithm", "1"},
      Row{&CClockingScheme::m_clocks},
  };
};

CClockingScheme::CClockingScheme() { Members::construct(*this, "ClockingScheme"); }
CClockingScheme::CClockingScheme(const CClockingScheme &rhs) : CClockingScheme() { *this = rhs; }
CClockingScheme::~CClockingScheme() = default;

CClockingScheme &CClockingScheme::operator=(const CClockingScheme &rhs) { return Members::copy(*this, rhs); }
void CClockingScheme::Init() { Members::init(*this); }
CString CClockingScheme::Key() const { return m_id; }
void CClockingScheme::pushMembers() { Members::push(*this); }
int CClockingScheme::Id() const { return ParseInt(m_id); }
const char *CClockingScheme::Description() const { return m_description; }
int CClockingScheme::Algorithm() { return ParseInt(m_algorithm); }
CClocks *CClockingScheme::Clocks() { return &m_clocks; }

bool CClockingScheme::FindByDisplay(const char *clock, const char *multiplier, CClock **clockFound,
                                    CMultiplier **multiplierFound) {
  return FindPair(m_clocks, &CClocks::FindByDisplay, &CMultipliers::FindByDisplay, clock, multiplier, clockFound,
                  multiplierFound);
}

bool CClockingScheme::FindByEncoding(const char *clock, const char *multiplier, CClock **clockFound,
                                     CMultiplier **multiplierFound) {
  return FindPair(m_clocks, &CClocks::FindByEncoding, &CMultipliers::FindByEncoding, clock, multiplier, clockFound,
                  multiplierFound);
}

bool CClockingScheme::FindByValue(double clock, double multiplier, CClock **clockFound, CMultiplier **multiplierFound) {
  return FindPair(m_clocks, &CClocks::Find, &CMultipliers::Find, clock, multiplier, clockFound, multiplierFound);
}

CClockingSchemes::CClockingSchemes() {
  CXMLFolder::operator=("ClockingSchemes");
  CClockingSchemes::Init();
}

CClockingSchemes::CClockingSchemes(const CClockingSchemes &rhs) : CClockingSchemes() { *this = rhs; }
CClockingSchemes::~CClockingSchemes() = default;

CClockingSchemes &CClockingSchemes::operator=(const CClockingSchemes &rhs) {
  assignCollection<CClockingScheme>(rhs);
  return *this;
}

void CClockingSchemes::Init() {
  setTags("ClockingSchemes", "ClockingScheme", "Id");
  pushMembers();
}

long CClockingSchemes::Load(MSXML::IXMLDOMElement *parent) { return CXMLCollectionFolder::Load(parent); }
void CClockingSchemes::pushMembers() {}
CXMLFolder *CClockingSchemes::NewFolder() { return new CClockingScheme; }
kestrune::ItemIterator<CClockingScheme> CClockingSchemes::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CClockingScheme> CClockingSchemes::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CClockingScheme> CClockingSchemes::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CClockingScheme> CClockingSchemes::end() const { return {m_items, m_items.size()}; }

CClockingScheme *CClockingSchemes::Add(const char *key) {
  return static_cast<CClockingScheme *>(AddCollectionItem(key));
}

CClockingScheme *CClockingSchemes::operator[](int index) {
  return static_cast<CClockingScheme *>(CXMLCollectionFolder::operator[](index));
}

CClockingScheme *CClockingSchemes::Find(int id) {
  return findFirst<CClockingScheme>([&](const CClockingScheme &item) { return item.Id() == id; });
}

bool CClockingSchemes::FindByDisplay(int id, const char *clock, const char *multiplier, CClock **clockFound,
                                     CMultiplier **multiplierFound) {
  CClockingScheme *const scheme = Find(id);
  return scheme != nullptr && scheme->FindByDisplay(clock, multiplier, clockFound, multiplierFound);
}

bool CClockingSchemes::FindByEncoding(int id, const char *clock, const char *multiplier, CClock **clockFound,
                                      CMultiplier **multiplierFound) {
  CClockingScheme *const scheme = Find(id);
  return scheme != nullptr && scheme->FindByEncoding(clock, multiplier, clockFound, multiplierFound);
}

bool CClockingSchemes::FindByValue(int id, double clock, double multiplier, CClock **clockFound,
                                   CMultiplier **multiplierFound) {
  CClockingScheme *const scheme = Find(id);
  return scheme != nullptr && scheme->FindByValue(clock, multiplier, clockFound, multiplierFound);
}
