#include "kestrune/chip/vorlan_model.h"

#include "kestrune/xml/member_list.h"
#include "kestrune/xml/number_text.h"

template <class Visit>
constexpr void CVorlanModel::forEachMember(Visit visit) {
  visit(&CVorlanModel::Name, "Name");
  visit(&CVorlanModel::ExternalMemory, "ExternalMemory");
  visit(&CVorlanModel::TriacClkedgeBipolar, "TriacClkedgeBipolar");
  visit(&CVorlanModel::PTMSupported, "PTMSupported", "FALSE");
  visit(&CVorlanModel::ImageName, "ImageName");
  visit(&CVorlanModel::KeyText, "Key");
  visit(&CVorlanModel::ModelNum, "ModelNum");
  visit(&CVorlanModel::minFWrelease, "minFWrelease");
  visit(&CVorlanModel::maxFWrelease, "maxFWrelease");
  visit(&CVorlanModel::FirmwareVersionList, "FirmwareVersionList", "");
  visit(&CVorlanModel::ROMend, "ROMend");
  visit(&CVorlanModel::ROMendMinimum, "ROMendMinimum");
  visit(&CVorlanModel::EEstart, "EEstart");
  visit(&CVorlanModel::EEend, "EEend");
  visit(&CVorlanModel::ExtendedEEstart, "ExtendedEEstart");
  visit(&CVorlanModel::ExtendedEEend, "ExtendedEEend");
  visit(&CVorlanModel::RAMstart, "RAMstart");
  visit(&CVorlanModel::RAMend, "RAMend");
  visit(&CVorlanModel::MaxClockID, "MaxClockID");
  visit(&CVorlanModel::TransceiverList, "TransceiverList");
  visit(&CVorlanModel::OnchipProgrammableSystemImage, "OnchipProgrammableSystemImage", "FALSE");
}

static_assert(sizeof(CVorlanModel) == sizeof(CXMLFolder) + MemberList::size<CVorlanModel>());

CVorlanModel::CVorlanModel() {
  PutTag(CString("VorlanModel"));
  CXMLFolder::operator=("VorlanModel");
  CVorlanModel::Init();
}

CVorlanModel::CVorlanModel(const CVorlanModel &rhs) : CVorlanModel() { *this = rhs; }

CVorlanModel::~CVorlanModel() = default;

CVorlanModel &CVorlanModel::operator=(const CVorlanModel &rhs) {
  CXMLPersistent::operator=(rhs);
  MemberList::copy(*this, rhs);
  pushMembers();
  return *this;
}

void CVorlanModel::Init() {
  MemberList::init(*this);
  pushMembers();
}

CString CVorlanModel::Key() const { return KeyText; }

void CVorlanModel::pushMembers() {
  m_members.clear();
  MemberList::append(*this);
}

template <class Visit>
constexpr void CVorlanModel2::forEachMember(Visit visit) {
  visit(&CVorlanModel2::SharedClock, "SharedClock", "FALSE");
  visit(&CVorlanModel2::MinClockID, "MinClockID");
  visit(&CVorlanModel2::ExtendedRAMSize, "ExtendedRAMSize", "0x0000");
  visit(&CVorlanModel2::BigBufferResetFwMin, "BigBufferResetFwMin", "0");
  visit(&CVorlanModel2::ManufacturerID, "ManufacturerID", "-1");
}

static_assert(sizeof(CVorlanModel2) == sizeof(CVorlanModel) + MemberList::size<CVorlanModel2>());

// In the later versions, the constructors find what they inherit initialised, and Init and operator= need not rebuild
// the member list: the first version has had the virtual pushMembers do it.

CVorlanModel2::CVorlanModel2() {
  MemberList::init(*this);
  CVorlanModel2::pushMembers();
}

CVorlanModel2::CVorlanModel2(const CVorlanModel2 &rhs) : CVorlanModel2() { *this = rhs; }

CVorlanModel2::~CVorlanModel2() = default;

CVorlanModel2 &CVorlanModel2::operator=(const CVorlanModel2 &rhs) {
  CVorlanModel::operator=(rhs);
  MemberList::copy(*this, rhs);
  return *this;
}

void CVorlanModel2::Init() {
  CVorlanModel::Init();
  MemberList::init(*this);
}

CString CVorlanModel2::Key() const { return CVorlanModel::Key(); }

void CVorlanModel2::pushMembers() {
  CVorlanModel::pushMembers();
  MemberList::append(*this);
}

template <class Visit>
constexpr void CVorlanModel3::forEachMember(Visit visit) {
  visit(&CVorlanModel3::UninitEEStart, "UninitEEStart", "0x0000");
  visit(&CVorlanModel3::UninitEEEnd, "UninitEEEnd", "0x0000");
}

static_assert(sizeof(CVorlanModel3) == sizeof(CVorlanModel2) + MemberList::size<CVorlanModel3>());

CVorlanModel3::CVorlanModel3() {
  MemberList::init(*this);
  CVorlanModel3::pushMembers();
}

CVorlanModel3::CVorlanModel3(const CVorlanModel3 &rhs) : CVorlanModel3() { *this = rhs; }

CVorlanModel3::~CVorlanModel3() = default;

CVorlanModel3 &CVorlanModel3::operator=(const CVorlanModel3 &rhs) {
  CVorlanModel2::operator=(rhs);
  MemberList::copy(*this, rhs);
  return *this;
}

void CVorlanModel3::Init() {
  CVorlanModel2::Init();
  MemberList::init(*this);
}

CString CVorlanModel3::Key() const { return CVorlanModel2::Key(); }

void CVorlanModel3::pushMembers() {
  CVorlanModel2::pushMembers();
  MemberList::append(*this);
}

template <class Visit>
constexpr void CVorlanModel4::forEachMember(Visit visit) {
  visit(&CVorlanModel4::m_instructionSet, "InstructionSet", "1");
  visit(&CVorlanModel4::m_clockingScheme, "ClockingScheme", "1");
  visit(&CVorlanModel4::m_family, "Family", "3100");
  visit(&CVorlanModel4::m_nvMemoryTypes);
  visit(&CVorlanModel4::m_capacityModel, "CapacityModel");
  visit(&CVorlanModel4::m_programmablePullups, "ProgrammablePullups", "0x0");
}

static_assert(sizeof(CVorlanModel4) == sizeof(CVorlanModel3) + MemberList::size<CVorlanModel4>());

CVorlanModel4::CVorlanModel4() {
  MemberList::init(*this);
  CVorlanModel4::pushMembers();
}

CVorlanModel4::CVorlanModel4(const CVorlanModel4 &rhs) : CVorlanModel4() { *this = rhs; }

CVorlanModel4::~CVorlanModel4() = default;

CVorlanModel4 &CVorlanModel4::operator=(const CVorlanModel4 &rhs) {
  CVorlanModel3::operator=(rhs);
  MemberList::copy(*this, rhs);
  return *this;
}

void CVorlanModel4::Init() {
  CVorlanModel3::Init();
  MemberList::init(*this);
}

CString CVorlanModel4::Key() const { return CVorlanModel3::Key(); }

void CVorlanModel4::pushMembers() {
  CVorlanModel3::pushMembers();
  MemberList::append(*this);
}

int CVorlanModel4::InstructionSet() const { return ParseInt(m_instructionSet); }

int CVorlanModel4::ClockingScheme() const { return ParseInt(m_clockingScheme); }

int CVorlanModel4::Family() const { return static_cast<int>(ParseUnsigned(m_family)); }

CNVMemoryTypes &CVorlanModel4::NVMemoryTypes() { return m_nvMemoryTypes; }

capacityModel CVorlanModel4::CapacityModel() const {
  return static_cast<capacityModel>(ParseUnsigned(m_capacityModel));
}

unsigned int CVorlanModel4::ProgrammablePullups() const { return ParseUnsigned(m_programmablePullups); }
