#include "kestrune/chip/clocks.h"

#include "kestrune/errors/krx_exception.h"
#include "kestrune/errors/string_table.h"
#include "kestrune/xml/number_text.h"
#include "kestrune/xml/record_members.h"
#include "kestrune/xml/text_compare.h"

struct CMultiplier::Members : RecordMembers<Members, CMultiplier> {
  static constexpr auto rows = std::tuple{
      Row{&CMultiplier::m_value, "Value", "0.5"},
      Row{&CMultiplier::m_display, "Display", "1/2"},
      Row{&CMultiplier::m_description, "Description", "Unassigned"},
      Row{&CMultiplier::m_encoding, "Encoding", "0.5"},
      Row{&CMultiplier::m_cpu, "Cpu", "Unassigned"},
      Row{&CMultiplier::m_mac, "Mac", "Unassigned"},
  };
};

CMultiplier::CMultiplier() { Members::construct(*this, "Multiplier"); }
CMultiplier::CMultiplier(const CMultiplier &rhs) : CMultiplier() { *this = rhs; }
CMultiplier::~CMultiplier() = default;

CMultiplier &CMultiplier::operator=(const CMultiplier &rhs) { return Members::copy(*this, rhs); }
void CMultiplier::Init() { Members::init(*this); }
CString CMultiplier::Key() const { return m_value; }
void CMultiplier::pushMembers() { Members::push(*this); }
double CMultiplier::Value() const { return ParseDouble(m_value); }
const char *CMultiplier::Display() const { return m_display; }
const char *CMultiplier::Description() const { return m_description; }
const char *CMultiplier::Encoding() const { return m_encoding; }
int CMultiplier::Cpu() const { return ParseInt(m_cpu); }
int CMultiplier::Mac() const { return ParseInt(m_mac); }

CMultipliers::CMultipliers() {
  CXMLFolder::operator=("Multipliers");
  CMultipliers::Init();
}

CMultipliers::CMultipliers(const CMultipliers &rhs) : CMultipliers() { *this = rhs; }
CMultipliers::~CMultipliers() = default;

CMultipliers &CMultipliers::operator=(const CMultipliers &rhs) {
  assignCollection<CMultiplier>(rhs);
  return *this;
}

void CMultipliers::Init() {
  setTags("Multipliers", "Multiplier", "Value");
  pushMembers();
}

long CMultipliers::Load(MSXML::IXMLDOMElement *parent) { return CXMLCollectionFolder::Load(parent); }
CXMLFolder *CMultipliers::NewFolder() { return new CMultiplier; }
kestrune::ItemIterator<CMultiplier> CMultipliers::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CMultiplier> CMultipliers::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CMultiplier> CMultipliers::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CMultiplier> CMultipliers::end() const { return {m_items, m_items.size()}; }

CMultiplier *CMultipliers::operator[](int index) {
  return static_cast<CMultiplier *>(CXMLCollectionFolder::operator[](index));
}

CMultiplier *CMultipliers::Find(double value) {
  return findFirst<CMultiplier>([&](const CMultiplier &item) { return equalDoubles(item.Value(), value); });
}

CMultiplier *CMultipliers::FindByDisplay(const char *display) {
  return findFirst<CMultiplier>([&](const CMultiplier &item) { return equalIgnoreSpace(item.Display(), display); });
}

CMultiplier *CMultipliers::FindByEncoding(const char *encoding) {
  return findFirst<CMultiplier>([&](const CMultiplier &item) { return equalIgnoreSpace(item.Encoding(), encoding); });
}

struct COscillator::Members : RecordMembers<Members, COscillator> {
  static constexpr auto rows = std::tuple{
      Row{&COscillator::m_value, "Value", "1"},
      Row{&COscillator::m_encoding, "Encoding", "1"},
      Row{&COscillator::m_display, "Display", "OSC1"},
  };
};

COscillator::COscillator() { Members::construct(*this, "Oscillator"); }
COscillator::COscillator(const COscillator &rhs) : COscillator() { *this = rhs; }
COscillator::~COscillator() = default;

COscillator &COscillator::operator=(const COscillator &rhs) { return Members::copy(*this, rhs); }
void COscillator::Init() { Members::init(*this); }
CString COscillator::Key() const { return m_value; }
void COscillator::pushMembers() { Members::push(*this); }
int COscillator::Value() const { return static_cast<int>(ParseUnsigned(m_value, 10)); }
int COscillator::Encoding() const { return static_cast<int>(ParseUnsigned(m_encoding, 10)); }
const char *COscillator::Display() const { return m_display; }

COscillators::COscillators() {
  CXMLFolder::operator=("Oscillators");
  COscillators::Init();
}

COscillators::COscillators(const COscillators &rhs) : COscillators() { *this = rhs; }
COscillators::~COscillators() = default;

COscillators &COscillators::operator=(const COscillators &rhs) {
  assignCollection<COscillator>(rhs);
  return *this;
}

void COscillators::Init() {
  setTags("Oscillators", "Oscillator", "Value");
  pushMembers();
}

long COscillators::Load(MSXML::IXMLDOMElement *parent) { return CXMLCollectionFolder::Load(parent); }
CXMLFolder *COscillators::NewFolder() { return new COscillator; }
kestrune::ItemIterator<COscillator> COscillators::begin() { return {m_items, 0}; }
kestrune::ItemIterator<COscillator> COscillators::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const COscillator> COscillators::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const COscillator> COscillators::end() const { return {m_items, m_items.size()}; }

COscillator *COscillators::operator[](int index) {
  return static_cast<COscillator *>(CXMLCollectionFolder::operator[](index));
}

template <class Matches>
COscillator *COscillators::findOrDefault(Matches matches) {
  if (Count() > 0)
    return findFirst<COscillator>(matches);
  if (m_default)
    m_default->Init();
  else
    m_default = std::make_unique<COscillator>();
  return static_cast<COscillator *>(m_default.get());
}

COscillator *COscillators::Find(int value) {
  return findOrDefault([&](const COscillator &item) { return item.Value() == value; });
}

COscillator *COscillators::Find(const char *display) {
  return findOrDefault([&](const COscillator &item) { return equalNoCaseIgnoreSpace(item.Display(), display); });
}

COscillator *COscillators::FindByEncoding(int encoding) {
  return findOrDefault([&](const COscillator &item) { return item.Encoding() == encoding; });
}

struct CClock::Members : RecordMembers<Members, CClock> {
  static constexpr auto rows = std::tuple{
      Row{&CClock::m_value, "Value", "10000"},
      Row{&CClock::m_display, "Display", "10 MHz"},
      Row{&CClock::m_description, "Description", "Unassigned"},
      Row{&CClock::m_cycleDivider, "CycleDivider", "1.0"},
      Row{&CClock::m_encoding, "Encoding", "5"},
      Row{&CClock::m_multipliers},
      Row{&CClock::m_uart, "Uart", "True"},
      Row{&CClock::m_oscillators},
  };
};

CClock::CClock() { Members::construct(*this, "Clock"); }
CClock::CClock(const CClock &rhs) : CClock() { *this = rhs; }
CClock::~CClock() = default;

CClock &CClock::operator=(const CClock &rhs) { return Members::copy(*this, rhs); }
void CClock::Init() { Members::init(*this); }
CString CClock::Key() const { return m_value; }
void CClock::pushMembers() { Members::push(*this); }
double CClock::Value() const { return ParseDouble(m_value); }
const char *CClock::Display() const { return m_display; }
const char *CClock::Description() const { return m_description; }
double CClock::CycleDivider() const { return ParseDouble(m_cycleDivider); }
const char *CClock::Encoding() const { return m_encoding; }
CMultipliers *CClock::Multipliers() { return &m_multipliers; }

bool CClock::Uart() const {
  for (const char *const word : {"1", "TRUE", "YES"})
    if (equalNoCaseIgnoreSpace(m_uart, word))
      return true;
  for (const char *const word : {"0", "FALSE", "NO"})
    if (equalNoCaseIgnoreSpace(m_uart, word))
      return false;
  throw new CKRXException(IDS_BAD_BOOLEAN, static_cast<const char *>(m_uart));
}

COscillators *CClock::Oscillators() { return &m_oscillators; }

CClocks::CClocks() {
  CXMLFolder::operator=("Clocks");
  CClocks::Init();
}

CClocks::CClocks(const CClocks &rhs) : CClocks() { *this = rhs; }
CClocks::~CClocks() = default;

CClocks &CClocks::operator=(const CClocks &rhs) {
  assignCollection<CClock>(rhs);
  return *this;
}

void CClocks::Init() {
  setTags("Clocks", "Clock", "Value");
  pushMembers();
}

long CClocks::Load(MSXML::IXMLDOMElement *parent) { return CXMLCollectionFolder::Load(parent); }
CXMLFolder *CClocks::NewFolder() { return new CClock; }
kestrune::ItemIterator<CClock> CClocks::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CClock> CClocks::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CClock> CClocks::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CClock> CClocks::end() const { return {m_items, m_items.size()}; }
CClock *CClocks::operator[](int index) { return static_cast<CClock *>(CXMLCollectionFolder::operator[](index)); }

CClock *CClocks::Find(double value) {
  return findFirst<CClock>([&](const CClock &item) { return equalDoubles(item.Value(), value); });
}

CClock *CClocks::FindByDisplay(const char *display) {
  return findFirst<CClock>([&](const CClock &item) { return equalIgnoreSpace(item.Display(), display); });
}

CClock *CClocks::FindByEncoding(const char *encoding) {
  return findFirst<CClock>([&](const CClock &item) { return equalIgnoreSpace(item.Encoding(), encoding); });
}
