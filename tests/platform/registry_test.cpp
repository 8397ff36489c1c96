#include "tests/test_support.h"

namespace {

/// Shows what a derived class may use.
struct Probe : CMacroString {
  Probe() : CMacroString(L"") {}
  using CMacroString::GetKestruneFolder;

  std::string hardwareFolder() {
    oMacros.RemoveAll();
    SetupDefaultMacros();
    const std::string folder(GetMacroValue(FindMacro("$USERHWTFOLDER$")).View());
    oMacros.RemoveAll();
    return folder;
  }
};

std::string utf16(std::string_view ascii, bool bigEndian = false) {
  std::string text = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : ascii)
    text.append({bigEndian ? '\0' : c, bigEndian ? c : '\0'});
  return text;
}

using namespace std::string_literals;

const std::string kHead = "Windows Registry Editor Version 5.00\r\n\r\n";
const std::string kOld = "REGEDIT4\r\n\r\n";
const std::string kRoot = "[HKEY_LOCAL_MACHINE\\SOFTWARE";
const std::string kKey = kRoot + "\\Kestrune]\r\n";
const std::string kWow = kRoot + "\\Wow6432Node\\Kestrune]\r\n";
const std::string kName = "\"Kestrune Path\"=";
const std::string kNet = kName + "\"D:\\\\Net\"\r\n";
constexpr const char *kNone = "C:\\Kestrune";

struct Row {
  const char *what;
  std::string bytes;
  std::string folder = "D:\\Net";
};

class RegistryTest : public testing::Test {
protected:
  std::string folderFrom(std::string_view bytes) const {
    support::write(file, bytes);
    return std::string(Probe().GetKestruneFolder().View());
  }

  support::TempFolder folder;
  const std::string file = folder / "own.reg";
  const support::Environment variable{"KESTRUNE_REGISTRY", file.c_str()};
};

TEST_F(RegistryTest, FilesInEachEncoding) {
  const Row rows[] = {
      {"the older format", kOld + kKey + kNet},
      {"UTF-8 with a mark", "\xEF\xBB\xBF" + kKey + kNet},
      {"UTF-16", utf16(kHead + kKey + kNet)},
      {"UTF-16, the other way round", utf16(kHead + kKey + kNet, true)},
      {"UTF-16 with half a character", utf16("[") + "\x34\xD8\n\0\n\0"s + utf16(kKey + kNet).substr(2) + "x"},
      {"UTF-16 with a pair", utf16(kKey + kName).append("\"\0\x3D\xD8\x00\xDE\"\0\n\0"s), "\xF0\x9F\x98\x80"},
      {"nothing", "", kNone},
      {"a byte that is no UTF-8", kKey + kName + "\"\xE9\"\n", kNone},
  };
  for (const Row &row : rows)
    EXPECT_EQ(folderFrom(row.bytes), row.folder) << row.what;
}

TEST_F(RegistryTest, KeysAndTheirRemoval) {
  const Row rows[] = {
      {"names in another case", "[hkey_local_machine\\software\\KESTRUNE]\n\"kestrune PATH\" = \"D:\\\\Net\""},
      {"a comment behind the key", kRoot + "\\Kestrune] ; ]\n" + kNet},
      {"removal of a key below", kKey + kNet + "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune\\x]"},
      {"removal", kKey + kNet + "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune]\r\n", kNone},
      {"removal of a key above", kKey + kNet + "[-HKEY_LOCAL_MACHINE\\software]\n" + kName + "\"x\"", kNone},
      {"a key below", kKey + kRoot + "\\Kestrune\\x]\n" + kNet, kNone},
      {"the other root", "[HKEY_CURRENT_USER\\SOFTWARE\\Kestrune]\n" + kNet, kNone},
      {"a longer name", kRoot + "\\Kestrune]x]\n" + kNet, kNone},
      // The 32-bit view counts where the key itself is not there.
      {"the 32-bit view", kWow + kNet},
      {"both views", kWow + kName + "\"x\"\n" + kKey + kNet},
      {"the 32-bit view and an empty key", kWow + kNet + kKey, kNone},
  };
  for (const Row &row : rows)
    EXPECT_EQ(folderFrom(row.bytes), row.folder) << row.what;
}

TEST_F(RegistryTest, ValuesInEachForm) {
  const std::string longest(249, 'x');
  const Row rows[] = {
      {"damaged lines after it", kKey + kNet + kName + "\"x\n" + kName + "hex\n" + kName},
      {"an odd digit after it", kKey + kNet + kName + "hex:44,4g\n"},
      {"no digit after it", kKey + kNet + kName + "hex:44,,45\n"},
      {"more behind it", kKey + kName + "\"D:\\\\Net\"x\r\n", kNone},
      {"removal", kKey + kNet + kName + "-\r\n", kNone},
      {"other names", kKey + "@=\"d\"\n\"Kestrune\"=\"x\"\n\"Kestrune Path2\"=\"x\"\n", kNone},
      {"a number", kKey + kNet + kName + "dword:00000041\n", kNone},
      {"a longer number", kKey + kNet + kName + "hex(b):41,00,00,00,00,00,00,00\n", kNone},
      {"escapes, and `\\` that are none", kKey + kName + R"("\"D:\new\\\"")", R"("D:\new\")"},
      {"a text up to a zero", kKey + kName + "\"ab\0cd\"\n"s, "ab"},
      {"the longest text", kKey + kName + "\"" + longest + "\"", longest},
      {"a longer text", kKey + kName + "\"" + longest + "x\"", kNone},
      {"wide bytes", kKey + kName + "hex(2):44,00,3a,00,\\\r\n  5C,00 , e9,00,0,0,41,00\r\n", "D:\\\xC3\xA9"},
      {"wide bytes, the last one half", kKey + kName + "hex(1):41,00,42\n", "A"},
      {"bytes", kKey + kName + "hex:44,3a,5c,4e,00,4f ; c\n", "D:\\N"},
      {"bytes of the older format", kOld + kKey + kName + "hex(2):44,3a,5c,4e,00,4f\n", "D:\\N"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(folderFrom(row.bytes), row.folder) << row.what;
}

TEST_F(RegistryTest, TextsComeInTheCodePage) {
  const support::CodePage page(932);
  const Row rows[] = {
      {"UTF-8", kKey + kName + "\"\xE8\xA1\xA8\\\\x\"", "\x95\\\\x"},
      {"UTF-8 that the page lacks", kKey + kName + "\"\xC3\xA9\"", "?"},
      {"older format", kOld + kKey + kName + "\"\x95\\\\\\x\"", "\x95\\\\x"},
      {"older format, bytes that would be UTF-8", kOld + kKey + kName + "\"\xC3\xA9\"", "\xC3\xA9"},
      {"hex(2)", kHead + kKey + kName + "hex(2):68,88", "\x95\\"},
      {"hex(2) in the older format", kOld + kKey + kName + "hex(2):95,5c", "\x95\\"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(folderFrom(row.bytes), row.folder) << row.what;
}

// A file that is cut off has the values whose lines are whole, and one with any byte changed does no harm.
TEST_F(RegistryTest, DamagedFiles) {
  const std::string line = kName + "hex(2):44,00,\\\r\n  3a,00,5c,00\r\n";
  const std::string whole = kHead + kKey + line + "\"x\"=\"y\"\r\n";
  const std::string last = line.substr(0, line.size() - 3); // up to the last digit but one: `0` is a byte too
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const std::size_t inLine = size - std::min(size, kHead.size() + kKey.size());
    // A list may end behind any byte, so only where it has none is it known to have no text.
    const std::string found = folderFrom(utf16(whole.substr(0, size)));
    const bool mustBeThere = inLine >= last.size();
    if (mustBeThere || inLine < kName.size() + 7) {
      EXPECT_EQ(found, mustBeThere ? "D:\\" : kNone) << size;
    }
  }
  constexpr std::string_view kChanges{"\"\\[\n\0]\xFF", 7};
  for (const std::string &text : {utf16(whole), whole, kOld + whole})
    for (std::size_t i = 0; i < text.size(); ++i) {
      std::string changed = text;
      changed[i] = kChanges[i % kChanges.size()];
      EXPECT_LT(folderFrom(changed).size(), 250U) << i;
    }
}

TEST_F(RegistryTest, WhereTheFilesLie) {
  const std::string user = "[HKEY_CURRENT_USER\\Software\\Kestrune\\Plinthforge\\Folders]\n\"userHwFolder\"=";
  support::write(folder / "xdg/kestrune/registry.reg", user + "\"X:\\\\xdg\"");
  support::write(folder / "home/.config/kestrune/registry.reg", user + "\"X:\\\\home\"");
  const std::string fallBack = "C:\\tk\\Source\\Templates\\Hardware", xdg = folder / "xdg", home = folder / "home";
  const struct {
    const char *replacement; // KESTRUNE_REGISTRY
    const char *xdg;         // XDG_CONFIG_HOME
    const char *home;        // HOME
    std::string folder;
  } rows[] = {
      {nullptr, xdg.c_str(), home.c_str(), "X:\\xdg"},
      {nullptr, nullptr, home.c_str(), "X:\\home"},
      {nullptr, "xdg", home.c_str(), "X:\\home"}, // no absolute path
      {nullptr, nullptr, nullptr, fallBack},
      {file.c_str(), xdg.c_str(), home.c_str(), fallBack},
      {"/dev/zero", xdg.c_str(), home.c_str(), fallBack},
  };
  for (const auto &row : rows) {
    const support::Environment replacement("KESTRUNE_REGISTRY", row.replacement);
    const support::Environment configFolder("XDG_CONFIG_HOME", row.xdg), homeFolder("HOME", row.home);
    EXPECT_EQ(Probe().hardwareFolder(), row.folder)
        << testing::PrintToString(row.replacement) << " " << testing::PrintToString(row.xdg);
  }
}

} // namespace
