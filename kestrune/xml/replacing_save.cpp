#include "kestrune/xml/replacing_save.h"

#include "kestrune/platform/file_saving.h"

long kestrune::SaveReplacing(CXMLFolder &folder, const char *name, const char *base, bool overwrite) {
  const platform::SaveWayScope scope(platform::SaveWay::kReplacing);
  return folder.SaveToFile(name, base, overwrite);
}
