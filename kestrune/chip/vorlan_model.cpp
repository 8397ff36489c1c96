#include "kestrune/chip/vorlan_model.h"

#include "kestrune/xml/number_text.h"
#include "kestrune/xml/record_members.h"

struct CVorlanModel::Members : RecordMembers<Members, CVorlanModel> {
  static constexpr auto rows = std::tuple{
      Row{&CVorlanModel::Name, "Name"},
      Row{&CVorlanModel::ExternalMemory, "ExternalMemory"},
      Row{&CVorlanModel::TriacClkedgeBipolar, "TriacClkedgeBipolar"},
      Row{&CVorlanModel::PTMSupported, "PTMSupported", "FALSE"},
      Row{&CVorlanModel::ImageName, "ImageName"},
      Row{&CVorlanModel::KeyText, "Key"},
      Row{&CVorlanModel::ModelNum, "ModelNum"},
      Row{&CVorlanModel::minFWrelease, "minFWrelease"},
      Row{&CVorlanModel::maxFWrelease, "maxFWrelease"},
      Row{&CVorlanModel::FirmwareVersionList, "FirmwareVersionList", ""},
      Row{&CVorlanModel::ROMend, "ROMend"},
      Row{&CVorlanModel::ROMendMinimum, "ROMendMinimum"},
      Row{&CVorlanModel::EEstart, "EEstart"},
      Row{&CVorlanModel::EEend, "EEend"},
      Row{&CVorlanModel::ExtendedEEstart, "ExtendedEEstart"},
      Row{&CVorlanModel::ExtendedEEend, "ExtendedEEend"},
      Row{&CVorlanModel::RAMstart, "RAMstart"},
      Row{&CVorlanModel::RAMend, "RAMend"},
      Row{&CVorlanModel::MaxClockID, "MaxClockID"},
      Row{&CVorlanModel::TransceiverList, "TransceiverList"},
      Row{&CVorlanModel::OnchipProgrammableSystemImage, "OnchipProgrammableSystemImage", "FALSE"},
  };
};

CVorlanModel::CVorlanModel() { Members::construct(*this, "VorlanModel"); }
CVorlanModel::CVorlanModel(const CVorlanModel &rhs) : CVorlanModel() { *this = rhs; }
CVorlanModel::~CVorlanModel() = default;

CVorlanModel &CVorlanModel::operator=(const CVorlanModel &rhs) { return Members::copy(*this, rhs); }
void CVorlanModel::Init() { Members::init(*this); }
CString CVorlanModel::Key() const { return KeyText; }
void CVorlanModel::pushMembers() { Members::push(*this); }

struct CVorlanModel2::Members : RecordMembers<Members, CVorlanModel2, CVorlanModel> {
  static constexpr auto rows = std::tuple{
      Row{&CVorlanModel2::SharedClock, "SharedClock", "FALSE"},
      Row{&CVorlanModel2::MinClockID, "MinClockID"},
      Row{&CVorlanModel2::ExtendedRAMSize, "ExtendedRAMSize", "0x0000"},
      Row{&CVorlanModel2::BigBufferResetFwMin, "BigBufferResetFwMin", "0"},
      Row{&CVorlanModel2::ManufacturerID, "ManufacturerID", "-1"},
  };
};

CVorlanModel2::CVorlanModel2() { Members::construct(*this); }
CVorlanModel2::CVorlanModel2(const CVorlanModel2 &rhs) : CVorlanModel2() { *this = rhs; }
CVorlanModel2::~CVorlanModel2() = default;

CVorlanModel2 &CVorlanModel2::operator=(const CVorlanModel2 &rhs) { return Members::copy(*this, rhs); }
void CVorlanModel2::Init() { Members::init(*this); }
CString CVorlanModel2::Key() const { return CVorlanModel::Key(); }
void CVorlanModel2::pushMembers() { Members::push(*this); }

struct CVorlanModel3::Members : RecordMembers<Members, CVorlanModel3, CVorlanModel2> {
  static constexpr auto rows = std::tuple{
      Row{&CVorlanModel3::UninitEEStart, "UninitEEStart", "0x0000"},
      Row{&CVorlanModel3::UninitEEEnd, "UninitEEEnd", "0x0000"},
  };
};

CVorlanModel3::CVorlanModel3() { Members::construct(*this); }
CVorlanModel3::CVorlanModel3(const CVorlanModel3 &rhs) : CVorlanModel3() { *this = rhs; }
CVorlanModel3::~CVorlanModel3() = default;

CVorlanModel3 &CVorlanModel3::operator=(const CVorlanModel3 &rhs) { return Members::copy(*this, rhs); }
void CVorlanModel3::Init() { Members::init(*this); }
CString CVorlanModel3::Key() const { return CVorlanModel2::Key(); }
void CVorlanModel3::pushMembers() { Members::push(*this); }

struct CVorlanModel4::Members : RecordMembers<Members, CVorlanModel4, CVorlanModel3> {
  static constexpr auto rows = std::tuple{
      Row{&CVorlanModel4::m_instructionSet, "InstructionSet", "1"},
      Row{&CVorlanModel4::m_clockingScheme, "ClockingScheme", "1"},
      Row{&CVorlanModel4::m_family, "Family", "3100"},
      Row{&CVorlanModel4::m_nvMemoryTypes},
      Row{&CVorlanModel4::m_capacityModel, "CapacityModel"},
      Row{&CVorlanModel4::m_programmablePullups, "ProgrammablePullups", "0x0"},
  };
};

CVorlanModel4::CVorlanModel4() { Members::construct(*this); }
CVorlanModel4::CVorlanModel4(const CVorlanModel4 &rhs) : CVorlanModel4() { *this = rhs; }
CVorlanModel4::~CVorlanModel4() = default;

CVorlanModel4 &CVorlanModel4::operator=(const CVorlanModel4 &rhs) { return Members::copy(*this, rhs); }
void CVorlanModel4::Init() { Members::init(*this); }
CString CVorlanModel4::Key() const { return CVorlanModel3::Key(); }
void CVorlanModel4::pushMembers() { Members::push(*this); }
int CVorlanModel4::InstructionSet() const { return ParseInt(m_instructionSet); }
int CVorlanModel4::ClockingScheme() const { return ParseInt(m_clockingScheme); }
int CVorlanModel4::Family() const { return static_cast<int>(ParseUnsigned(m_family)); }
CNVMemoryTypes &CVorlanModel4::NVMemoryTypes() { return m_nvMemoryTypes; }

capacityModel CVorlanModel4::CapacityModel() const {
  return static_cast<capacityModel>(ParseUnsigned(m_capacityModel));
}

unsigned int CVorlanModel4::ProgrammablePullups() const { return ParseUnsigned(m_programmablePullups); }
