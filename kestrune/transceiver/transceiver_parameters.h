#pragma once

#include "kestrune/xml/xml_folder.h"

// The parameters of a transceiver: stored texts, which the library neither converts nor checks. All members are child
// elements named like their tags. The tools that read the data define units and legal values.

/// The channel parameters, element "Channel".
class KESTRUNE_API CTransceiverChannel : public CXMLFolder {
public:
  CTransceiverChannel();
  CTransceiverChannel(const CTransceiverChannel &rhs);
  ~CTransceiverChannel() override;
  CTransceiverChannel &operator=(const CTransceiverChannel &rhs);

  /// Sets the members' tags and keeps their texts.
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

/// The timing parameters, element "Timing".
class KESTRUNE_API CTransceiverTiming : public CXMLFolder {
public:
  CTransceiverTiming();
  CTransceiverTiming(const CTransceiverTiming &rhs);
  ~CTransceiverTiming() override;
  CTransceiverTiming &operator=(const CTransceiverTiming &rhs);

  /// Sets the members' tags and keeps their texts.
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

/// The mode parameters, element "ModeSpec".
class KESTRUNE_API CTransceiverModeSpec : public CXMLFolder {
public:
  CTransceiverModeSpec();
  CTransceiverModeSpec(const CTransceiverModeSpec &rhs);
  ~CTransceiverModeSpec() override;
  CTransceiverModeSpec &operator=(const CTransceiverModeSpec &rhs);

  /// Sets the members' tags and keeps their texts.
  void Init() override;
  /// As the base. Then, unless that failed, makes `xcvr_gp_data` upper case and removes its prefix. A text without a
  /// prefix becomes empty, and so does the default when the file lacks the element.
  long Load(MSXML::IXMLDOMElement *parent) override;
  /// As the base, but writes `xcvr_gp_data` with the prefix "0x".
  IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level) override;
  void pushMembers() override;

  CXMLElement chan_bit_rate;
  CXMLElement alt_rate_tag;
  CXMLElement xcvr_cntrls_pream;
  CXMLElement wakeup_pin_dir;
  /// Hexadecimal digits, without the prefix that the file has.
  CXMLElement xcvr_gp_data;
  CXMLElement allow_node_override;

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // for the next version
};

/// The mode parameters in their second version, also element "ModeSpec".
class KESTRUNE_API CTransceiverModeSpec2 : public CTransceiverModeSpec {
public:
  CTransceiverModeSpec2();
  CTransceiverModeSpec2(const CTransceiverModeSpec2 &rhs);
  ~CTransceiverModeSpec2() override;
  CTransceiverModeSpec2 &operator=(const CTransceiverModeSpec2 &rhs);

  /// As the base, and sets the tag and the default of `standard_threshold`.
  void Init() override;
  void pushMembers() override;

  /// "TRUE" by default.
  CXMLElement standard_threshold;

private:
  struct Members;
};
