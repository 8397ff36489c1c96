#pragma once

#include "kestrune/xml/xml_folder.h"

// The parameters of a transceiver. They are stored texts: callers convert what they need, and units and legal values
// are a matter of the tools that read them. All members are child elements and bear the names of their tags.

/// The channel parameters: element "Channel".
class KESTRUNE_API CTransceiverChannel : public CXMLFolder {
public:
  CTransceiverChannel();
  CTransceiverChannel(const CTransceiverChannel &rhs);
  ~CTransceiverChannel() override;
  CTransceiverChannel &operator=(const CTransceiverChannel &rhs);

  /// Gives the members their tags; their texts stay.
  void Init() override;
  void pushMembers() override;

  CXMLElement comm_mode;
  CXMLElement osc_accuracy;
  CXMLElement osc_wakeup;
  CXMLElement comm_rate;
  CXMLElement max_priority;
  CXMLElement default_priority_slots;
  CXMLElement min_clockID;
  CXMLElement max_clockID;
  CXMLElement avg_pkt_size;
  CXMLHexElement flags;

private:
  struct Members;
};

/// The timing parameters: element "Timing".
class KESTRUNE_API CTransceiverTiming : public CXMLFolder {
public:
  CTransceiverTiming();
  CTransceiverTiming(const CTransceiverTiming &rhs);
  ~CTransceiverTiming() override;
  CTransceiverTiming &operator=(const CTransceiverTiming &rhs);

  /// Gives the members their tags; their texts stay.
  void Init() override;
  void pushMembers() override;

  CXMLElement rcv_start_delay;
  CXMLElement rcv_end_delay;
  CXMLElement indeterm_time;
  CXMLElement min_interpkt;
  CXMLElement preamble;
  CXMLElement turnaround;
  CXMLElement missed_pream;
  CXMLElement packet_qual;

private:
  struct Members;
};

/// The mode parameters: element "ModeSpec".
class KESTRUNE_API CTransceiverModeSpec : public CXMLFolder {
public:
  CTransceiverModeSpec();
  CTransceiverModeSpec(const CTransceiverModeSpec &rhs);
  ~CTransceiverModeSpec() override;
  CTransceiverModeSpec &operator=(const CTransceiverModeSpec &rhs);

  /// Gives the members their tags; their texts stay.
  void Init() override;
  /// As the base; then, unless it failed, takes the prefix from `xcvr_gp_data` and makes it upper case. A text without
  /// prefix, and that of a file without the element, becomes empty.
  long Load(MSXML::IXMLDOMElement *parent) override;
  /// As the base, with "0x" in front of `xcvr_gp_data`.
  IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level) override;
  void pushMembers() override;

  CXMLElement chan_bit_rate;
  CXMLElement alt_rate_tag;
  CXMLElement xcvr_cntrls_pream;
  CXMLElement wakeup_pin_dir;
  /// Hexadecimal digits, without the prefix that they have in the file.
  CXMLElement xcvr_gp_data;
  CXMLElement allow_node_override;

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // of the next version
};

/// The second version of the mode parameters, under the same tag.
class KESTRUNE_API CTransceiverModeSpec2 : public CTransceiverModeSpec {
public:
  CTransceiverModeSpec2();
  CTransceiverModeSpec2(const CTransceiverModeSpec2 &rhs);
  ~CTransceiverModeSpec2() override;
  CTransceiverModeSpec2 &operator=(const CTransceiverModeSpec2 &rhs);

  /// As the base, and gives `standard_threshold` tag and default.
  void Init() override;
  void pushMembers() override;

  /// "TRUE" at first.
  CXMLElement standard_threshold;

private:
  struct Members;
};
