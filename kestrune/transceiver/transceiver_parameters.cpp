#include "kestrune/transceiver/transceiver_parameters.h"

#include "kestrune/xml/member_list.h"

namespace {

constexpr const char *kGeneralPurposeData = "xcvr_gp_data";

} // namespace

template <class Visit>
constexpr void CTransceiverChannel::forEachMember(Visit visit) {
  visit(&CTransceiverChannel::comm_mode, "comm_mode");
  visit(&CTransceiverChannel::osc_accuracy, "osc_accuracy");
  visit(&CTransceiverChannel::osc_wakeup, "osc_wakeup");
  visit(&CTransceiverChannel::comm_rate, "comm_rate");
  visit(&CTransceiverChannel::max_priority, "max_priority");
  visit(&CTransceiverChannel::default_priority_slots, "default_priority_slots");
  visit(&CTransceiverChannel::min_clockID, "min_clockID");
  visit(&CTransceiverChannel::max_clockID, "max_clockID");
  visit(&CTransceiverChannel::avg_pkt_size, "avg_pkt_size");
  visit(&CTransceiverChannel::flags, "flags");
}

static_assert(sizeof(CTransceiverChannel) == sizeof(CXMLFolder) + MemberList::size<CTransceiverChannel>());

CTransceiverChannel::CTransceiverChannel() {
  PutTag(CString("Channel"));
  CXMLFolder::operator=("Channel");
  CTransceiverChannel::Init();
}

CTransceiverChannel::CTransceiverChannel(const CTransceiverChannel &rhs) : CTransceiverChannel() { *this = rhs; }

CTransceiverChannel::~CTransceiverChannel() = default;

CTransceiverChannel &CTransceiverChannel::operator=(const CTransceiverChannel &rhs) {
  CXMLPersistent::operator=(rhs);
  MemberList::copy(*this, rhs);
  pushMembers();
  return *this;
}

void CTransceiverChannel::Init() {
  MemberList::init(*this);
  pushMembers();
}

void CTransceiverChannel::pushMembers() {
  m_members.clear();
  MemberList::append(*this);
}

template <class Visit>
constexpr void CTransceiverTiming::forEachMember(Visit visit) {
  visit(&CTransceiverTiming::rcv_start_delay, "rcv_start_delay");
  visit(&CTransceiverTiming::rcv_end_delay, "rcv_end_delay");
  visit(&CTransceiverTiming::indeterm_time, "indeterm_time");
  visit(&CTransceiverTiming::min_interpkt, "min_interpkt");
  visit(&CTransceiverTiming::preamble, "preamble");
  visit(&CTransceiverTiming::turnaround, "turnaround");
  visit(&CTransceiverTiming::missed_pream, "missed_pream");
  visit(&CTransceiverTiming::packet_qual, "packet_qual");
}

static_assert(sizeof(CTransceiverTiming) == sizeof(CXMLFolder) + MemberList::size<CTransceiverTiming>());

CTransceiverTiming::CTransceiverTiming() {
  PutTag(CString("Timing"));
  CXMLFolder::operator=("Timing");
  CTransceiverTiming::Init();
}

CTransceiverTiming::CTransceiverTiming(const CTransceiverTiming &rhs) : CTransceiverTiming() { *this = rhs; }

CTransceiverTiming::~CTransceiverTiming() = default;

CTransceiverTiming &CTransceiverTiming::operator=(const CTransceiverTiming &rhs) {
  CXMLPersistent::operator=(rhs);
  MemberList::copy(*this, rhs);
  pushMembers();
  return *this;
}

void CTransceiverTiming::Init() {
  MemberList::init(*this);
  pushMembers();
}

void CTransceiverTiming::pushMembers() {
  m_members.clear();
  MemberList::append(*this);
}

template <class Visit>
constexpr void CTransceiverModeSpec::forEachMember(Visit visit) {
  visit(&CTransceiverModeSpec::chan_bit_rate, "chan_bit_rate");
  visit(&CTransceiverModeSpec::alt_rate_tag, "alt_rate_tag");
  visit(&CTransceiverModeSpec::xcvr_cntrls_pream, "xcvr_cntrls_pream");
  visit(&CTransceiverModeSpec::wakeup_pin_dir, "wakeup_pin_dir");
  visit(&CTransceiverModeSpec::xcvr_gp_data, kGeneralPurposeData);
  visit(&CTransceiverModeSpec::allow_node_override, "allow_node_override");
}

static_assert(sizeof(CTransceiverModeSpec) == sizeof(CXMLFolder) + MemberList::size<CTransceiverModeSpec>());

CTransceiverModeSpec::CTransceiverModeSpec() {
  PutTag(CString("ModeSpec"));
  CXMLFolder::operator=("ModeSpec");
  CTransceiverModeSpec::Init();
}

CTransceiverModeSpec::CTransceiverModeSpec(const CTransceiverModeSpec &rhs) : CTransceiverModeSpec() { *this = rhs; }

CTransceiverModeSpec::~CTransceiverModeSpec() = default;

CTransceiverModeSpec &CTransceiverModeSpec::operator=(const CTransceiverModeSpec &rhs) {
  CXMLPersistent::operator=(rhs);
  MemberList::copy(*this, rhs);
  pushMembers();
  return *this;
}

void CTransceiverModeSpec::Init() {
  MemberList::init(*this);
  pushMembers();
}

long CTransceiverModeSpec::Load(MSXML::IXMLDOMElement *parent) {
  const long result = CXMLFolder::Load(parent);
  if (result < 0)
    return result;
  CString data = xcvr_gp_data;
  const int x = data.MakeUpper().Find('X');
  if (x < 0)
    data.Empty();
  else if (x > 0)
    data.Delete(0, x + 1);
  xcvr_gp_data = data;
  return result;
}

IXMLDOMElementPtr CTransceiverModeSpec::Save(IXMLDOMElementPtr parent, int level) {
  IXMLDOMElementPtr element = CXMLFolder::Save(parent, level);
  CString data;
  if (getElementValue(element, kGeneralPurposeData, data))
    setElementValue(element, kGeneralPurposeData, "0x" + data);
  return element;
}

void CTransceiverModeSpec::pushMembers() {
  m_members.clear();
  MemberList::append(*this);
}

template <class Visit>
constexpr void CTransceiverModeSpec2::forEachMember(Visit visit) {
  visit(&CTransceiverModeSpec2::standard_threshold, "standard_threshold", "TRUE");
}

static_assert(sizeof(CTransceiverModeSpec2) ==
              sizeof(CTransceiverModeSpec) + MemberList::size<CTransceiverModeSpec2>());

CTransceiverModeSpec2::CTransceiverModeSpec2() { CTransceiverModeSpec2::Init(); }

CTransceiverModeSpec2::CTransceiverModeSpec2(const CTransceiverModeSpec2 &rhs) : CTransceiverModeSpec2() {
  *this = rhs;
}

CTransceiverModeSpec2::~CTransceiverModeSpec2() = default;

CTransceiverModeSpec2 &CTransceiverModeSpec2::operator=(const CTransceiverModeSpec2 &rhs) {
  CTransceiverModeSpec::operator=(rhs);
  MemberList::copy(*this, rhs);
  pushMembers();
  return *this;
}

void CTransceiverModeSpec2::Init() {
  CTransceiverModeSpec::Init();
  MemberList::init(*this);
  pushMembers();
}

void CTransceiverModeSpec2::pushMembers() {
  CTransceiverModeSpec::pushMembers();
  MemberList::append(*this);
}
