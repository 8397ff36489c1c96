// Any bytes as the registry file. A value that is found is a text that fits its buffer, and a buffer that is too small
// stays unchanged. A UTF-8 file gives the same values with a byte order mark, and in UTF-16 of either byte order.

#include "fuzz/fuzz_support.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/registry.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace {

using kestrune::platform::ConvertEncoding;

struct Value {
  HKEY root;
  const char *key;
  const char *name;
};
const Value kValues[] = {
    {HKEY_LOCAL_MACHINE, "SOFTWARE\\Kestrune", "Kestrune Path"},
    {HKEY_CURRENT_USER, "Software\\Kestrune\\Plinthforge\\Folders", "userHwFolder"},
    {HKEY_LOCAL_MACHINE, "SOFTWARE\\Kestrune", ""},
    {HKEY_LOCAL_MACHINE, "a\\b", nullptr},
};

std::optional<std::string> lookUp(const Value &value) {
  HKEY key = nullptr;
  const long opened = RegOpenKeyExA(value.root, value.key, 0, KEY_READ, &key);
  Require(opened == ERROR_SUCCESS || opened == ERROR_FILE_NOT_FOUND, "a key is there or it is not");
  if (opened != ERROR_SUCCESS)
    return std::nullopt;
  std::optional<std::string> text;
  DWORD size = 0;
  unsigned char untouched = 'x';
  const long result = RegQueryValueExA(key, value.name, nullptr, nullptr, &untouched, &size);
  Require(result == ERROR_MORE_DATA || result == ERROR_FILE_NOT_FOUND, "no text fits into nothing");
  Require(untouched == 'x', "a buffer that is too small stays as it was");
  if (result == ERROR_MORE_DATA) {
    std::vector<unsigned char> buffer(size);
    const DWORD needed = size;
    Require(RegQueryValueExA(key, value.name, nullptr, nullptr, buffer.data(), &size) == ERROR_SUCCESS,
            "a text fits into the room that it asked for");
    Require(size == needed && std::find(buffer.begin(), buffer.end(), 0) == buffer.end() - 1,
            "a text ends with its one terminator");
    text.emplace(buffer.begin(), buffer.end() - 1);
  }
  Require(RegCloseKey(key) == ERROR_SUCCESS, "a key can be closed");
  return text;
}

std::vector<std::optional<std::string>> lookUpAll(const Scratch &scratch, const std::string &file) {
  scratch.write("own.reg", file);
  std::vector<std::optional<std::string>> texts;
  for (const Value &value : kValues)
    texts.push_back(lookUp(value));
  return texts;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
  static const Scratch scratch;
  ::setenv("KESTRUNE_REGISTRY", scratch.path("own.reg").c_str(), 1);
  const std::string input(reinterpret_cast<const char *>(data), size);
  kestrune::platform::SetCodePage(932);
  lookUpAll(scratch, input);

  kestrune::platform::SetCodePage(kestrune::platform::kUtf8);
  const auto texts = lookUpAll(scratch, input);
  constexpr const char *kUtf8Mark = "\xEF\xBB\xBF";
  std::string little, big;
  if (input.starts_with(kUtf8Mark) || !kestrune::platform::IsValidUtf8(input) ||
      !ConvertEncoding(input, "UTF-8", "UTF-16LE", little) || !ConvertEncoding(input, "UTF-8", "UTF-16BE", big))
    return 0;
  Require(lookUpAll(scratch, kUtf8Mark + input) == texts, "a file says the same with a mark");
  Require(lookUpAll(scratch, "\xFF\xFE" + little) == texts, "a file says the same in UTF-16");
  Require(lookUpAll(scratch, "\xFE\xFF" + big) == texts, "a file says the same in UTF-16, high bytes first");
  return 0;
}
