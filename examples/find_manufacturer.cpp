/// \example find_manufacturer.cpp
/// Finds a manufacturer by its number or its name.
///
///    find_manufacturer 9        find_manufacturer "halvern drives"

#include <iostream>
#include <kestrune/kestrune_xml.h>

namespace {

int run(const char *wanted) {
  CSpidData2 document;
  if (document.LoadFromFile("$StdSpidData$") < 0) {
    std::cerr << "the identity data cannot be read\n";
    return 2;
  }
  CXMLPairCollection &manufacturers = document.ManufacturerIDs2;
  const CXMLPair *found = manufacturers.FindByNumber(wanted); // compared as text: 9 is not 09
  if (found == nullptr)
    found = manufacturers.Find(wanted); // in any case of letters
  if (found == nullptr) {
    std::cerr << "there is no manufacturer '" << wanted << "'\n";
    return 1;
  }
  std::cout << found->Number << "  " << found->Name << '\n';
  return 0;
}

} // namespace

int main(int argc, char **argv) {
  CoInitialize(nullptr);
  const int status = run(argc > 1 ? argv[1] : "");
  CoUninitialize();
  return status;
}
