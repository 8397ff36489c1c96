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
  EXPECT_EQ(folderFrom(kOld + kKey + kNet), "D:\\Net");
  EXPECT_EQ(folderFrom("\xEF\xBB\xBF" + kKey + kNet), "D:\\Net");
  EXPECT_EQ(folderFrom(utf16(kHead + kKey + kNet)), "D:\\Net");
  EXPECT_EQ(folderFrom(utf16(kHead + kKey + kNet, true)), "D:\\Net");
  EXPECT_EQ(folderFrom(utf16("[") + "\x34\xD8\n\0\n\0"s + utf16(kKey + kNet).substr(2) + "x"), "D:\\Net")
      << "half a character in UTF-16";
  EXPECT_EQ(folderFrom(utf16(kKey + kName).append("\"\0\x3D\xD8\x00\xDE\"\0\n\0"s)), "\xF0\x9F\x98\x80");
  EXPECT_EQ(folderFrom(""), kNone);
  EXPECT_EQ(folderFrom(kKey + kName + "\"\xE9\"\n"), kNone) << "no UTF-8";
}

TEST_F(RegistryTest, KeysAndTheirRemoval) {
  EXPECT_EQ(folderFrom("[hkey_local_machine\\software\\KESTRUNE]\n\"kestrune PATH\" = \"D:\\\\Net\""), "D:\\Net");
  EXPECT_EQ(folderFrom(kRoot + "\\Kestrune] ; ]\n" + kNet), "D:\\Net") << "a comment behind the key";
  EXPECT_EQ(folderFrom(kRoot + "\\Kestrune]x]\n" + kNet), kNone) << "a longer name";
  EXPECT_EQ(folderFrom(kKey + kRoot + "\\Kestrune\\x]\n" + kNet), kNone) << "a key below";
  EXPECT_EQ(folderFrom("[HKEY_CURRENT_USER\\SOFTWARE\\Kestrune]\n" + kNet), kNone);
  EXPECT_EQ(folderFrom(kKey + kNet + "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune\\x]"), "D:\\Net");
  EXPECT_EQ(folderFrom(kKey + kNet + "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Kes]"), "D:\\Net");
  EXPECT_EQ(folderFrom(kKey + kNet + "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune]"), kNone);
  EXPECT_EQ(folderFrom(kKey + kNet + "[-HKEY_LOCAL_MACHINE\\software]\n" + kName + "\"x\""), kNone);
  // The 32-bit view counts where the key itself is not there.
  EXPECT_EQ(folderFrom(kWow + kNet), "D:\\Net");
  EXPECT_EQ(folderFrom(kWow + kName + "\"x\"\n" + kKey + kNet), "D:\\Net");
  EXPECT_EQ(folderFrom(kWow + kNet + kKey), kNone);
}

TEST_F(RegistryTest, ValuesInEachForm) {
  EXPECT_EQ(folderFrom(kKey + kName + R"("\"D:\new\\\"")"), R"("D:\new\")") << "escapes, and `\\` that are none";
  EXPECT_EQ(folderFrom(kKey + kName + "\"D:\\\\Net\"x\r\n"), kNone) << "more behind it";
  EXPECT_EQ(folderFrom(kKey + kNet + kName + "-\r\n"), kNone);
  EXPECT_EQ(folderFrom(kKey + kNet + kName + "dword:00000041\n"), kNone);
  EXPECT_EQ(folderFrom(kKey + kNet + kName + "hex(b):41,00,00,00,00,00,00,00\n"), kNone);
  EXPECT_EQ(folderFrom(kKey + "@=\"d\"\n\"Kestrune\"=\"x\"\n\"Kestrune Path2\"=\"x\"\n"), kNone);
  // A damaged line changes nothing.
  EXPECT_EQ(folderFrom(kKey + kNet + kName + "\"x\n" + kName + "hex\n" + kName), "D:\\Net");
  EXPECT_EQ(folderFrom(kKey + kNet + kName + "hex:44,4g\n"), "D:\\Net");
  EXPECT_EQ(folderFrom(kKey + kNet + kName + "hex:44,,45\n"), "D:\\Net");
  EXPECT_EQ(folderFrom(kKey + kNet + kName + "hex:445\n"), "D:\\Net");
  EXPECT_EQ(folderFrom(kKey + kName + "hex(2):44,00,3a,00,\\\r\n  5C,00 , e9,00,0,0,41,00\r\n"), "D:\\\xC3\xA9");
  EXPECT_EQ(folderFrom(kKey + kName + "hex(1):41,00,42\n"), "A");
  EXPECT_EQ(folderFrom(kKey + kName + "hex:44,3a,5c,4e,00,4f ; c\n"), "D:\\N");
  EXPECT_EQ(folderFrom(kOld + kKey + kName + "hex(2):44,3a,5c,4e,00,4f\n"), "D:\\N");
  EXPECT_EQ(folderFrom(kKey + kName + "\"ab\0cd\"\n"s), "ab");
  const std::string longest(249, 'x');
  EXPECT_EQ(folderFrom(kKey + kName + "\"" + longest + "\""), longest);
  EXPECT_EQ(folderFrom(kKey + kName + "\"" + longest + "x\""), kNone);
}

TEST_F(RegistryTest, TextsComeInTheCodePage) {
  const support::CodePage page(932);
  EXPECT_EQ(folderFrom(kKey + kName + "\"\xE8\xA1\xA8\\\\x\""), "\x95\\\\x") << "from UTF-8";
  EXPECT_EQ(folderFrom(kKey + kName + "\"\xC3\xA9\""), "?") << "UTF-8 that the page lacks";
  EXPECT_EQ(folderFrom(kOld + kKey + kName + "\"\x95\\\\\\x\""), "\x95\\\\x") << "from bytes of the page";
  EXPECT_EQ(folderFrom(kOld + kKey + kName + "\"\xC3\xA9\""), "\xC3\xA9") << "though they would be UTF-8";
  EXPECT_EQ(folderFrom(kHead + kKey + kName + "hex(2):68,88"), "\x95\\");
  EXPECT_EQ(folderFrom(kOld + kKey + kName + "hex(2):95,5c"), "\x95\\");
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
  const std::string xdg = folder / "xdg", home = folder / "home";
  const auto folderWith = [](const char *replacement, const char *config, const char *homeFolder) {
    const support::Environment first("KESTRUNE_REGISTRY", replacement);
    const support::Environment second("XDG_CONFIG_HOME", config), third("HOME", homeFolder);
    return Probe().hardwareFolder();
  };
  constexpr const char *kFallBack = "C:\\tk\\Source\\Templates\\Hardware";
  EXPECT_EQ(folderWith(nullptr, xdg.c_str(), home.c_str()), "X:\\xdg");
  EXPECT_EQ(folderWith(nullptr, nullptr, home.c_str()), "X:\\home");
  EXPECT_EQ(folderWith(nullptr, "xdg", home.c_str()), "X:\\home") << "no absolute path";
  EXPECT_EQ(folderWith(nullptr, nullptr, nullptr), kFallBack);
  EXPECT_EQ(folderWith(file.c_str(), xdg.c_str(), home.c_str()), kFallBack);
  EXPECT_EQ(folderWith("/dev/zero", xdg.c_str(), home.c_str()), kFallBack);
}

} // namespace
