#include "tests/names/names_support.h"

namespace {

using support::NameProbe;
using MacroStringTest = support::NameTest;

/// The expansion of a text whose macros all have a value.
std::string expanded(const std::string &text) {
  CString out = "before";
  EXPECT_TRUE(CMacroString(text.c_str()).Explode(out, 10)) << text;
  return std::string(out);
}

/// What an expansion gives that ends at a name without a value.
std::string cutShort(const std::string &text) {
  CString out = "before";
  EXPECT_FALSE(CMacroString(text.c_str()).Explode(out, 10)) << text;
  return std::string(out);
}

TEST_F(MacroStringTest, ExpandsUpToTheFirstNameWithoutAValue) {
  const support::Environment variable("kDir", R"(D:\y)"), missing("kNone", nullptr);
  macros.AddMacro("$one$", "1");
  macros.AddMacro("$outer$", "<$Inner$>$one$");
  macros.AddMacro("$INNER$", "[$one$]");
  macros.AddMacro("$bad$", "a$kNone$b$one$");
  macros.AddMacro("$self$", "s$self$");
  EXPECT_EQ(expanded("$ONE$$one$-$one"), "11-$one");
  EXPECT_EQ(expanded("$outer$"), "<[1]>1");
  EXPECT_EQ(cutShort(R"($ kDir $\x$one$)"), R"(D:\y\x$one$)") << "from the environment, without the blanks";
  EXPECT_EQ(cutShort("a$kNone$b$STD$c"), "ab$STD$c");
  EXPECT_EQ(cutShort("-$bad$-$one$"), "--$one$");
  EXPECT_EQ(cutShort("a$self$b"), "ab");
}

TEST_F(MacroStringTest, ExpansionEndsInTimeAndRoom) {
  const auto add = [&](const std::string &name, const std::string &value) {
    macros.AddMacro(("$" + name + "$").c_str(), value.c_str());
  };
  for (int i = 0; i < 10000; ++i)
    add("L" + std::to_string(i), "$L" + std::to_string(i + 1) + "$");
  add("L10000", "end");
  EXPECT_EQ(expanded("a$L0$b"), "aendb");
  for (int i = 0; i < 40; ++i) {
    const std::string next = "$D" + std::to_string(i + 1) + "$";
    add("D" + std::to_string(i), next + next);
  }
  add("D40", "x");
  EXPECT_EQ(cutShort("<$D0$>"), "<>");
}

TEST_F(MacroStringTest, TableKeepsTheOrderOfInsertion) {
  std::string defaults;
  for (int i = 0; i < macros.GetMacroCount(); ++i)
    defaults += std::string(macros.GetMacroName(i)) + " " + expanded(std::string(macros.GetMacroName(i))) + "\n";
  EXPECT_EQ(defaults, support::data("names/default-macros.txt"));
  EXPECT_EQ(macros.FindMacro("$stdtypes$"), 1);
  EXPECT_EQ(macros.FindMacro("$STD"), -1);
  EXPECT_TRUE(macros.AddMacro("$iMg$", nullptr)) << "a replaced macro goes to the end";
  EXPECT_STREQ(macros.GetMacroName(15), "$IMG$");
  EXPECT_TRUE(support::throws<CInvalidArgException>([&] { macros.GetMacroValue(16); }));
  NameProbe::oMacros.RemoveAll();
  EXPECT_EQ(CFilename(L"x").GetMacroCount(), 0) << "a wide text does not fill the table";
  EXPECT_EQ(CFilename("x").GetMacroCount(), 16);
}

TEST_F(MacroStringTest, AValueIsStoredExpandedOrCutShort) {
  macros.AddMacro("$one$", "1");
  macros.AddMacro("$bad$", "$one$ $kNone$ $one$");
  const auto valueOf = [&](const char *name, int depth) {
    CString value = "before";
    const bool found = macros.GetValue(name, value, depth);
    return (found ? "" : "not: ") + std::string(value);
  };
  EXPECT_EQ(valueOf("$STD$", 0), R"($KESTRUNE$\VorlanC\Libraries)");
  EXPECT_EQ(valueOf("$kestrune$", 10), R"(C:\Kestrune)");
  EXPECT_EQ(valueOf("$bad$", 10), "not: 1  $one$");
  EXPECT_EQ(valueOf("$none$", 10), "not: before");
}

TEST_F(MacroStringTest, RegistryNamesTheFolders) {
  support::write(folder / "own.reg", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune]\n\"Kestrune Path\"=\"/opt/net\"");
  NameProbe::oMacros.RemoveAll();
  macros = NameProbe("");
  EXPECT_STREQ(macros.GetMacroValue(0), R"(Z:\opt\net)");
  EXPECT_STREQ(macros.GetMacroValue(15), R"(Z:\tk\Source\Templates\Hardware)");
}

} // namespace
