// A record, a list and a document of one's own on the persistence classes.
//   own_record made/stations.xml

#include <fstream>
#include <iostream>
#include <kestrune/library/kestrune_xml.h>
#include <kestrune/xml/member_list.h>

namespace {
struct Station : CXMLFolder {
  Station() { Station::Init(); }
  Station(const Station &rhs) : Station() { *this = rhs; }
  Station &operator=(const Station &rhs) {
    CXMLPersistent::operator=(rhs);
    MemberList::copy(*this, rhs), pushMembers();
    return *this;
  }
  void Init() override { PutTag("Station"), MemberList::init(*this), pushMembers(); }
  void pushMembers() override { m_members.clear(), MemberList::append(*this); }
  CString Key() const override { return Name; }
  CXMLAttribute Name;
  CXMLHexElement Address;
  template <class Visit>
  static constexpr void forEachMember(Visit visit) { // in the order of the file
    visit(&Station::Name, "Name");
    visit(&Station::Address, "Address", "0x0");
  }
};
static_assert(sizeof(Station) == sizeof(CXMLFolder) + MemberList::size<Station>(), "a member is not listed");

struct Stations : CXMLCollectionFolder {
  Stations() { setTags("Stations", "Station", "Name"); }
  Stations(const Stations &rhs) : Stations() { *this = rhs; }
  Stations &operator=(const Stations &rhs) {
    assignCollection<Station>(rhs);
    return *this;
  }
  Station *Add(const char *name) { return addKeyed<Station>(name, &Station::Name); }
  CXMLFolder *NewFolder() override { return new Station; } // the list takes it over
};
struct Plant : CXMLTopLevelFolder {
  Plant() { PutTag("Plant"), Plant::pushMembers(); }
  Plant(const Plant &) = delete;
  void pushMembers() override { m_members = {&Contents, &List}; }
  Stations List;
};
} // namespace

int main(int, char **argv) {
  CoInitialize(nullptr);
  Plant plant, again;
  plant.Contents.CreationDate = "0"; // of itself it is the time of construction
  plant.List.Add("Pump 3")->Address = 255;
  const bool done = plant.SaveToFile(argv[1], nullptr, true) >= 0 && again.LoadFromFile(argv[1], nullptr) >= 0;
  if (done)
    std::cout << again.List.FindItem("PUMP 3")->Key() << '\n' << std::ifstream(argv[1]).rdbuf();
  CoUninitialize();
  return done ? 0 : 1;
}
