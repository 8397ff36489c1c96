#include "kestrune/transceiver/transceiver_parameters.h"

#include "kestrune/xml/record_members.h"

namespace {

constexpr const char *kGeneralPurposeData = "xcvr_gp_data";

} // namespace

struct CTransceiverChannel::Members : RecordMembers<Members, CTransceiverChannel> {
  static constexpr auto rows = std::tuple{
      Row{&CTransceiverChannel::comm_mode, "comm_mode"},
      Row{&CTransceiverChannel::osc_accuracy, "osc_accuracy"},
      Row{&CTransceiverChannel::osc_wakeup, "osc_wakeup"},
      Row{&CTransceiverChannel::comm_rate, "comm_rate"},
      Row{&CTransceiverChannel::max_priority, "max_priority"},
      Row{&CTransceiverChannel::default_priority_slots, "default_priority_slots"},
      Row{&CTransceiverChannel::min_clockID, "min_clockID"},
      Row{&CTransceiverChannel::max_clockID, "max_clockID"},
      Row{&CTransceiverChannel::avg_pkt_size, "avg_pkt_size"},
      Row{&CTransceiverChannel::flags, "flags"},
  };
};

CTransceiverChannel::CTransceiverChannel() { Members::construct(*this, "Channel"); }
CTransceiverChannel::CTransceiverChannel(const CTransceiverChannel &rhs) : CTransceiverChannel() { *this = rhs; }
CTransceiverChannel::~CTransceiverChannel() = default;

CTransceiverChannel &CTransceiverChannel::operator=(const CTransceiverChannel &rhs) {
  return Members::copy(*this, rhs);
}

void CTransceiverChannel::Init() { Members::init(*this); }
void CTransceiverChannel::pushMembers() { Members::push(*this); }

struct CTransceiverTiming::Members : RecordMembers<Members, CTransceiverTiming> {
  static constexpr auto rows = std::tuple{
      Row{&CTransceiverTiming::rcv_start_delay, "rcv_start_delay"},
      Row{&CTransceiverTiming::rcv_end_delay, "rcv_end_delay"},
      Row{&CTransceiverTiming::indeterm_time, "indeterm_time"},
      Row{&CTransceiverTiming::min_interpkt, "min_interpkt"},
      Row{&CTransceiverTiming::preamble, "preamble"},
      Row{&CTransceiverTiming::turnaround, "turnaround"},
      Row{&CTransceiverTiming::missed_pream, "missed_pream"},
      Row{&CTransceiverTiming::packet_qual, "packet_qual"},
  };
};

CTransceiverTiming::CTransceiverTiming() { Members::construct(*this, "Timing"); }
CTransceiverTiming::CTransceiverTiming(const CTransceiverTiming &rhs) : CTransceiverTiming() { *this = rhs; }
CTransceiverTiming::~CTransceiverTiming() = default;

CTransceiverTiming &CTransceiverTiming::operator=(const CTransceiverTiming &rhs) { return Members::copy(*this, rhs); }
void CTransceiverTiming::Init() { Members::init(*this); }
void CTransceiverTiming::pushMembers() { Members::push(*this); }

struct CTransceiverModeSpec::Members : RecordMembers<Members, CTransceiverModeSpec> {
  static constexpr auto rows = std::tuple{
      Row{&CTransceiverModeSpec::chan_bit_rate, "chan_bit_rate"},
      Row{&CTransceiverModeSpec::alt_rate_tag, "alt_rate_tag"},
      Row{&CTransceiverModeSpec::xcvr_cntrls_pream, "xcvr_cntrls_pream"},
      Row{&CTransceiverModeSpec::wakeup_pin_dir, "wakeup_pin_dir"},
      Row{&CTransceiverModeSpec::xcvr_gp_data, kGeneralPurposeData},
      Row{&CTransceiverModeSpec::allow_node_override, "allow_node_override"},
  };
};

CTransceiverModeSpec::CTransceiverModeSpec() { Members::construct(*this, "ModeSpec"); }
CTransceiverModeSpec::CTransceiverModeSpec(const CTransceiverModeSpec &rhs) : CTransceiverModeSpec() { *this = rhs; }
CTransceiverModeSpec::~CTransceiverModeSpec() = default;

CTransceiverModeSpec &CTransceiverModeSpec::operator=(const CTransceiverModeSpec &rhs) {
  return Members::copy(*this, rhs);
}

void CTransceiverModeSpec::Init() { Members::init(*this); }

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

void CTransceiverModeSpec::pushMembers() { Members::push(*this); }

struct CTransceiverModeSpec2::Members : RecordMembers<Members, CTransceiverModeSpec2, CTransceiverModeSpec> {
  static constexpr auto rows =
      std::tuple{Row{&CTransceiverModeSpec2::standard_threshold, "standard_threshold", "TRUE"}};
};

CTransceiverModeSpec2::CTransceiverModeSpec2() { Members::construct(*this); }

CTransceiverModeSpec2::CTransceiverModeSpec2(const CTransceiverModeSpec2 &rhs) : CTransceiverModeSpec2() {
  *this = rhs;
}

CTransceiverModeSpec2::~CTransceiverModeSpec2() = default;

CTransceiverModeSpec2 &CTransceiverModeSpec2::operator=(const CTransceiverModeSpec2 &rhs) {
  return Members::copy(*this, rhs);
}

void CTransceiverModeSpec2::Init() { Members::init(*this); }
void CTransceiverModeSpec2::pushMembers() { Members::push(*this); }
