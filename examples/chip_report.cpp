/// \example chip_report.cpp
/// Reports on the chip models of a family: their RAM, firmware and memories.
///
///    chip_report 4600

#include <cstdlib>
#include <iostream>
#include <kestrune/kestrune_xml.h>

namespace {

int report(int family) {
  using kestrune::Hex;
  CVorlanTyp4 chips;
  if (chips.LoadFromFile("$StdVorlanTyp$") < 0) { // with its add-ons Vorlan-1.xml, Vorlan-2.xml, ...
    std::cerr << kestrune::ReportText(chips) << '\n';
    return 2;
  }
  for (const CVorlanModel4 *model : chips.VorlanModels4) {
    if (model->Family() != family)
      continue;
    std::cout << model->Name << ": firmware " << model->minFWrelease << " to " << model->maxFWrelease << ", "
              << Hex(model->RAMend) - Hex(model->RAMstart) + 1 << " bytes of RAM\n";
    for (const CNVMemoryType *memory : model->NVMemoryTypes())
      std::cout << "  " << memory->Name() << '\n';
  }
  return 0;
}

} // namespace

int main(int argc, char **argv) {
  CoInitialize(nullptr); // without it no file can be read
  int status = 2;
  try {
    status = report(argc > 1 ? std::atoi(argv[1]) : 0);
  } catch (CKRXException *exception) { // a member whose text is not a number
    std::cerr << exception->GetFormattedMessage() << '\n';
    exception->Delete();
  }
  CoUninitialize();
  return status;
}
