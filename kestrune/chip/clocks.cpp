#include "kestrune/chip/clocks.h"

#include "kestrune/errors/krx_exception.h"
#include "kestrune/errors/string_table.h"
#include "kestrune/xml/member_list.h"
#include "kestrune/xml/number_text.h"
#include "kestrune/xml/text_compare.h"

template <class Visit>
constexpr void CMultiplier::forEachMember(Visit visit) {
  visit(&CMultiplier::m_value, "Value", "0.5");
  visit(&CMultiplier::m_display, "Display", "1/2");
  visit(&CMultiplier::m_description, "Description", "Unassigned");
  visit(&CMultiplier::m_encoding, "Encoding", "0.5");
  visit(&CMultiplier::m_cpu, "Cpu", "Unassigned");
  visit(&CMultiplier::m_mac, "Mac", "Unassigned");
}

static_assert(sizeof(CMultiplier) == sizeof(CXMLFolder) + MemberList::size<CMultiplier>());

CMultiplier::CMultiplier() {
  PutTag(CString("Multiplier"));
  CXMLFolder::operator=("Multiplier");
  CMultiplier::Init();
}

CMultiplier::CMultiplier(const CMultiplier &rhs) : CMultiplier() { *this = rhs; }

CMultiplier::~CMultiplier() = default;

CMultiplier &CMultiplier::operator=(const CMultiplier &rhs) {
  CXMLPersistent::operator=(rhs);
  MemberList::copy(*this, rhs);
  pushMembers();
  return *this;
}

void CMultiplier::Init() {
  MemberList::init(*this);
  pushMembers();
}

CString CMultiplier::Key() const { return m_value; }

void CMultiplier::pushMembers() {
  m_members.clear();
  MemberList::append(*this);
}

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
  assignCollection<CMultiplier, CXMLCollectionFolder2>(rhs);
  return *this;
}

void CMultipliers::Init() {
  setTags("Multipliers", "Multiplier", "Value");
  pushMembers();
}

long CMultipliers::Load(MSXML::IXMLDOMElement *parent) { return CXMLCollectionFolder::Load(parent); }

CXMLFolder *CMultipliers::NewFolder() { return new CMultiplier; }

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

template <class Visit>
constexpr void COscillator::forEachMember(Visit visit) {
  visit(&COscillator::m_value, "Value", "1");
  visit(&COscillator::m_encoding, "Encoding", "1");
  visit(&COscillator::m_display, "Display", "OSC1");
}

static_assert(sizeof(COscillator) == sizeof(CXMLFolder) + MemberList::size<COscillator>());

COscillator::COscillator() {
  PutTag(CString("Oscillator"));
  CXMLFolder::operator=("Oscillator");
  COscillator::Init();
}

COscillator::COscillator(const COscillator &rhs) : COscillator() { *this = rhs; }

COscillator::~COscillator() = default;

COscillator &COscillator::operator=(const COscillator &rhs) {
  CXMLPersistent::operator=(rhs);
  MemberList::copy(*this, rhs);
  pushMembers();
  return *this;
}

void COscillator::Init() {
  MemberList::init(*this);
  pushMembers();
}

CString COscillator::Key() const { return m_value; }

void COscillator::pushMembers() {
  m_members.clear();
  MemberList::append(*this);
}

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
  assignCollection<COscillator, CXMLCollectionFolder2>(rhs);
  return *this;
}

void COscillators::Init() {
  setTags("Oscillators", "Oscillator", "Value");
  pushMembers();
}

long COscillators::Load(MSXML::IXMLDOMElement *parent) { return CXMLCollectionFolder::Load(parent); }

CXMLFolder *COscillators::NewFolder() { return new COscillator; }

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
  return m_default.get();
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

template <class Visit>
constexpr void CClock::forEachMember(Visit visit) {
  visit(&CClock::m_value, "Value", "10000");
  visit(&CClock::m_display, "Display", "10 MHz");
  visit(&CClock::m_description, "Description", "Unassigned");
  visit(&CClock::m_cycleDivider, "CycleDivider", "1.0");
  visit(&CClock::m_encoding, "Encoding", "5");
  visit(&CClock::m_multipliers);
  visit(&CClock::m_uart, "Uart", "True");
  visit(&CClock::m_oscillators);
}

static_assert(sizeof(CClock) == sizeof(CXMLFolder) + MemberList::size<CClock>());

CClock::CClock() {
  PutTag(CString("Clock"));
  CXMLFolder::operator=("Clock");
  CClock::Init();
}

CClock::CClock(const CClock &rhs) : CClock() { *this = rhs; }

CClock::~CClock() = default;

CClock &CClock::operator=(const CClock &rhs) {
  CXMLPersistent::operator=(rhs);
  MemberList::copy(*this, rhs);
  pushMembers();
  return *this;
}

void CClock::Init() {
  MemberList::init(*this);
  pushMembers();
}

CString CClock::Key() const { return m_value; }

void CClock::pushMembers() {
  m_members.clear();
  MemberList::append(*this);
}

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
