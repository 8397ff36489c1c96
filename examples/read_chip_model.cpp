/// \example read_chip_model.cpp
/// Reads one chip model of the standard chip data file: its memory map, firmware range and memories.
///
///    read_chip_model "Vorlan 4608-PX"

#include <iostream>
#include <kestrune/kestrune_xml.h>

namespace {

void print(CVorlanModel4 &model) {
  std::cout << model.Name.View() << ", family " << model.Family() << '\n'
            << "  firmware  " << model.minFWrelease.View() << " to " << model.maxFWrelease.View() << '\n'
            << "  ROM       up to " << model.ROMend.View() << '\n'
            << "  EEPROM    " << model.EEstart.View() << " to " << model.EEend.View() << '\n'
            << "  RAM       " << model.RAMstart.View() << " to " << model.RAMend.View() << '\n';
  CNVMemoryTypes &memories = model.NVMemoryTypes();
  for (int i = 0; i < memories.Count(); ++i)
    std::cout << "  memory    " << memories[i]->DriverKey() << ": " << memories[i]->Name() << '\n';
}

int run(const char *name) {
  CVorlanTyp4 document;
  const long result = document.LoadFromFile("$StdVorlanTyp$"); // with its add-ons Vorlan-1.xml, Vorlan-2.xml, ...
  if (result < 0) {
    std::cerr << "the chip data cannot be read: 0x" << std::hex << kestrune::platform::ResultBits(result) << '\n';
    return 2;
  }
  CVorlanModel4 *const model = document.VorlanModels4.FindByName(name);
  if (model == nullptr) {
    std::cerr << "there is no model '" << name << "'\n";
    return 1;
  }
  print(*model); // an accessor throws where a text is not a number
  return 0;
}

} // namespace

int main(int argc, char **argv) {
  CoInitialize(nullptr); // without it no file can be read
  int status = 2;
  try {
    status = run(argc > 1 ? argv[1] : "");
  } catch (CKRXException *exception) {
    std::cerr << exception->GetFormattedMessage() << '\n';
    exception->Delete();
  }
  CoUninitialize();
  return status;
}
