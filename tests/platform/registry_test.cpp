#include "tests/tables.h"

namespace {

/// Shows what a derived class may use.
struct Probe : CMacroString {
  using CMacroString::CMacroString, CMacroString::GetKestruneFolder;

  std::string hardwareFolder() {
    oMacros.RemoveAll();
    SetupDefaultMacros();
    const std::string folder(GetMacroValue(15).View());
    oMacros.RemoveAll();
    return folder;
  }
};

std::string utf16(std::string_view ascii, bool bigEndian = false) {
  std::string text = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : ascii)
    bigEndian ? text.append({'\0', c}) : text.append({c, '\0'});
  return text;
}

const std::string kOld = "REGEDIT4\r\n\r\n";
const std::string kKey = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune]\r\n";
const std::string kWow = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Kestrune]\r\n";
const std::string kName = "\"Kestrune Path\"=";
const std::string kNet = kName + "\"D:\\\\Net\"\r\n";
constexpr const char *kNone = "C:\\Kestrune";

class RegistryTest : public testing::Test {
protected:
  std::string folderFrom(std::string_view bytes) const {
    support::write(folder / "own.reg", bytes);
    return std::string(Probe(L"").GetKestruneFolder().View());
  }

  support::TempFolder folder;
  const support::Environment variable{"KESTRUNE_REGISTRY", (folder / "own.reg").c_str()};
};

TEST_F(RegistryTest, KeysInEachEncoding) {
  EXPECT_EQ(folderFrom(kOld + kKey + kNet), "D:\\Net");
  EXPECT_EQ(folderFrom("\xEF\xBB\xBF" + kKey + kNet), "D:\\Net");
  EXPECT_EQ(folderFrom(utf16(kKey + kNet)), "D:\\Net");
  EXPECT_EQ(folderFrom(utf16(kKey + kNet, true)), "D:\\Net");
  EXPECT_EQ(folderFrom("[hkey_local_machine\\software\\KESTRUNE]\n\"kestrune PATH\" = \"D:\\\\Net\""), "D:\\Net");
  EXPECT_EQ(folderFrom("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune] ; ]\n" + kNet), "D:\\Net");
  EXPECT_EQ(folderFrom(kKey + "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune\\x]\n" + kNet), kNone) << "a key below";
  EXPECT_EQ(folderFrom(kKey + kNet + "[-HKEY_LOCAL_MACHINE\\software]"), kNone);
  EXPECT_EQ(folderFrom(std::string(70000, '\n') + kKey + kNet), "D:\\Net");
  // The 32-bit view counts where the key itself is not there.
  EXPECT_EQ(folderFrom(kWow + kNet), "D:\\Net");
  EXPECT_EQ(folderFrom(kWow + kNet + kKey), kNone);
}

TEST_F(RegistryTest, ValuesInEachForm) {
  EXPECT_EQ(folderFrom(kKey + kName + R"("\"D:\\new\\\"")"), R"("D:\new\")");
  EXPECT_EQ(folderFrom(kKey + kNet + kName + "-\r\n"), kNone) << "removed";
  EXPECT_EQ(folderFrom(kKey + kNet + kName + "\"x\n" + kName + "hex:44,4g\n"), "D:\\Net") << "damaged lines";
  EXPECT_EQ(folderFrom(kKey + kName + "hex(2):44,00,3a,00,\\\r\n  5C,00,e9,00,00,00\r\n"), "D:\\\xC3\xA9");
  const std::string longest(249, 'x');
  EXPECT_EQ(folderFrom(kKey + kName + '"' + longest + '"'), longest);
  EXPECT_EQ(folderFrom(kKey + kName + '"' + longest + "x\""), kNone);
  support::expectTable("platform/registry-values.txt", 2, [this](const support::Cells &row) {
    const std::string version = row[0] == "4, marked" ? "\xEF\xBB\xBF" + kOld : row[0] == "4" ? kOld : "";
    return support::Cells{folderFrom(version + kKey + kName + row[1])};
  });
}

TEST_F(RegistryTest, TextsComeInTheCodePage) {
  const support::CodePage page(932);
  EXPECT_EQ(folderFrom(kKey + kName + "\"\xE8\xA1\xA8\\\\x\""), "\x95\\\\x") << "from UTF-8";
  EXPECT_EQ(folderFrom(kOld + kKey + kName + "\"\x95\\\\\\x\""), "\x95\\\\x") << "from bytes of the page";
}

TEST_F(RegistryTest, WhereTheFilesLie) {
  const std::string user = "[HKEY_CURRENT_USER\\Software\\Kestrune\\Plinthforge\\Folders]\n\"userHwFolder\"=";
  support::write(folder / "xdg/kestrune/registry.reg", user + "\"X:/xdg\"");
  support::write(folder / "home/.config/kestrune/registry.reg", user + "\"X:/home\"");
  const support::Environment none("KESTRUNE_REGISTRY", nullptr), home("HOME", (folder / "home").c_str());
  const auto folderWith = [](const std::string &config) {
    const support::Environment variable("XDG_CONFIG_HOME", config.c_str());
    return Probe(L"").hardwareFolder();
  };
  EXPECT_EQ(folderWith(folder / "xdg"), "X:\\xdg");
  EXPECT_EQ(folderWith("xdg"), "X:\\home") << "no absolute path";
}

} // namespace
