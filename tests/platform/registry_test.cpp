#include "tests/test_support.h"

namespace {

/// Shows what a derived class may use.
struct Probe : CMacroString {
  Probe() : CMacroString(L"") {}
  using CMacroString::FindMacro;
  using CMacroString::GetKestruneFolder;
  using CMacroString::GetMacroValue;

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

const std::string kHead = "Windows Registry Editor Version 5.00\r\n\r\n";
const std::string kOld = "REGEDIT4\r\n\r\n";
const std::string kKey = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune]\r\n";
const std::string kName = "\"Kestrune Path\"=";
const std::string kNet = kName + "\"D:\\\\Net\"\r\n";
const std::string kWow = "[HKEY_LOCAL_MACHINE\\Software\\Wow6432Node\\Kestrune]\r\n";
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

TEST_F(RegistryTest, OddFiles) {
  using namespace std::string_literals;
  const std::string max(249, 'x');
  const auto lead = [this](const std::string &expected, const std::vector<std::string> &files) {
    for (const std::string &bytes : files)
      EXPECT_EQ(folderFrom(bytes), expected) << testing::PrintToString(bytes);
  };
  lead("D:\\Net",
       {kHead + kKey + kNet, "\xEF\xBB\xBF" + kKey + kNet, utf16(kHead + kKey + kNet), utf16(kHead + kKey + kNet, true),
        utf16("[") + "\x34\xD8\n\0\n\0"s + utf16(kKey + kNet).substr(2) + "x", kOld + kKey + kNet,
        "x\n[hkey_local_machine\\software\\KESTRUNE]\n\"kestrune PATH\" = \"D:\\\\Net\"",
        kKey + kNet + kName + "\"x\n" + kName + "hex:4g\n" + kName + "hex:445\n" + kName + "hex\n" + kName,
        kKey + kName + "\"a\"\n[HKEY_LOCAL_MACHINE]\n" + kName + "\"c\"\n" + kKey + kNet,
        kKey + kNet + "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Kes]\n[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune\\x]", kWow + kNet,
        kWow + kName + "\"x\"\n" + kKey + kNet, "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune] ; ]\n" + kNet,
        kKey + kName + "\"x\"\n" + kWow + kNet + "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune]"});
  lead(kNone,
       {kKey + kName + "\"D:\\\\Net\r\n", kKey + kName + "\"D:\\\\Net\"x\r\n", kKey + kNet + kName + "-\r\n",
        kKey + kNet + "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune]\r\n",
        kKey + kNet + "[-HKEY_LOCAL_MACHINE\\software]\n" + kName + "\"x\"",
        kKey + "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune\\x]\n" + kNet,
        "[HKEY_CURRENT_USER\\SOFTWARE\\Kestrune]\n" + kNet, "[]\n[-]\n[\n" + kNet,
        kKey + "@=\"d\"\n\"Kestrune\"=\"x\"\n\"Kestrune Path2\"=\"x\"\n", kWow + kNet + kKey,
        kWow + kNet + "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune\\x]",
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune]x]\n" + kNet, kKey + kName + "\"x\"\n" + kName + "dword:00000041\n",
        kKey + kName + "\"x\"\n" + kName + "hex(b):41,00,00,00,00,00,00,00\n", kKey + kName + "\"" + max + "x\"",
        kKey + kName + "\"\xE9\"\n", "", "\xFF\xFE"});
  lead("\xF0\x9F\x98\x80", {utf16(kKey + kName).append("\"\0\x3D\xD8\x00\xDE\"\0\n\0"s)});
  lead("a", {"; c\n" + kKey + ";" + kNet + "  \"Kestrune Path\"=\"a\" ; b \"\n; " + kNet});
  lead("\"D:\\new\\\"", {kKey + kName + "\"\\\"D:\\new\\\\\\\"\""});
  lead("D:\\\xC3\xA9", {kHead + kKey + kName + "hex(2):44,00,3a,00,\\\r\n  5C,00 , e9,00,0,0,41,00\r\n"});
  lead("D", {kKey + kName + "hex(1):41,00,42\n" + kName + "hex(7):44,00,00,00,45,00\n"});
  lead("D:\\N", {kKey + kName + "hex:44,3a,5c,4e,00,4f ; c\n"});
  lead("", {kKey + kName + "hex:\n"});
  lead("D:\\N", {kOld + kKey + kName + "hex(2):44,3a,5c,4e,00,4f\n"});
  lead("ab", {kKey + kName + "\"ab\0cd\"\n"s});
  lead(max, {kKey + kName + "\"" + max + "\""});
}

TEST_F(RegistryTest, TextsComeInTheCodePage) {
  const support::CodePage page(932);
  const std::tuple<const char *, std::string, std::string> rows[] = {
      {"UTF-8", kKey + kName + "\"\xE8\xA1\xA8\\\\x\"", "\x95\\\\x"},
      {"UTF-8 that the page lacks", kKey + kName + "\"\xC3\xA9\"", "?"},
      {"bytes of the page", kKey + kName + "\"\x95\\\\\\x\"", "\x95\\\\x"},
      {"older format", kOld + kKey + kName + "\"\x95\\\\\\x\"", "\x95\\\\x"},
      {"older format, bytes that would be UTF-8", kOld + kKey + kName + "\"\xC3\xA9\"", "\xC3\xA9"},
      {"older format with a mark", "\xEF\xBB\xBF" + kOld + kKey + kName + "\"\xE8\xA1\xA8\"", "\x95\\"},
      {"hex(2)", kHead + kKey + kName + "hex(2):68,88", "\x95\\"},
      {"hex(2) in the older format", kOld + kKey + kName + "hex(2):95,5c", "\x95\\"},
  };
  for (const auto &[what, bytes, expected] : rows)
    EXPECT_EQ(folderFrom(bytes), expected) << what;
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
    const char *replacement, *xdg, *home;
    std::string expected;
  } rows[] = {
      {nullptr, xdg.c_str(), home.c_str(), "X:\\xdg"},
      {nullptr, nullptr, home.c_str(), "X:\\home"},
      {nullptr, "", home.c_str(), "X:\\home"},
      {nullptr, "xdg", home.c_str(), "X:\\home"},
      {nullptr, home.c_str(), home.c_str(), fallBack},
      {nullptr, nullptr, nullptr, fallBack},
      {file.c_str(), xdg.c_str(), home.c_str(), fallBack},
      {"/dev/zero", xdg.c_str(), home.c_str(), fallBack},
      {xdg.c_str(), xdg.c_str(), home.c_str(), fallBack},
  };
  for (const auto &row : rows) {
    const support::Environment replacement("KESTRUNE_REGISTRY", row.replacement), config("XDG_CONFIG_HOME", row.xdg),
        homeFolder("HOME", row.home);
    EXPECT_EQ(Probe().hardwareFolder(), row.expected) << testing::PrintToString(row.xdg);
  }
}

} // namespace
