#include "benchmarks/contestants.h"

#include <cstring>
#include <expat.h>
#include <fstream>

int ExpatPass::load(const std::string &path) {
  constexpr int kReadSize = 64 << 10;
  const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate(nullptr), XML_ParserFree);
  int count = 0;
  XML_SetUserData(parser.get(), &count);
  XML_SetElementHandler(
      parser.get(),
      [](void *found, const char *name, const char **) {
        *static_cast<int *>(found) += std::strcmp(name, "VorlanModel") == 0 ? 1 : 0;
      },
      [](void *, const char *) {});
  XML_SetCharacterDataHandler(parser.get(), [](void *, const char *, int) {});

  std::ifstream file(path, std::ios::binary);
  while (file) {
    void *const buffer = XML_GetBuffer(parser.get(), kReadSize);
    if (buffer == nullptr)
      return 0;
    file.read(static_cast<char *>(buffer), kReadSize);
    if (XML_ParseBuffer(parser.get(), static_cast<int>(file.gcount()), file.eof() ? 1 : 0) != XML_STATUS_OK)
      return 0;
  }
  return count;
}
