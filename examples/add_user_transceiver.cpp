/// \example add_user_transceiver.cpp
/// Adds a transceiver to the user's file, with the parameters of one in the standard file.
///
///    add_user_transceiver Types/UserXcvr.xml "Cordane 64" "My bench" 320

#include <cstdlib>
#include <iostream>
#include <kestrune/kestrune_xml.h>

namespace {

int run(const char *userFile, const char *model, const char *name, int id) {
  CFilename standardFile;
  standardFile = userFile;
  standardFile = standardFile.GetPath() + "StdXcvr.xml";
  CStdXcvr3 user;     // a file of the name UserXcvr is loaded alone,
  CStdXcvr3 standard; // any other together with the UserXcvr.xml in its folder
  if (user.LoadFromFile(userFile) < 0 || standard.LoadFromFile(standardFile) < 0) {
    std::cerr << "the files cannot be read\n";
    return 2;
  }
  // On a load the standard list wins: what it has by name or number would be left out of the user's.
  CTransceivers3 &known = standard.Transceivers3;
  const bool isNew = known.Find(name) == nullptr && known.FindByID(id) == nullptr;
  const CTransceiver3 *const source = known.Find(model);
  CTransceiver3 *const added = isNew && source != nullptr ? user.Transceivers3.Add(name) : nullptr;
  if (added == nullptr) {
    std::cerr << (source != nullptr ? "the name or the number is taken\n" : "there is no such model\n");
    return 1;
  }
  *added = *source; // all members, the name too
  added->Name = name;
  added->std_id = id;

  const long result = user.SaveToFile(nullptr, nullptr, true); // under the name it was loaded from
  if (result < 0) {
    std::cerr << "the user's file cannot be written: 0x" << std::hex << kestrune::platform::ResultBits(result) << '\n';
    return 2;
  }
  standard.LoadFromFile(standardFile);
  std::cout << known.Count() << " transceivers, the last is " << known[known.Count() - 1]->Name.View() << '\n';
  return 0;
}

} // namespace

int main(int argc, char **argv) {
  if (argc != 5)
    return 2;
  CoInitialize(nullptr);
  int status = 2;
  try {
    status = run(argv[1], argv[2], argv[3], std::atoi(argv[4]));
  } catch (CKRXException *exception) { // a transceiver whose std_id is not a number
    std::cerr << exception->GetFormattedMessage() << '\n';
    exception->Delete();
  }
  CoUninitialize();
  return status;
}
