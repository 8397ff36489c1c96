/// \example edit_transceivers.cpp
/// Adds a transceiver to a file: a copy of another one under a new name and number.
///
///    edit_transceivers Types/StdXcvr.xml "Cordane 64" "My bench" 320

#include <cstdlib>
#include <iostream>
#include <kestrune/kestrune_xml.h>

namespace {

int edit(const char *file, const char *source, const char *name, int id) {
  CStdXcvr3 document;
  if (document.LoadFromFile(file, nullptr) < 0) { // the file alone: what a save would write into it
    std::cerr << kestrune::ReportText(document) << '\n';
    return 2;
  }
  CTransceivers3 &list = document.Transceivers3;
  const CTransceiver3 *const model = list.Find(source);
  if (model == nullptr || list.Find(name) != nullptr || list.FindByID(id) != nullptr) {
    std::cerr << (model == nullptr ? "there is no such transceiver\n" : "the name or the number is taken\n");
    return 1;
  }
  CTransceiver3 &added = *list.Add(name);
  added = *model; // all members, the name too
  added.Name = name;
  added.std_id = id;
  if (document.SaveToFile(nullptr, nullptr, true) < 0) { // under the name it was loaded from
    std::cerr << kestrune::ReportText(document) << '\n';
    return 2;
  }
  std::cout << list.size() << " transceivers, the last is " << list[list.Count() - 1]->Name << '\n';
  return 0;
}

} // namespace

int main(int argc, char **argv) {
  if (argc != 5)
    return 2;
  CoInitialize(nullptr);
  int status = 2;
  try {
    status = edit(argv[1], argv[2], argv[3], std::atoi(argv[4]));
  } catch (CKRXException *exception) { // a transceiver whose std_id is not a number
    std::cerr << exception->GetFormattedMessage() << '\n';
    exception->Delete();
  }
  CoUninitialize();
  return status;
}
