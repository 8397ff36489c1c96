#pragma once

#include "kestrune/xml/xml_folder.h"

/// \file
/// The parameters of a transceiver: stored texts, which the library neither converts nor checks. All members are child
/// elements named like their tags. The tools that read the data define units and legal values.

/// The channel parameters, element "Channel". The tools that read the data define units and legal values.
/// \members{transceiver_parameters.cpp,CTransceiverChannel}
class KESTRUNE_API CTransceiverChannel : public CXMLFolder {
public:
  CTransceiverChannel();                                          ///< Every member has its default text.
  CTransceiverChannel(const CTransceiverChannel &rhs);            ///< Copies all members.
  ~CTransceiverChannel() override;                                ///< Does not save.
  CTransceiverChannel &operator=(const CTransceiverChannel &rhs); ///< Copies all members.

  /// Sets the members' tags and keeps their texts.
  void Init() override;
  void pushMembers() override;

  CXMLElement comm_mode;              ///< The communication mode.
  CXMLElement osc_accuracy;           ///< The accuracy of the oscillator.
  CXMLElement osc_wakeup;             ///< The wake-up of the oscillator.
  CXMLElement comm_rate;              ///< The communication rate.
  CXMLElement max_priority;           ///< The highest priority.
  CXMLElement default_priority_slots; ///< The number of priority slots unless another is set.
  CXMLElement min_clockID;            ///< The lowest clock id.
  CXMLElement max_clockID;            ///< The highest clock id.
  CXMLElement avg_pkt_size;           ///< The average size of a packet.
  CXMLHexElement flags;               ///< Flags, in hexadecimal.

private:
  struct Members;
};

/// The timing parameters, element "Timing". The tools that read the data define units and legal values.
/// \members{transceiver_parameters.cpp,CTransceiverTiming}
class KESTRUNE_API CTransceiverTiming : public CXMLFolder {
public:
  CTransceiverTiming();                                         ///< Every member has its default text.
  CTransceiverTiming(const CTransceiverTiming &rhs);            ///< Copies all members.
  ~CTransceiverTiming() override;                               ///< Does not save.
  CTransceiverTiming &operator=(const CTransceiverTiming &rhs); ///< Copies all members.

  /// Sets the members' tags and keeps their texts.
  void Init() override;
  void pushMembers() override;

  CXMLElement rcv_start_delay; ///< The delay at the start of a reception.
  CXMLElement rcv_end_delay;   ///< The delay at the end of a reception.
  CXMLElement indeterm_time;   ///< The indeterminate time.
  CXMLElement min_interpkt;    ///< The least time between packets.
  CXMLElement preamble;        ///< The preamble.
  CXMLElement turnaround;      ///< The turnaround.
  CXMLElement missed_pream;    ///< The missed preamble.
  CXMLElement packet_qual;     ///< The packet qualification.

private:
  struct Members;
};

/// The mode parameters, element "ModeSpec". The tools that read the data define units and legal values.
/// \members{transceiver_parameters.cpp,CTransceiverModeSpec}
class KESTRUNE_API CTransceiverModeSpec : public CXMLFolder {
public:
  CTransceiverModeSpec();                                           ///< Every member has its default text.
  CTransceiverModeSpec(const CTransceiverModeSpec &rhs);            ///< Copies all members.
  ~CTransceiverModeSpec() override;                                 ///< Does not save.
  CTransceiverModeSpec &operator=(const CTransceiverModeSpec &rhs); ///< Copies all members.

  /// Sets the members' tags and keeps their texts.
  void Init() override;
  /// As the base. Then, unless that failed, makes `xcvr_gp_data` upper case and removes its prefix. A text without a
  /// prefix becomes empty, and so does the default when the file lacks the element.
  long Load(MSXML::IXMLDOMElement *parent) override;
  /// As the base, but writes `xcvr_gp_data` with the prefix "0x".
  IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level) override;
  void pushMembers() override;

  CXMLElement chan_bit_rate;     ///< The bit rate of the channel.
  CXMLElement alt_rate_tag;      ///< The tag of the alternate rate.
  CXMLElement xcvr_cntrls_pream; ///< Whether the transceiver controls the preamble.
  CXMLElement wakeup_pin_dir;    ///< The direction of the wake-up pin.
  /// The general-purpose data: hexadecimal digits, without the prefix that the file has.
  CXMLElement xcvr_gp_data;
  CXMLElement allow_node_override; ///< Whether a node may override the mode.

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // for the next version
};

/// The mode parameters in their second version, also element "ModeSpec".
/// \members{transceiver_parameters.cpp,CTransceiverModeSpec2}
class KESTRUNE_API CTransceiverModeSpec2 : public CTransceiverModeSpec {
public:
  CTransceiverModeSpec2();                                            ///< Every member has its default text.
  CTransceiverModeSpec2(const CTransceiverModeSpec2 &rhs);            ///< Copies all members.
  ~CTransceiverModeSpec2() override;                                  ///< Does not save.
  CTransceiverModeSpec2 &operator=(const CTransceiverModeSpec2 &rhs); ///< Copies all members.

  /// As the base, and sets the tag and the default of `standard_threshold`.
  void Init() override;
  void pushMembers() override;

  CXMLElement standard_threshold; ///< Whether the threshold is the standard one; "TRUE" by default.

private:
  struct Members;
};
