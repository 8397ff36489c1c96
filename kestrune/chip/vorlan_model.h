#pragma once

#include "kestrune/chip/nv_memory_types.h"

// The chip models in their four format versions; each version adds members to the one before it. Members hold the text
// of the file: loading checks nothing, and what the file lacks keeps its default. Addresses and sizes are hexadecimal
// text such as "0xFFFF", truth values "TRUE" or "FALSE". All other numbers are decimal, hexadecimal with 0x, or octal
// with a leading 0.

/// A Vorlan chip model in format version 1.
class KESTRUNE_API CVorlanModel : public CXMLFolder {
public:
  CVorlanModel();
  CVorlanModel(const CVorlanModel &rhs);
  ~CVorlanModel() override;
  CVorlanModel &operator=(const CVorlanModel &rhs);

  void Init() override;
  /// The text of KeyText, which identifies the model in a collection.
  CString Key() const override;
  void pushMembers() override;

  /// The name to show to users, and the argument of a collection's Add.
  CXMLAttribute Name;
  /// Whether the chip uses external memory. The default of this and the next member is "Unassigned", so converting it
  /// throws until a truth value is set or loaded.
  CXMLBoolAttribute ExternalMemory;
  CXMLBoolAttribute TriacClkedgeBipolar;
  CXMLBoolAttribute PTMSupported;
  CXMLElement ImageName;
  /// The member with the tag "Key".
  CXMLElement KeyText;
  CXMLElement ModelNum;
  /// The lowest and the highest firmware release.
  CXMLElement minFWrelease;
  CXMLElement maxFWrelease;
  /// One text, which the library does not split.
  CXMLElement FirmwareVersionList;
  CXMLHexElement ROMend;
  /// The lowest permitted value of ROMend.
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
  friend struct RecordMembers; // for the next version
};

/// A Vorlan chip model in format version 2.
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
  /// The default, "-1", means none.
  CXMLElement ManufacturerID;

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // for the next version
};

/// A Vorlan chip model in format version 3.
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
  friend struct RecordMembers; // for the next version
};

/// A number whose meaning is up to the caller.
enum capacityModel : int {};

/// A Vorlan chip model in format version 4. The accessors convert the member's text at each call: an empty text is 0,
/// and anything left after the number throws CKRXException* (text 101).
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
  /// The programmable pull-ups, as a bit mask.
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
