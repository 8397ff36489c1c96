// A program whose other headers define TRUE and FALSE as macros, as those of the platform do elsewhere.
#define TRUE 1
#define FALSE 0
#include <kestrune/kestrune_xml.h>

bool storesTruthValues() {
  CVorlanModel4 model;
  model.PTMSupported = TRUE;
  model.SharedClock = TRUE;
  model.SharedClock = FALSE;
  return model.PTMSupported.Compare("TRUE") == 0 && model.SharedClock.Compare("FALSE") == 0;
}
