#include "tests/names/names_support.h"

namespace {

using support::keys, support::load, support::save;

constexpr const char *kItems[] = {"ManufacturerID", "DeviceClass", "DeviceSubClass", "ChannelType"};

/// An identity file with one item in each list; `added` are the attributes of the second version.
std::string identityFile(const std::string &added) {
  std::string lists;
  for (const std::string item : kItems) {
    const std::string list = item + (item.back() == 's' ? "es" : "s");
    lists += "\t<" + list + ">\n\t\t<" + item + " Name=\"same\" Number=\"2.5\"" + (item == "DeviceClass" ? added : "") +
             ">\n\t\t</" + item + ">\n\t</" + list + ">\n";
  }
  return support::document("SPIDData", '0', "Empty File Description", lists);
}

const std::string kFirst = identityFile("");
const std::string kSecond = identityFile(R"( Category="c" Profile="p" Obsolete="True")");
const std::string kDefaults = identityFile(R"( Category="Unassigned" Profile="Unassigned" Obsolete="Unassigned")");

std::string firstLists(CSpidData &data) {
  return keys(data.ManufacturerIDs) + "/" + keys(data.DeviceClasses) + "/" + keys(data.DeviceSubClasses) + "/" +
         keys(data.ChannelTypes);
}

TEST(SpidData, EachVersionReadsTheOther) {
  for (const std::string &file : {kFirst, kSecond}) {
    CSpidData first;
    CSpidData2 second;
    EXPECT_EQ(load(first, file), S_OK);
    EXPECT_EQ(load(second, file), S_OK);
    EXPECT_EQ(second.GetModified(), 0);
    EXPECT_EQ(save(first), kFirst);
    EXPECT_EQ(save(second), file == kFirst ? kDefaults : kSecond);
    EXPECT_EQ(firstLists(second), "///");
  }
}

TEST(SpidData, Results) {
  CSpidData document;
  EXPECT_EQ(load(document, kFirst), S_OK);
  EXPECT_EQ(load(document, "<SPIDData><ChannelTypes/></SPIDData>"), KRX_S_EMPTY_COLLECTION);
  EXPECT_EQ(firstLists(document), "same/same/same/") << "a list that the file lacks keeps its items";
  for (const std::string item : kItems) {
    std::string file = kFirst;
    file.insert(file.find("\t\t<" + item + " "), "<" + item + " Name='a'/><" + item + " Name='A'/>");
    EXPECT_EQ(load(document, file), KRX_E_DUPLICATE_KEY) << item;
  }
  EXPECT_EQ(firstLists(document), "same/same/same/a,same");
  EXPECT_EQ(document.LoadFromFile("/nonexistent/spidData.xml"), KRX_E_FILE_NOT_FOUND);
}

TEST(SpidData, CopiesHoldAllLists) {
  CSpidData2 source;
  load(source, kSecond);
  load(static_cast<CSpidData &>(source).DeviceClasses, "<DeviceClasses><DeviceClass Name='Dummy'/></DeviceClasses>");
  source.ManufacturerIDs.Add("a", "1");
  source.DeviceSubClasses.Add("c", "3");
  source.ChannelTypes.Add("d", "4");
  support::expectCopies(source);
  CSpidData2 copy(source);
  EXPECT_EQ(firstLists(copy), "a/Dummy/c/d");
}

TEST(KestruneUI, TextsAreKeptToTheCharacterAndCopied) {
  const auto file = [](const std::string &speeds) {
    return support::document("KestruneUI", '1', "Empty File Description",
                             "\t<UIInfo>\n\t\t<ClockSpeeds>" + speeds + "</ClockSpeeds>\n\t</UIInfo>\n");
  };
  CKestruneUI document;
  document.Contents.CreationDate = 7;
  EXPECT_EQ(save(document), file("Unassigned"));
  EXPECT_STREQ(document.UIInfo, "UIInfo");
  for (const std::string speeds : {" 10 MHz;\n20?", ""}) {
    EXPECT_EQ(load(document, file(speeds)), S_OK);
    EXPECT_EQ(load(document, "<KestruneUI><UIInfo/></KestruneUI>"), KRX_S_NO_ELEMENT);
    EXPECT_EQ(save(document), file(speeds)) << "what a file lacks stays";
    support::expectCopies(document);
  }
}

struct SampleInstallation : support::NameTest {};

TEST_F(SampleInstallation, StandsWhereTheRegistrySaysAndComesOutAsItWentIn) {
  const support::Com com;
  const support::Environment allDrives("KESTRUNE_DRIVES", nullptr);
  support::write(folder / "own.reg", "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune]\n"
                                     "\"Kestrune Path\"=\"" KESTRUNE_SAMPLE_INSTALLATION "\"\n");
  support::NameProbe::oMacros.RemoveAll();
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
