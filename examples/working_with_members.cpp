/// \example working_with_members.cpp
/// What the page docs/working-with-members.md shows, in its order.
///
///    working_with_members installation/Types

#include <algorithm>
#include <iostream>
#include <kestrune/kestrune_xml.h>
#include <string>

namespace {

void showTexts(const CVorlanModel4 &model) {
  std::cout << model.Name << " needs firmware " << model.minFWrelease << '\n';
  std::string_view name = model.Name; // valid until the text changes
  if (model.Name == std::string("Vorlan 1802"))
    std::cout << name.size() << " letters\n";
}

void showNumbers(const CVorlanModel4 &model) {
  std::cout << model.ModelNum << " is " << kestrune::Number(model.ModelNum) << '\n'; // octal: it begins with 0
  const unsigned int bytes = kestrune::Hex(model.RAMend) - kestrune::Hex(model.RAMstart) + 1;
  std::cout << bytes << " bytes of RAM, family " << model.Family() << '\n';
}

void showBadText(CVorlanModel4 &model) {
  const CString before = model.ROMend;
  model.ROMend = "lots";
  try {
    std::cout << kestrune::Hex(model.ROMend) << '\n';
  } catch (CKRXException *exception) {
    std::cout << exception->GetFormattedMessage() << '\n';
    exception->Delete();
  }
  model.ROMend = before;
}

void showTruth(CVorlanModel4 &model) {
  if (model.PTMSupported) // TRUE, in any case
    std::cout << "supports PTM\n";
  model.PTMSupported = true;                             // the text TRUE
  std::cout << "! says " << !model.PTMSupported << '\n'; // 1: it asks whether the text is TRUE
}

void showLoops(const CVorlanTyp4 &chips) {
  for (const CVorlanModel4 *model : chips.VorlanModels4) {
    if (model->NVMemoryTypes().size() > 3)
      std::cout << model->Name << ": " << model->NVMemoryTypes().size() << " memories\n";
  }
  const auto wide = std::ranges::count_if(
      chips.VorlanModels4, [](const CVorlanModel4 *model) { return kestrune::Hex(model->RAMend) > 0x7FFF; });
  std::cout << wide << " with RAM above 0x7FFF\n";
}

void showModified(CVorlanTyp4 &chips) {
  CVorlanModel4 &model = *chips.VorlanModels4[0];
  model.ImageName = CString(model.ImageName); // the same text
  std::cout << "after the same text: " << +chips.GetModified() << '\n';
  model.ImageName = "V1802C";
  std::cout << "after another text: " << +chips.GetModified() << '\n';
}

/// Edits the one file, whatever lies beside it.
long edit(const CString &file) {
  CVorlanTyp4 chips;
  long result = chips.LoadFromFile(file, nullptr); // this file and nothing else
  if (result < 0)
    return result;
  if (CVorlanModel4 *model = chips.VorlanModels4.FindByName("Vorlan 1802"))
    model->maxFWrelease = "5";
  return chips.SaveToFile(nullptr, nullptr, true);
}

} // namespace

int main(int, char **argv) {
  CoInitialize(nullptr);
  const CString file = CString(argv[1]) + "/Vorlan.xml";
  CVorlanTyp4 chips;
  int status = 1;
  if (chips.LoadFromFile(file, nullptr) >= 0 && edit(file) >= 0) {
    CVorlanModel4 &model = *chips.VorlanModels4.FindByName("Vorlan 1802");
    showTexts(model);
    showNumbers(model);
    showBadText(model);
    showTruth(model);
    showLoops(chips);
    chips.PutModified(0);
    showModified(chips);
    status = 0;
  } else {
    std::cerr << kestrune::ReportText(chips) << '\n';
  }
  CoUninitialize();
  return status;
}
