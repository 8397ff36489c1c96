/// \example own_record.cpp
/// A program's own record, list and document on the persistence classes.
///
///    own_record made/stations.xml

#include <fstream>
#include <iostream>
#include <kestrune/kestrune_xml.h>

namespace {
struct Station : CXMLFolder {
  Station();
  Station(const Station &rhs) : Station() { *this = rhs; }
  Station &operator=(const Station &rhs);
  void Init() override;
  void pushMembers() override;
  CString Key() const override { return Name; }
  CXMLAttribute Name;
  CXMLHexElement Address;
  struct Members;
};
struct Station::Members : RecordMembers<Members, Station> {
  static constexpr auto rows = std::tuple{
      // in the order of the file
      Row{&Station::Name, "Name"},
      Row{&Station::Address, "Address", "0x0"},
  };
};
Station::Station() { Members::construct(*this, "Station"); }
Station &Station::operator=(const Station &rhs) { return Members::copy(*this, rhs); }
void Station::Init() { Members::init(*this); }
void Station::pushMembers() { Members::push(*this); }

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
  Plant();
  Plant(const Plant &) = delete;
  void pushMembers() override;
  Stations List;
  struct Members;
};
struct Plant::Members : DocumentMembers<Members, Plant> {
  static constexpr auto rows = std::tuple{Row{&Plant::List}};
};
Plant::Plant() { Members::construct(*this, "Plant"); }
void Plant::pushMembers() { Members::push(*this); }
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
