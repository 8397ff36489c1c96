#include "tests/names/names_support.h"

namespace {

using support::NameProbe;
using MacroStringTest = support::NameTest;

/// The expansion of a text whose macros all have a value.
std::string expanded(const std::string &text) {
  CString out = "before";
  EXPECT_TRUE(CMacroString(text.c_str()).Explode(out, 10)) << text.substr(0, 80);
  return std::string(out);
}

/// What an expansion gives that ends at a name without a value.
std::string cutShort(const std::string &text) {
  CString out = "before";
  EXPECT_FALSE(CMacroString(text.c_str()).Explode(out, 10)) << text.substr(0, 80);
  return std::string(out);
}

// A value may leave a `$` open that the text closes. Only the environment ignores blanks at the ends of a name, and a
// macro that leads to nothing or back to itself does not stand in its way.
TEST_F(MacroStringTest, ExpandsUpToTheFirstNameWithoutAValue) {
  const support::Environment variable("kDir", R"(D:\y)"), missing("kNone", nullptr);
  macros.AddMacro("$one$", "1");
  macros.AddMacro("$outer$", "<$Inner$>$one$");
  macros.AddMacro("$INNER$", "[$one$]");
  macros.AddMacro("$open$", "x$y");
  macros.AddMacro("$yz$", "closed");
  macros.AddMacro("$$", "dollars");
  macros.AddMacro("$self$", "s$self$");
  macros.AddMacro("$bad$", "a$kNone$b$one$");
  macros.AddMacro("$kDir$", "$kNone$");
  EXPECT_EQ(expanded(""), "");
  EXPECT_EQ(expanded("$ONE$$one$-$one"), "11-$one");
  EXPECT_EQ(expanded("$outer$"), "<[1]>1");
  EXPECT_EQ(expanded("$open$"), "x$y");
  EXPECT_EQ(expanded("$open$z$$one$"), "xclosed1");
  EXPECT_EQ(expanded("$$"), "dollars");
  EXPECT_EQ(cutShort(R"($kDir$\x)"), R"(D:\y\x)");
  EXPECT_EQ(cutShort(R"($ kDir $\x$one$)"), R"(D:\y\x$one$)");
  EXPECT_EQ(cutShort("a$kNone$b$STD$c"), "ab$STD$c");
  EXPECT_EQ(cutShort("-$bad$-$one$"), "--$one$");
  EXPECT_EQ(cutShort("a$self$b"), "ab");

  CString value = "before";
  EXPECT_FALSE(macros.GetValue("$none$", value, 10));
  EXPECT_STREQ(value, "before");
  EXPECT_TRUE(macros.GetValue("$OUTER$", value, 10));
  EXPECT_STREQ(value, "<[1]>1");
  EXPECT_TRUE(macros.GetValue("$outer$", value, 0));
  EXPECT_STREQ(value, "<$Inner$>$one$") << "without depth as it is stored";
  EXPECT_FALSE(macros.GetValue("$bad$", value, 10));
  EXPECT_STREQ(value, "ab$one$");
}

TEST_F(MacroStringTest, ExpansionEndsInTimeAndRoom) {
  const auto add = [&](const std::string &name, const std::string &value) {
    macros.AddMacro(("$" + name + "$").c_str(), value.c_str());
  };
  for (int i = 0; i < 10000; ++i)
    add("L" + std::to_string(i), "$L" + std::to_string(i + 1) + "$");
  EXPECT_EQ(cutShort("a$L0$b"), "ab");
  add("L10000", "end");
  EXPECT_EQ(expanded("a$l0$b"), "aendb");
  add("L10000", "$L1$");
  EXPECT_EQ(cutShort("$L2$"), "");
  for (int i = 0; i < 40; ++i) {
    const std::string next = "$D" + std::to_string(i + 1) + "$";
    add("D" + std::to_string(i), next + next);
  }
  add("D40", "");
  EXPECT_EQ(expanded("<$D0$>"), "<>");
  add("D40", "x");
  EXPECT_EQ(cutShort("<$D0$>"), "<>");
  const std::string most(32767, 'x');
  add("MOST", most);
  add("MORE", most + 'x');
  EXPECT_EQ(expanded("$MOST$"), most);
  EXPECT_EQ(cutShort("$MORE$y"), "y");
  EXPECT_EQ(expanded(most + most), most + most);
}

TEST_F(MacroStringTest, TableKeepsTheOrderOfInsertion) {
  EXPECT_EQ(macros.GetMacroCount(), 16);
  EXPECT_STREQ(macros.GetMacroName(0), "$KESTRUNE$");
  EXPECT_STREQ(macros.GetMacroName(15), "$USERHWTFOLDER$");
  EXPECT_EQ(macros.FindMacro("$stdtypes$"), 1);
  EXPECT_EQ(macros.FindMacro("$STD"), -1);
  EXPECT_TRUE(macros.AddMacro("$x$", "1"));
  EXPECT_STREQ(macros.GetMacroName(16), "$X$");
  EXPECT_TRUE(macros.AddMacro("$iMg$", nullptr)) << "a replaced macro goes to the end";
  EXPECT_STREQ(macros.GetMacroName(16), "$IMG$");
  EXPECT_STREQ(macros.GetMacroValue(16), "");
  EXPECT_EQ(macros.GetMacroCount(), 17);
  NameProbe::oMacros.RemoveAll();
  EXPECT_EQ(CFilename(L"x").GetMacroCount(), 0) << "a wide text does not fill the table";
  EXPECT_EQ(CFilename("x").GetMacroCount(), 16);
  EXPECT_TRUE(support::throws<CInvalidArgException>([&] { macros.GetMacroValue(-1); }));
}

TEST_F(MacroStringTest, RegistryNamesTheFolders) {
  const std::string path = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune]\n\"Kestrune Path\"=";
  const std::string user = "\n[HKEY_CURRENT_USER\\Software\\Kestrune\\Plinthforge\\Folders]\n\"userHwFolder\"=";
  const auto load = [this](const std::string &entries) {
    support::write(folder / "own.reg", "Windows Registry Editor Version 5.00\n\n" + entries + "\n");
    NameProbe::oMacros.RemoveAll();
    return NameProbe("");
  };
  const NameProbe net = load(path + R"("d:Net")" + user + R"("E:/hw\\..\\x")");
  EXPECT_STREQ(net.GetKestruneFolder(), "d:Net");
  EXPECT_STREQ(net.GetMacroValue(0), "d:Net");
  EXPECT_STREQ(net.GetMacroValue(15), R"(E:\x)");
  const NameProbe host = load(path + R"("/opt/net")");
  EXPECT_STREQ(host.GetMacroValue(0), R"(Z:\opt\net)");
  EXPECT_STREQ(host.GetMacroValue(15), R"(Z:\tk\Source\Templates\Hardware)");
}

} // namespace
