#include "tests/names/names_support.h"

namespace {

using support::data, support::keys, support::load, support::save;

TEST(SpidData, EachVersionReadsTheOtherAndIsCopied) {
  const std::string first = data("identity/version-1.xml"), second = data("identity/version-1-saved-by-2.xml");
  CSpidData older;
  CSpidData2 newer;
  EXPECT_EQ(load(older, second), S_OK);
  EXPECT_EQ(save(older), first);
  EXPECT_EQ(load(newer, first), S_OK);
  EXPECT_EQ(newer.GetModified(), 0);
  EXPECT_EQ(save(newer), second);
  newer.CSpidData::operator=(older);
  support::expectCopies(newer);
  CSpidData lists = CSpidData2(newer);
  EXPECT_EQ(save(lists), first) << "a copy has the lists of the older version too";
}

TEST(SpidData, Results) {
  CSpidData document;
  EXPECT_EQ(load(document, data("identity/version-1.xml")), S_OK);
  EXPECT_EQ(load(document, "<SPIDData><ChannelTypes/></SPIDData>"), KRX_S_EMPTY_COLLECTION);
  EXPECT_EQ(keys(document.DeviceClasses), "same") << "a list that the file lacks keeps its items";
}

TEST(KestruneUI, ATextIsKeptToTheCharacterAndCopied) {
  CKestruneUI document;
  EXPECT_EQ(load(document, "<KestruneUI><UIInfo><ClockSpeeds> 10;\n20?</ClockSpeeds></UIInfo></KestruneUI>"), S_OK);
  EXPECT_EQ(load(document, "<KestruneUI><UIInfo/></KestruneUI>"), KRX_S_NO_ELEMENT);
  EXPECT_STREQ(document.UIInfo.ClockSpeeds, " 10;\n20?") << "what a file lacks stays";
  support::expectCopies(document);
}

struct SampleInstallation : support::NameTest {};

TEST_F(SampleInstallation, StandsWhereTheRegistrySaysAndComesOutAsItWentIn) {
  const support::Environment allDrives("KESTRUNE_DRIVES", nullptr);
  support::write(folder / "own.reg", "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune]\n"
                                     "\"Kestrune Path\"=\"" KESTRUNE_SAMPLE_INSTALLATION "\"\n");
  support::NameProbe::oMacros.RemoveAll();
  const support::Com com;
  const auto expectRoundTrip = [](auto document, const char *macro, const std::string &file) {
    EXPECT_EQ(document.CXMLFolder::LoadFromFile(macro, nullptr), S_OK) << macro;
    EXPECT_EQ(save(document), support::read(KESTRUNE_SAMPLE_INSTALLATION "/Types/" + file));
  };
  expectRoundTrip(CSpidData2(), "$StdSpidData$", "spidData.xml");
  expectRoundTrip(CKestruneUI(), "$StdKestruneUI$", "KestruneUI.xml");
  expectRoundTrip(CStdXcvr3(), "$StdXcvrTyp$", "StdXcvr.xml");
  expectRoundTrip(CVorlanTyp4(), "$StdVorlanTyp$", "Vorlan.xml");
}

} // namespace
