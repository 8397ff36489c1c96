#include "tests/names/names_support.h"

namespace {

using support::check, support::NameProbe;
using MacroStringTest = support::NameTest;

/// The expansion and, behind a bar, whether all of it had a value.
CString expand(const CMacroString &text) {
  CString out = "before";
  const bool complete = text.Explode(out, 10);
  return out + (complete ? "|yes" : "|no");
}

// A value may leave a `$` open that the text closes. Only the environment ignores blanks at the ends of a name, and a
// macro that leads to nothing or back to itself does not stand in its way.
TEST_F(MacroStringTest, Expands) {
  const support::Environment variable("kDir", "D:\\y"), empty("kEmpty", ""), missing("kNone", nullptr);
  check(2, R"($one$ 1   $outer$ <$Inner$>$one$   $INNER$ [$one$]   $open$ x$y   $yz$ closed   $a$ $one$$b$   $b$ $a$
      $bad$ a$kNone$b$one$   $kDir$ $kNone$   $self$ s$self$   $$ dollars   $empty$ -)",
        [&](const CFilename &n, const char *x) { return macros.AddMacro(n, x) ? x : "false"; });
  check(2, R"(- |yes   abc abc|yes   a$b a$b|yes   $kestrune$\x C:\Kestrune\x|yes   C:\a$b\$STD$ C:\aSTD$|no
      $StdXcvrTyp$ C:\Kestrune\Types\StdXcvr.xml|yes   $kNone$\x \x|no   $kEmpty$\x \x|no   a$kNone$b$STD$c ab$STD$c|no
      $DSDEFAULTTEMPLATES$ C:\Kestrune\Plinthforge\Templates\Draftsmith\v3|yes   $~kDir~$\x$one$ D:\y\x$one$|no
      $kDir$\x D:\y\x|no   $ONE$$one$-$one 11-$one|yes   $outer$ <[1]>1|yes   $open$z$$one$ xclosed1|yes
      $open$ x$y|yes   -$bad$-$one$ --$one$|no   a$self$b ab|no   a$a$b$one$ ab$one$|no   $one$$b$ 1|no
      $$ dollars|yes)",
        [](const CFilename &n, const char *) { return expand(n); });
  check(3, R"($OUTER$ 10 <[1]>1|1   $outer$ 1 <[1]>1|1   $outer$ 0 <$Inner$>$one$|1   $bad$ 10 ab$one$|0   one 10 -|0
      $bad$ 0 a$kNone$b$one$|1   $self$ 10 s|0   - 10 -|0   $empty$ 10 |1)",
        [&](const CFilename &n, const char *depth) {
          CString value = "-";
          const bool found = macros.GetValue(n, value, std::atoi(depth));
          return value + (found ? "|1" : "|0");
        });
  CMacroString inPlace("<$one$>");
  EXPECT_TRUE(inPlace.Explode(inPlace, 0) && inPlace == "<1>");
}

TEST_F(MacroStringTest, ExpansionEndsInTimeAndRoom) {
  const auto name = [](char letter, int n) { return "$" + (letter + std::to_string(n)) + "$"; };
  const auto adds = [&](const char *macro, const std::string &value, const char *text, const std::string &expected) {
    macros.AddMacro(macro, value.c_str());
    EXPECT_EQ(expand(text), expected.c_str()) << macro;
  };
  for (int i = 0; i < 10000; ++i)
    macros.AddMacro(name('L', i).c_str(), name('L', i + 1).c_str());
  adds("$other$", "", "a$L0$b", "ab|no");
  adds("$L10000$", "end", "a$l0$b", "aendb|yes");
  adds("$L0$", "again", "$L0$$L1$", "againend|yes");
  EXPECT_EQ(macros.FindMacro("$l0$") - macros.FindMacro("$L9999$"), 3); // a replaced macro goes to the end
  adds("$L10000$", "$L1$", "$L2$", "|no");
  CFilename fit;
  EXPECT_TRUE(CFilename("C:\\again\\x").GetBestFit(fit) && fit == "C:\\$L0$\\x");
  for (int i = 0; i < 40; ++i)
    macros.AddMacro(name('D', i).c_str(), (name('D', i + 1) + name('D', i + 1)).c_str());
  adds("$D40$", "", "<$D0$>", "<>|yes");
  adds("$D40$", "x", "<$D0$>", "<>|no");
  const std::string most(32767, 'x');
  adds("$MOST$", most, "$MOST$", most + "|yes");
  adds("$MORE$", most + 'x', "$MOST$y", "y|no");
  EXPECT_EQ(expand((most + most).c_str()), (most + most + "|yes").c_str());
  EXPECT_FALSE(macros.GetValue("$MORE$", fit, 10));
}

TEST_F(MacroStringTest, TableFillsOnceAndKeepsTheOrderOfInsertion) {
  check(2, R"(0 $KESTRUNE$=C:\Kestrune   1 $STDTYPES$=$Kestrune$\Types   2 $STDIMAGES$=$Kestrune$\Images
      3 $STDINCLUDE$=$Kestrune$\VorlanC\Include   4 $STDXCVRTYP$=$StdTypes$\StdXcvr.xml
      5 $STDKESTRUNEUI$=$StdTypes$\KestruneUI.xml   6 $STDVORLANTYP$=$StdTypes$\Vorlan.xml
      7 $STDSPIDDATA$=$StdTypes$\spidData.xml   8 $IMG$=$StdImages$   9 $STD$=$KESTRUNE$\VorlanC\Libraries
      10 $PLINTHFORGE$=$KESTRUNE$\Plinthforge   11 $TEMPLATES$=$PLINTHFORGE$\Templates
      12 $HARDWARETEMPLATES$=$TEMPLATES$\Hardware\Standard   13 $DSTEMPLATES$=$TEMPLATES$\Draftsmith
      14 $DSDEFAULTTEMPLATES$=$DSTEMPLATES$\v3   15 $USERHWTFOLDER$=C:\tk\Source\Templates\Hardware)",
        [&](const CFilename &n, const char *) {
          return macros.GetMacroName(std::atoi(n)) + "=" + macros.GetMacroValue(std::atoi(n));
        });
  EXPECT_TRUE(macros.GetMacroCount() == 16 && macros.AddMacro("$x$", "1") && macros.GetMacroName(16) == "$X$");
  EXPECT_TRUE(macros.AddMacro("$iMg$", nullptr) && macros.GetMacroName(16) == "$IMG$" &&
              macros.GetMacroValue(16) == "");
  EXPECT_TRUE(macros.GetMacroCount() == 17 && macros.FindMacro("$std$") == 8 && macros.FindMacro("$STD") == -1);
  for (const int bad : {-1, 17})
    try {
      ADD_FAILURE() << macros.GetMacroValue(bad);
    } catch (CInvalidArgException *exception) {
      exception->Delete();
    }
  NameProbe::clearTable();
  const CFilename wide(L"$STD$"), copy(wide);
  EXPECT_TRUE(copy.GetMacroCount() == 0 && CMacroString("x").GetMacroCount() == 16);
  NameProbe::clearTable();
  EXPECT_TRUE(CMacroString(L"").AddMacro("$ONLY$", "1") && CFilename().GetMacroCount() == 1);
}

TEST_F(MacroStringTest, RegistryNamesTheFolders) {
  const std::string path = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune]\n\"Kestrune Path\"=\"";
  const std::string user = "[HKEY_CURRENT_USER\\Software\\Kestrune\\Plinthforge\\Folders]\n\"userHwFolder\"=";
  const std::pair<std::string, const char *> rows[] = {
      {path + R"(D:\\Net")", R"(D:\Net D:\tk\Source\Templates\Hardware)"},
      {path + "d:Net\"\n" + user + R"("E:/hw\\..\\x")", R"(d:Net E:\x)"},
      {path + '"', R"( D:\tk\Source\Templates\Hardware)"},
      {path + (folder / "e/net") + '"', R"(E:\net E:\tk\Source\Templates\Hardware)"},
      {path + R"(/opt/net")", R"(Z:\opt\net Z:\tk\Source\Templates\Hardware)"},
      {path + std::string(250, 'x') + '"', R"(C:\Kestrune C:\tk\Source\Templates\Hardware)"},
  };
  for (const auto &[entries, expected] : rows) {
    support::write(folder / "own.reg", "Windows Registry Editor Version 5.00\n\n" + entries + "\n");
    NameProbe::clearTable();
    const NameProbe fresh("");
    EXPECT_STREQ(fresh.GetKestruneFolder() + " " + fresh.GetMacroValue(15), expected) << entries;
    EXPECT_EQ(fresh.GetKestruneFolder(), fresh.GetMacroValue(0)) << entries;
  }
}

} // namespace
