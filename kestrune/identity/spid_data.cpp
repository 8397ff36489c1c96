#include "kestrune/identity/spid_data.h"

#include "kestrune/xml/record_members.h"

namespace {

/// Sets the tags of the four lists, which are the same in both versions.
void setListTags(CXMLCollectionFolder &manufacturers, CXMLCollectionFolder &classes, CXMLCollectionFolder &subClasses,
                 CXMLCollectionFolder &channels) {
  manufacturers.setTags("ManufacturerIDs", "ManufacturerID", "Name");
  classes.setTags("DeviceClasses", "DeviceClass", "Name");
  subClasses.setTags("DeviceSubClasses", "DeviceSubClass", "Name");
  channels.setTags("ChannelTypes", "ChannelType", "Name");
}

} // namespace

struct CSpidData::Members : DocumentMembers<Members, CSpidData> {
  static constexpr auto rows = std::tuple{
      Row{&CSpidData::ManufacturerIDs},
      Row{&CSpidData::DeviceClasses},
      Row{&CSpidData::DeviceSubClasses},
      Row{&CSpidData::ChannelTypes},
  };
};

CSpidData::CSpidData() {
  Members::construct(*this, "SPIDData");
  setListTags(ManufacturerIDs, DeviceClasses, DeviceSubClasses, ChannelTypes);
}

CSpidData::CSpidData(const CSpidData &rhs) : CSpidData() { *this = rhs; }
CSpidData::~CSpidData() = default;

CSpidData &CSpidData::operator=(const CSpidData &rhs) { return Members::copy(*this, rhs); }
void CSpidData::pushMembers() { Members::push(*this); }
long CSpidData::LoadFromFile(const char *name) { return CXMLFolder::LoadFromFile(name, nullptr); }

struct CSpidData2::Members : DocumentMembers<Members, CSpidData2, CSpidData> {
  static constexpr auto rows = std::tuple{
      Row{&CSpidData2::ManufacturerIDs2},
      Row{&CSpidData2::DeviceClasses2},
      Row{&CSpidData2::DeviceSubClasses2},
      Row{&CSpidData2::ChannelTypes2},
  };
};

CSpidData2::CSpidData2() {
  Members::construct(*this);
  setListTags(ManufacturerIDs2, DeviceClasses2, DeviceSubClasses2, ChannelTypes2);
}

CSpidData2::CSpidData2(const CSpidData2 &rhs) : CSpidData2() { *this = rhs; }
CSpidData2::~CSpidData2() = default;

CSpidData2 &CSpidData2::operator=(const CSpidData2 &rhs) { return Members::copy(*this, rhs); }
void CSpidData2::pushMembers() { Members::push(*this); }
