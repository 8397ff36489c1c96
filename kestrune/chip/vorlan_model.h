#pragma once

#include "kestrune/chip/nv_memory_types.h"

/// \file
/// The chip models in their four format versions; each version adds members to the one before it. Members hold the text
/// of the file: loading checks nothing, and what the file lacks keeps its default. Addresses and sizes are hexadecimal
/// text such as "0xFFFF", truth values "TRUE" or "FALSE". All other numbers are decimal, hexadecimal with 0x, or octal
/// with a leading 0.

/// A Vorlan chip model in format version 1.
/// \members{vorlan_model.cpp,CVorlanModel}
class KESTRUNE_API CVorlanModel : public CXMLFolder {
public:
  CVorlanModel();                                   ///< Every member has its default text.
  CVorlanModel(const CVorlanModel &rhs);            ///< Copies all members.
  ~CVorlanModel() override;                         ///< Does not save.
  CVorlanModel &operator=(const CVorlanModel &rhs); ///< Copies all members.

  void Init() override; ///< Sets all tags, and the texts that have a default in the table.
  /// The text of KeyText, which identifies the model in a collection.
  CString Key() const override;
  void pushMembers() override;

  /// The name to show to users, and the argument of a collection's Add.
  CXMLAttribute Name;
  /// Whether the chip uses external memory. The default of this and the next member is "Unassigned", so converting it
  /// throws until a truth value is set or loaded.
  CXMLBoolAttribute ExternalMemory;
  CXMLBoolAttribute TriacClkedgeBipolar; ///< Whether the triac's clock edge is bipolar.
  CXMLBoolAttribute PTMSupported;        ///< Whether the chip supports PTM.
  CXMLElement ImageName;                 ///< The name of the system image.
  /// The member with the tag "Key", by which a collection finds the model.
  CXMLElement KeyText;
  CXMLElement ModelNum;     ///< The number of the model.
  CXMLElement minFWrelease; ///< The lowest firmware release.
  CXMLElement maxFWrelease; ///< The highest firmware release.
  /// The firmware versions in one text, which the library does not split.
  CXMLElement FirmwareVersionList;
  CXMLHexElement ROMend; ///< The end of the ROM.
  /// The lowest permitted value of ROMend.
  CXMLHexElement ROMendMinimum;
  CXMLHexElement EEstart;         ///< The start of the EEPROM.
  CXMLHexElement EEend;           ///< The end of the EEPROM.
  CXMLHexElement ExtendedEEstart; ///< The start of the extended EEPROM.
  CXMLHexElement ExtendedEEend;   ///< The end of the extended EEPROM.
  CXMLHexElement RAMstart;        ///< The start of the RAM.
  CXMLHexElement RAMend;          ///< The end of the RAM.
  CXMLElement MaxClockID;         ///< The highest clock id.
  /// The names of the model's transceivers as one text, which the library does not split.
  CXMLElement TransceiverList;
  /// Whether the system image on the chip is programmable.
  CXMLBoolAttribute OnchipProgrammableSystemImage;

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // for the next version
};

/// A Vorlan chip model in format version 2.
/// \members{vorlan_model.cpp,CVorlanModel2}
class KESTRUNE_API CVorlanModel2 : public CVorlanModel {
public:
  CVorlanModel2();                                    ///< Every member has its default text.
  CVorlanModel2(const CVorlanModel2 &rhs);            ///< Copies all members.
  ~CVorlanModel2() override;                          ///< Does not save.
  CVorlanModel2 &operator=(const CVorlanModel2 &rhs); ///< Copies all members.

  void Init() override; ///< Sets all tags, and the texts that have a default in the table.
  CString Key() const override;
  void pushMembers() override;

  CXMLBoolAttribute SharedClock;  ///< Whether the clock is shared.
  CXMLElement MinClockID;         ///< The lowest clock id.
  CXMLHexElement ExtendedRAMSize; ///< The size of the extended RAM.
  /// The lowest firmware release that has the big buffer reset.
  CXMLElement BigBufferResetFwMin;
  /// The number of the manufacturer; the default, "-1", means none.
  CXMLElement ManufacturerID;

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // for the next version
};

/// A Vorlan chip model in format version 3.
/// \members{vorlan_model.cpp,CVorlanModel3}
class KESTRUNE_API CVorlanModel3 : public CVorlanModel2 {
public:
  CVorlanModel3();                                    ///< Every member has its default text.
  CVorlanModel3(const CVorlanModel3 &rhs);            ///< Copies all members.
  ~CVorlanModel3() override;                          ///< Does not save.
  CVorlanModel3 &operator=(const CVorlanModel3 &rhs); ///< Copies all members.

  void Init() override; ///< Sets all tags, and the texts that have a default in the table.
  CString Key() const override;
  void pushMembers() override;

  CXMLHexElement UninitEEStart; ///< The start of the part of the EEPROM that is not initialised.
  CXMLHexElement UninitEEEnd;   ///< The end of that part.

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // for the next version
};

/// The number of a capacity model; its meaning is up to the caller.
enum capacityModel : int {};

/// A Vorlan chip model in format version 4. The accessors convert the member's text at each call: an empty text is 0,
/// and anything left after the number throws CKRXException* (text 101).
/// \members{vorlan_model.cpp,CVorlanModel4}
/// \fields{vorlan_model.h,CVorlanModel4}
class KESTRUNE_API CVorlanModel4 : public CVorlanModel3 {
public:
  CVorlanModel4();                                    ///< Every member has its default text.
  CVorlanModel4(const CVorlanModel4 &rhs);            ///< Copies all members.
  ~CVorlanModel4() override;                          ///< Does not save.
  CVorlanModel4 &operator=(const CVorlanModel4 &rhs); ///< Copies all members.

  void Init() override; ///< Sets all tags, and the texts that have a default in the table.
  CString Key() const override;
  void pushMembers() override;

  /// The number of the instruction set. Throws CKRXException* (text 101) if the text is not a number.
  int InstructionSet() const;
  /// The number of the model's clocking scheme. Same exception as InstructionSet.
  int ClockingScheme() const;
  /// The number of the chip family, such as 3100. Same exception as InstructionSet.
  int Family() const;
  /// The non-volatile memories of this model: a member of the model. @{
  CNVMemoryTypes &NVMemoryTypes();
  const CNVMemoryTypes &NVMemoryTypes() const { return m_nvMemoryTypes; }
  ///@}
  /// The number of the capacity model. Throws CKRXException* (text 101) if the text is not a number, as the default,
  /// "Unassigned", is not.
  capacityModel CapacityModel() const;
  /// The programmable pull-ups, as a bit mask. Same exception as CapacityModel.
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
