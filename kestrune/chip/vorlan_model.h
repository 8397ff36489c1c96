#pragma once

#include "kestrune/chip/nv_memory_types.h"

// The chip models in their four format versions. A later version holds the members of the earlier ones and its own. All
// of them hold the text of the file: nothing is checked on loading, and what the file lacks keeps its default.
// Addresses and sizes are hexadecimal text such as "0xFFFF", truth values "TRUE" or "FALSE", all other numbers what C
// takes for one: decimal, hexadecimal with 0x, octal with a leading 0.

/// A Vorlan chip model as of format version 1.
class KESTRUNE_API CVorlanModel : public CXMLFolder {
public:
  CVorlanModel();
  CVorlanModel(const CVorlanModel &rhs);
  ~CVorlanModel() override;
  CVorlanModel &operator=(const CVorlanModel &rhs);

  void Init() override;
  /// The text of KeyText, by which a collection knows the model.
  CString Key() const override;
  void pushMembers() override;

  /// The name for people, and what a collection's Add takes.
  CXMLAttribute Name;
  /// Whether the chip uses external memory. Neither this nor the next has a default that is a truth value.
  CXMLBoolAttribute ExternalMemory;
  CXMLBoolAttribute TriacClkedgeBipolar;
  CXMLBoolAttribute PTMSupported;
  CXMLElement ImageName;
  /// The member of tag "Key".
  CXMLElement KeyText;
  CXMLElement ModelNum;
  /// The lowest and the highest firmware release.
  CXMLElement minFWrelease;
  CXMLElement maxFWrelease;
  /// One text, which the library does not split.
  CXMLElement FirmwareVersionList;
  CXMLHexElement ROMend;
  /// The lowest end of ROM that is allowed.
  CXMLHexElement ROMendMinimum;
  CXMLHexElement EEstart;
  CXMLHexElement EEend;
  CXMLHexElement ExtendedEEstart;
  CXMLHexElement ExtendedEEend;
  CXMLHexElement RAMstart;
  CXMLHexElement RAMend;
  CXMLElement MaxClockID;
  /// The names of the model's transceivers as one text, which the library does not split.
  CXMLElement TransceiverList;
  /// Whether the system image on the chip is programmable.
  CXMLBoolAttribute OnchipProgrammableSystemImage;

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // of the next version
};

/// A Vorlan chip model as of format version 2.
class KESTRUNE_API CVorlanModel2 : public CVorlanModel {
public:
  CVorlanModel2();
  CVorlanModel2(const CVorlanModel2 &rhs);
  ~CVorlanModel2() override;
  CVorlanModel2 &operator=(const CVorlanModel2 &rhs);

  void Init() override;
  CString Key() const override;
  void pushMembers() override;

  CXMLBoolAttribute SharedClock;
  CXMLElement MinClockID;
  CXMLHexElement ExtendedRAMSize;
  /// The lowest firmware release that has the big buffer reset.
  CXMLElement BigBufferResetFwMin;
  /// "-1" at first: none.
  CXMLElement ManufacturerID;

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // of the next version
};

/// A Vorlan chip model as of format version 3.
class KESTRUNE_API CVorlanModel3 : public CVorlanModel2 {
public:
  CVorlanModel3();
  CVorlanModel3(const CVorlanModel3 &rhs);
  ~CVorlanModel3() override;
  CVorlanModel3 &operator=(const CVorlanModel3 &rhs);

  void Init() override;
  CString Key() const override;
  void pushMembers() override;

  /// The part of the EEPROM that is not initialised.
  CXMLHexElement UninitEEStart;
  CXMLHexElement UninitEEEnd;

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // of the next version
};

/// A number that only callers know the meaning of.
enum capacityModel : int {};

/// A Vorlan chip model as of format version 4. The accessors read the member's text at each call: an empty text is 0,
/// and CKRXException* (text 101) is thrown when anything is left behind the number.
class KESTRUNE_API CVorlanModel4 : public CVorlanModel3 {
public:
  CVorlanModel4();
  CVorlanModel4(const CVorlanModel4 &rhs);
  ~CVorlanModel4() override;
  CVorlanModel4 &operator=(const CVorlanModel4 &rhs);

  void Init() override;
  CString Key() const override;
  void pushMembers() override;

  int InstructionSet() const;
  /// The number of the model's clocking scheme.
  int ClockingScheme() const;
  int Family() const;
  /// The non-volatile memories of this model: a member of the model.
  CNVMemoryTypes &NVMemoryTypes();
  /// Throws on the default, "Unassigned".
  capacityModel CapacityModel() const;
  /// The pull-ups, as bits.
  unsigned int ProgrammablePullups() const;

private:
  struct Members;

  CXMLElement m_instructionSet;
  CXMLElement m_clockingScheme;
  CXMLElement m_family;
  CNVMemoryTypes m_nvMemoryTypes;
  CXMLElement m_capacityModel;
  CXMLHexElement m_programmablePullups;
};
