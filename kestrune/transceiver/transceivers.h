#pragma once

#include "kestrune/transceiver/transceiver_parameters.h"
#include "kestrune/xml/xml_collection.h"

/// One kind of transceiver, element "Transceiver". Members hold the text of the file and are named like their tags.
/// \members{transceivers.cpp,CTransceiver}
class KESTRUNE_API CTransceiver : public CXMLFolder {
public:
  CTransceiver(); ///< Every member has its default text.
  /// With that name; every other member has its default text.
  explicit CTransceiver(const char *name);
  CTransceiver(const CTransceiver &rhs);            ///< Copies all members.
  ~CTransceiver() override;                         ///< Does not save.
  CTransceiver &operator=(const CTransceiver &rhs); ///< Copies all members.

  /// Sets the members' tags, and resets the members that have a default of their own.
  void Init() override;
  /// The name.
  CString Key() const override;
  void pushMembers() override;

  CXMLBoolAttribute TevroskApproved; ///< Whether it is approved under the interoperability brand.
  CXMLAttribute Name;                ///< The name, by which a collection finds it.
  /// The number that FindByID compares: decimal, hexadecimal with 0x, or octal with a leading 0.
  CXMLElement std_id;
  CXMLElement support_level;     ///< The support level, a text of any form.
  CXMLElement ChannelTypeNumber; ///< The number of the channel type.
  /// A second number; no search uses it.
  CXMLElement std_xcvr_id;
  CXMLBoolAttribute UsesVorlanComPort; ///< Whether it uses the chip's communications port.
  CTransceiverTiming Timing;           ///< The timing parameters.
  CTransceiverChannel Channel;         ///< The channel parameters.
  CTransceiverModeSpec ModeSpec;       ///< The mode parameters.

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // for the next version
};

/// A transceiver in the second version of the record.
/// \members{transceivers.cpp,CTransceiver2}
class KESTRUNE_API CTransceiver2 : public CTransceiver {
public:
  CTransceiver2(); ///< Every member has its default text.
  /// With that name; every other member has its default text.
  explicit CTransceiver2(const char *name);
  CTransceiver2(const CTransceiver2 &rhs);            ///< Copies all members.
  ~CTransceiver2() override;                          ///< Does not save.
  CTransceiver2 &operator=(const CTransceiver2 &rhs); ///< Copies all members.

  void Init() override; ///< Sets all tags, and the texts that have a default in the table.
  void pushMembers() override;

  CXMLBoolAttribute SignalStrengthIndicator;    ///< Whether it has a signal strength indicator.
  CXMLBoolAttribute SupportAlternateClockRates; ///< Whether it supports alternate clock rates.

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // for the next version
};

/// A transceiver in the third version of the record. `ModeSpec2` holds the mode parameters of the file. `ModeSpec` is
/// neither read nor written; `Load`, `LoadFromFile` and assignment copy into it what it shares with `ModeSpec2`.
/// \members{transceivers.cpp,CTransceiver3}
class KESTRUNE_API CTransceiver3 : public CTransceiver2 {
public:
  CTransceiver3(); ///< Every member has its default text.
  /// With that name; every other member has its default text.
  explicit CTransceiver3(const char *name);
  CTransceiver3(const CTransceiver3 &rhs);            ///< Copies all members.
  ~CTransceiver3() override;                          ///< Does not save.
  CTransceiver3 &operator=(const CTransceiver3 &rhs); ///< Copies all members.

  void Init() override; ///< Sets all tags, and the texts that have a default in the table.
  /// As the base, and then copies `ModeSpec2` to `ModeSpec`, whatever the base returned.
  long Load(MSXML::IXMLDOMElement *parent) override;
  /// Reads a single transceiver from a file with the root element "Transceiver", as the base does, and then copies
  /// `ModeSpec2` to `ModeSpec`, whatever the base returned.
  long LoadFromFile(const char *name, const char *base) override;
  void pushMembers() override;

  /// `SchedulerMode` as a decimal number; 0 for an empty text and for "Unassigned". Throws CKRXException* (text 101)
  /// when anything is left after the number.
  unsigned int GetSchedulerMode() const;

  CTransceiverModeSpec2 ModeSpec2; ///< The mode parameters; in the file in the place of `ModeSpec`.
  CXMLElement SchedulerMode;       ///< The scheduler mode, a decimal number or "Unassigned".

private:
  struct Members;
};

/// A list of transceivers, element "Transceivers".
class KESTRUNE_API CTransceivers : public CXMLCollectionFolder {
public:
  CTransceivers();                                    ///< Without items.
  CTransceivers(const CTransceivers &rhs);            ///< Copies all items.
  ~CTransceivers() override;                          ///< Destroys the items.
  CTransceivers &operator=(const CTransceivers &rhs); ///< Copies all items.

  void Init() override; ///< Sets the tags of the list and its items.

  /// Adds a transceiver with that name and the default of every other member, and returns it; the collection owns it.
  /// Returns null when `name` is null, empty or already present.
  CTransceiver *Add(const char *name);
  /// The item at `index`; throws kestrune::BadIndex outside the list. @{
  CTransceiver *operator[](int index);
  const CTransceiver *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CTransceiver> begin();
  kestrune::ItemIterator<CTransceiver> end();
  kestrune::ItemIterator<const CTransceiver> begin() const;
  kestrune::ItemIterator<const CTransceiver> end() const;
  ///@}
  /// The first item with that name, case-insensitive, or null. @{
  CTransceiver *Find(const char *name);
  const CTransceiver *Find(const char *name) const { return mutableOf(*this).Find(name); }
  ///@}
  /// The first item whose `std_id` is that number, or null. Throws CKRXException* (text 101) when it reaches an item
  /// whose `std_id` is not a number. @{
  CTransceiver *FindByID(int id);
  const CTransceiver *FindByID(int id) const { return mutableOf(*this).FindByID(id); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};

/// A list of transceivers of the second version, with the same operations.
class KESTRUNE_API CTransceivers2 : public CTransceivers {
public:
  CTransceivers2();                                     ///< Without items.
  CTransceivers2(const CTransceivers2 &rhs);            ///< Copies all items.
  ~CTransceivers2() override;                           ///< Destroys the items.
  CTransceivers2 &operator=(const CTransceivers2 &rhs); ///< Copies all items.

  /// \copydoc CTransceivers::Add
  CTransceiver2 *Add(const char *name);
  /// \copydoc CTransceivers::operator[]
  /// @{
  CTransceiver2 *operator[](int index);
  const CTransceiver2 *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CTransceiver2> begin();
  kestrune::ItemIterator<CTransceiver2> end();
  kestrune::ItemIterator<const CTransceiver2> begin() const;
  kestrune::ItemIterator<const CTransceiver2> end() const;
  ///@}
  /// \copydoc CTransceivers::Find
  /// @{
  CTransceiver2 *Find(const char *name);
  const CTransceiver2 *Find(const char *name) const { return mutableOf(*this).Find(name); }
  ///@}
  /// \copydoc CTransceivers::FindByID
  /// @{
  CTransceiver2 *FindByID(int id);
  const CTransceiver2 *FindByID(int id) const { return mutableOf(*this).FindByID(id); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};

/// A list of transceivers of the third version, with the same operations.
class KESTRUNE_API CTransceivers3 : public CTransceivers2 {
public:
  CTransceivers3();                                     ///< Without items.
  CTransceivers3(const CTransceivers3 &rhs);            ///< Copies all items.
  ~CTransceivers3() override;                           ///< Destroys the items.
  CTransceivers3 &operator=(const CTransceivers3 &rhs); ///< Copies all items.

  /// \copydoc CTransceivers::Add
  CTransceiver3 *Add(const char *name);
  /// \copydoc CTransceivers::operator[]
  /// @{
  CTransceiver3 *operator[](int index);
  const CTransceiver3 *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CTransceiver3> begin();
  kestrune::ItemIterator<CTransceiver3> end();
  kestrune::ItemIterator<const CTransceiver3> begin() const;
  kestrune::ItemIterator<const CTransceiver3> end() const;
  ///@}
  /// \copydoc CTransceivers::Find
  /// @{
  CTransceiver3 *Find(const char *name);
  const CTransceiver3 *Find(const char *name) const { return mutableOf(*this).Find(name); }
  ///@}
  /// \copydoc CTransceivers::FindByID
  /// @{
  CTransceiver3 *FindByID(int id);
  const CTransceiver3 *FindByID(int id) const { return mutableOf(*this).FindByID(id); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};
