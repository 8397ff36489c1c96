#include "kestrune/identity/spid_data.h"

#include "kestrune/xml/member_list.h"

namespace {

/// The names of the four lists in the file, which are the same in both versions.
void setListTags(CXMLCollectionFolder &manufacturers, CXMLCollectionFolder &classes, CXMLCollectionFolder &subClasses,
                 CXMLCollectionFolder &channels) {
  manufacturers.setTags("ManufacturerIDs", "ManufacturerID", "Name");
  classes.setTags("DeviceClasses", "DeviceClass", "Name");
  subClasses.setTags("DeviceSubClasses", "DeviceSubClass", "Name");
  channels.setTags("ChannelTypes", "ChannelType", "Name");
}

} // namespace

template <class Visit>
constexpr void CSpidData::forEachMember(Visit visit) {
  visit(&CSpidData::ManufacturerIDs);
  visit(&CSpidData::DeviceClasses);
  visit(&CSpidData::DeviceSubClasses);
  visit(&CSpidData::ChannelTypes);
}

static_assert(sizeof(CSpidData) == sizeof(CXMLTopLevelFolder) + MemberList::size<CSpidData>());

CSpidData::CSpidData() {
  PutTag(CString("SPIDData"));
  CXMLTopLevelFolder::operator=("SPIDData");
  Contents.Init();
  setListTags(ManufacturerIDs, DeviceClasses, DeviceSubClasses, ChannelTypes);
  CSpidData::pushMembers();
}

CSpidData::CSpidData(const CSpidData &rhs) : CSpidData() { *this = rhs; }

CSpidData::~CSpidData() = default;

CSpidData &CSpidData::operator=(const CSpidData &rhs) {
  CXMLTopLevelFolder::operator=(rhs);
  MemberList::copy(*this, rhs);
  return *this;
}

void CSpidData::pushMembers() {
  CXMLTopLevelFolder::pushMembers();
  MemberList::append(*this);
}

long CSpidData::LoadFromFile(const char *name) { return CXMLFolder::LoadFromFile(name, nullptr); }

template <class Visit>
constexpr void CSpidData2::forEachMember(Visit visit) {
  visit(&CSpidData2::ManufacturerIDs2);
  visit(&CSpidData2::DeviceClasses2);
  visit(&CSpidData2::DeviceSubClasses2);
  visit(&CSpidData2::ChannelTypes2);
}

static_assert(sizeof(CSpidData2) == sizeof(CSpidData) + MemberList::size<CSpidData2>());

CSpidData2::CSpidData2() {
  setListTags(ManufacturerIDs2, DeviceClasses2, DeviceSubClasses2, ChannelTypes2);
  CSpidData2::pushMembers();
}

CSpidData2::CSpidData2(const CSpidData2 &rhs) : CSpidData2() { *this = rhs; }

CSpidData2::~CSpidData2() = default;

CSpidData2 &CSpidData2::operator=(const CSpidData2 &rhs) {
  CSpidData::operator=(rhs);
  MemberList::copy(*this, rhs);
  return *this;
}

void CSpidData2::pushMembers() {
  CXMLTopLevelFolder::pushMembers();
  MemberList::append(*this);
}
