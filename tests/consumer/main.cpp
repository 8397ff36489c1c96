#include <cstdio>
#include <cstdlib>
#include <kestrune/kestrune_xml.h>

// A program as a user of the installed library writes it: it reads the chip data file that its argument names, and
// catches the exceptions of the library under each of their types.

bool storesTruthValues();

namespace {

template <class Exception>
int subCodeOf(CVorlanModel4 &model) {
  try {
    model.CapacityModel();
  } catch (Exception *exception) {
    char message[128];
    exception->GetErrorMessage(message, sizeof message);
    exception->Delete();
    return CString(message).Find("[KRX#101]") > 0 ? 101 : -1;
  }
  return 0;
}

} // namespace

int main(int argc, char **argv) {
  if (argc != 2)
    return 2;
  CoInitialize(nullptr);
  CVorlanTyp4 document;
  const long result = document.LoadFromFile(argv[1]);
  CVorlanModel4 model;
  const bool caught = subCodeOf<CKRXException>(model) == 101 && subCodeOf<CKesException>(model) == 101 &&
                      subCodeOf<CException>(model) == 101;
  const bool stored = storesTruthValues();
  std::printf("%ld %d models, exceptions %s, truth values %s, %s\n", result, document.VorlanModels4.Count(),
              caught ? "caught" : "lost", stored ? "stored" : "lost",
              isLinkCompatible(7, 7) ? "compatible" : "not compatible");
  CoUninitialize();
  return result >= 0 && document.VorlanModels4.Count() > 0 && caught && stored ? EXIT_SUCCESS : EXIT_FAILURE;
}
