#include "tests/names/names_support.h"

namespace {

using support::NameProbe;
using MacroStringTest = support::NameTest;

void expectExpansion(const std::string &text, const std::string &expected, bool isComplete) {
  CString out = "before";
  EXPECT_EQ(CMacroString(text.c_str()).Explode(out, 10), isComplete) << text.substr(0, 80);
  EXPECT_EQ(std::string(out), expected) << text.substr(0, 80);
}

// A value may leave a `$` open that the text closes. Only the environment ignores blanks at the ends of a name, and a
// macro that leads to nothing or back to itself does not stand in its way.
TEST_F(MacroStringTest, ExpandsUpToTheFirstNameWithoutAValue) {
  const support::Environment variable("kDir", R"(D:\y)"), missing("kNone", nullptr);
  const std::pair<const char *, const char *> values[] = {
      {"$one$", "1"},
      // Values that are complete, and some that are not.
      {"$outer$", "<$Inner$>$one$"},
      {"$INNER$", "[$one$]"},
      {"$open$", "x$y"},
      {"$yz$", "closed"},
      {"$empty$", ""},
      {"$self$", "s$self$"},
      {"$bad$", "a$kNone$b$one$"},
      {"$kDir$", "$kNone$"},
  };
  for (const auto &[name, value] : values)
    macros.AddMacro(name, value);
  const struct {
    const char *text;
    const char *expanded;
    bool isComplete = true;
  } rows[] = {
      {"", ""},
      {"$ONE$$one$-$one", "11-$one"},
      {"$outer$", "<[1]>1"},
      {"$open$", "x$y"},
      {"$open$z$$one$", "xclosed1"},
      // The rest stays as it is.
      {R"($kDir$\x)", R"(D:\y\x)", false},
      {R"($ kDir $\x$one$)", R"(D:\y\x$one$)", false},
      {R"(a$kNone$b$STD$c)", R"(ab$STD$c)", false},
      {"-$bad$-$one$", "--$one$", false},
      {"a$self$b", "ab", false},
  };
  for (const auto &row : rows)
    expectExpansion(row.text, row.expanded, row.isComplete);
  const struct {
    const char *name;
    int depth;
    const char *value;
    bool isFound = true;
  } singles[] = {
      {"$OUTER$", 10, "<[1]>1"},
      // Without depth the value stays as it is stored.
      {"$outer$", 0, "<$Inner$>$one$"},
      {"$empty$", 10, ""},
      {"$bad$", 10, "ab$one$", false},
      {"$self$", 10, "s", false},
      {"", 10, "before", false},
  };
  for (const auto &row : singles) {
    CString value = "before";
    EXPECT_EQ(macros.GetValue(row.name, value, row.depth), row.isFound) << row.name << " " << row.depth;
    EXPECT_STREQ(value, row.value) << row.name << " " << row.depth;
  }
}

TEST_F(MacroStringTest, ExpansionEndsInTimeAndRoom) {
  const auto add = [&](const std::string &name, const std::string &value) {
    macros.AddMacro(("$" + name + "$").c_str(), value.c_str());
  };
  for (int i = 0; i < 10000; ++i)
    add("L" + std::to_string(i), "$L" + std::to_string(i + 1) + "$");
  expectExpansion("a$L0$b", "ab", false);
  add("L10000", "end");
  expectExpansion("a$l0$b", "aendb", true);
  add("L10000", "$L1$");
  expectExpansion("$L2$", "", false);
  for (int i = 0; i < 40; ++i) {
    const std::string next = "$D" + std::to_string(i + 1) + "$";
    add("D" + std::to_string(i), next + next);
  }
  add("D40", "");
  expectExpansion("<$D0$>", "<>", true);
  add("D40", "x");
  expectExpansion("<$D0$>", "<>", false);
  const std::string most(32767, 'x');
  add("MOST", most);
  add("MORE", most + 'x');
  expectExpansion("$MOST$", most, true);
  expectExpansion("$MORE$y", "y", false);
  expectExpansion(most + most, most + most, true);
  CString value;
  EXPECT_FALSE(macros.GetValue("$MORE$", value, 10));
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
  const struct {
    std::string entries;
    const char *folder;
    const char *hardware;
  } rows[] = {
      {path + R"("D:\\Net")", R"(D:\Net)", R"(D:\tk\Source\Templates\Hardware)"},
      {path + R"("d:Net")" + user + R"("E:/hw\\..\\x")", R"(d:Net)", R"(E:\x)"},
      {path + R"("/opt/net")", R"(Z:\opt\net)", R"(Z:\tk\Source\Templates\Hardware)"},
      {"", R"(C:\Kestrune)", R"(C:\tk\Source\Templates\Hardware)"},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.entries);
    support::write(folder / "own.reg", "Windows Registry Editor Version 5.00\n\n" + row.entries + "\n");
    NameProbe::oMacros.RemoveAll();
    const NameProbe fresh("");
    EXPECT_STREQ(fresh.GetKestruneFolder(), row.folder);
    EXPECT_STREQ(fresh.GetMacroValue(0), row.folder);
    EXPECT_STREQ(fresh.GetMacroValue(15), row.hardware);
  }
}

} // namespace
