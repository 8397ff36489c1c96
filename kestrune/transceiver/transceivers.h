#pragma once

#include "kestrune/transceiver/transceiver_parameters.h"
#include "kestrune/xml/xml_collection.h"

/// One kind of transceiver: element "Transceiver". All members are texts of the file and bear the names of their tags.
class KESTRUNE_API CTransceiver : public CXMLFolder {
public:
  CTransceiver();
  explicit CTransceiver(const char *name);
  CTransceiver(const CTransceiver &rhs);
  ~CTransceiver() override;
  CTransceiver &operator=(const CTransceiver &rhs);

  /// Gives the members their tags and, where they have one, their defaults.
  void Init() override;
  /// The name.
  CString Key() const override;
  void pushMembers() override;

  CXMLBoolAttribute TevroskApproved;
  CXMLAttribute Name;
  /// The number that FindByID looks for: decimal, hexadecimal with 0x, octal with a leading 0.
  CXMLElement std_id;
  CXMLElement support_level;
  CXMLElement ChannelTypeNumber;
  /// A second number, which no search uses.
  CXMLElement std_xcvr_id;
  CXMLBoolAttribute UsesVorlanComPort;
  CTransceiverTiming Timing;
  CTransceiverChannel Channel;
  CTransceiverModeSpec ModeSpec;

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // of the next version
};

/// The second version of the record.
class KESTRUNE_API CTransceiver2 : public CTransceiver {
public:
  CTransceiver2();
  explicit CTransceiver2(const char *name);
  CTransceiver2(const CTransceiver2 &rhs);
  ~CTransceiver2() override;
  CTransceiver2 &operator=(const CTransceiver2 &rhs);

  void Init() override;
  void pushMembers() override;

  CXMLBoolAttribute SignalStrengthIndicator;
  CXMLBoolAttribute SupportAlternateClockRates;

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // of the next version
};

/// The third version of the record. The mode parameters of the file are those in `ModeSpec2`; `ModeSpec` is a copy of
/// what they share, made by `Load`, `LoadFromFile` and assignment, and is neither read nor written.
class KESTRUNE_API CTransceiver3 : public CTransceiver2 {
public:
  CTransceiver3();
  explicit CTransceiver3(const char *name);
  CTransceiver3(const CTransceiver3 &rhs);
  ~CTransceiver3() override;
  CTransceiver3 &operator=(const CTransceiver3 &rhs);

  void Init() override;
  /// As the base; whatever it returned, `ModeSpec` follows `ModeSpec2` then.
  long Load(MSXML::IXMLDOMElement *parent) override;
  /// Reads a single transceiver, from a file whose root is "Transceiver", as the base does; whatever it returned,
  /// `ModeSpec` follows `ModeSpec2` then.
  long LoadFromFile(const char *name, const char *base) override;
  void pushMembers() override;

  /// `SchedulerMode` as a decimal number; 0 for an empty text and for "Unassigned". Throws CKRXException* (text 101)
  /// when anything else is left behind the number.
  unsigned int GetSchedulerMode() const;

  CTransceiverModeSpec2 ModeSpec2;
  CXMLElement SchedulerMode;

private:
  struct Members;
};

/// A list of transceivers: element "Transceivers".
class KESTRUNE_API CTransceivers : public CXMLCollectionFolder {
public:
  CTransceivers();
  CTransceivers(const CTransceivers &rhs);
  ~CTransceivers() override;
  CTransceivers &operator=(const CTransceivers &rhs);

  void Init() override;

  /// Adds a transceiver of that name, with the defaults in all else; the item stays the collection's. Null when `name`
  /// is empty or there already.
  CTransceiver *Add(const char *name);
  /// The item at `index`; throws std::out_of_range outside the list.
  CTransceiver *operator[](int index);
  /// The first item of that name, without regard to case, or null.
  CTransceiver *Find(const char *name);
  /// The first item whose `std_id` is that number, or null. Throws CKRXException* (text 101) when the search comes to
  /// an item whose `std_id` is no number.
  CTransceiver *FindByID(int id);

protected:
  CXMLFolder *NewFolder() override;
};

/// The list of the second version; its operations are those of the first.
class KESTRUNE_API CTransceivers2 : public CTransceivers {
public:
  CTransceivers2();
  CTransceivers2(const CTransceivers2 &rhs);
  ~CTransceivers2() override;
  CTransceivers2 &operator=(const CTransceivers2 &rhs);

  CTransceiver2 *Add(const char *name);
  CTransceiver2 *operator[](int index);
  CTransceiver2 *Find(const char *name);
  CTransceiver2 *FindByID(int id);

protected:
  CXMLFolder *NewFolder() override;
};

/// The list of the third version; its operations are those of the first.
class KESTRUNE_API CTransceivers3 : public CTransceivers2 {
public:
  CTransceivers3();
  CTransceivers3(const CTransceivers3 &rhs);
  ~CTransceivers3() override;
  CTransceivers3 &operator=(const CTransceivers3 &rhs);

  CTransceiver3 *Add(const char *name);
  CTransceiver3 *operator[](int index);
  CTransceiver3 *Find(const char *name);
  CTransceiver3 *FindByID(int id);

protected:
  CXMLFolder *NewFolder() override;
};
