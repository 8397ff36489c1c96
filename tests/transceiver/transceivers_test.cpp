#include "tests/document_support.h"

namespace {

using support::keyOf, support::load, support::save, support::thrownMessage;

std::string transceiverData(const std::string &name) {
  return support::read(KESTRUNE_TEST_DATA "/transceiver/" + name);
}

template <class Document>
void expectSaves(const std::string &saved, const std::string &loaded) {
  SCOPED_TRACE(loaded + " in, " + saved + " out");
  Document document;
  EXPECT_GE(load(document, transceiverData(loaded)), 0);
  EXPECT_EQ(document.GetModified(), 0);
  EXPECT_EQ(save(document), transceiverData(saved));
}

TEST(Transceivers, EachVersionReadsAndWritesAllVersions) {
  for (const std::string file : {"version-1.xml", "version-2.xml", "version-3.xml"})
    expectSaves<CStdXcvr>("version-1.xml", file);
  for (const std::string file : {"version-2.xml", "version-3.xml"})
    expectSaves<CStdXcvr2>("version-2.xml", file);
  expectSaves<CStdXcvr3>("version-3.xml", "version-3.xml");
  expectSaves<CStdXcvr2>("version-1-saved-by-2.xml", "version-1.xml");
  expectSaves<CStdXcvr3>("version-1-saved-by-3.xml", "version-1.xml");
  CStdXcvr3 document;
  load(document, transceiverData("version-3.xml"));
  EXPECT_EQ(document.Transceivers.Count(), 0) << "the lists of older versions stay empty";
  EXPECT_EQ(document.Transceivers2.Count(), 0);
}

TEST(Transceivers, RecordsAreCopied) {
  CStdXcvr2 second;
  CStdXcvr3 third;
  load(second, transceiverData("version-2.xml"));
  load(third, transceiverData("version-3.xml"));
  CTransceiver3 &item = *third.Transceivers3[0];
  support::expectCopies(*second.Transceivers2[0]);
  support::expectCopies(item);
  support::expectCopies(item.Timing);
  support::expectCopies(item.Channel);
  support::expectCopies(item.ModeSpec);
  support::expectCopies(item.ModeSpec2);
}

TEST(Transceivers, ANewItemHasDefaultsAndItsName) {
  CTransceivers3 list;
  const CTransceiver3 &item = *list.Add("n");
  EXPECT_STREQ(item.Key(), "n");
  EXPECT_STREQ(item.ChannelTypeNumber, "0");
  EXPECT_STREQ(item.UsesVorlanComPort, "TRUE");
  EXPECT_STREQ(item.Channel.flags, "0xFFFF");
  EXPECT_STREQ(item.Timing, "Timing") << "a folder's text is its tag";
  EXPECT_STREQ(item.ModeSpec2, "ModeSpec");
  EXPECT_STREQ(CTransceiver2("b").Key(), "b");
  EXPECT_STREQ(CTransceiver3("c").Key(), "c");
  EXPECT_EQ(list.Add("N"), nullptr) << "the name is there, in another case";
}

TEST(Transceivers, GeneralPurposeDataLosesItsPrefixOnLoadAndGetsItBackOnSave) {
  CTransceiverModeSpec2 mode;
  EXPECT_NE(save(mode).find("<xcvr_gp_data>0xUnassigned<"), std::string::npos);
  const auto loaded = [&](const std::string &inFile) {
    load(mode, "<ModeSpec><xcvr_gp_data>" + inFile + "</xcvr_gp_data></ModeSpec>");
    const std::string text(mode.xcvr_gp_data);
    EXPECT_NE(save(mode).find("<xcvr_gp_data>0x" + text + "<"), std::string::npos) << inFile;
    return text;
  };
  EXPECT_EQ(loaded("0x1a2b"), "1A2B");
  EXPECT_EQ(loaded("ab0x12 0x34"), "12 0X34") << "up to the first x";
  EXPECT_EQ(loaded("X12"), "X12") << "unless that is the first character";
  EXPECT_EQ(loaded("0x"), "");
  EXPECT_EQ(loaded("1A2B"), "");
}

TEST(Transceivers, NumberOfATransceiver) {
  CTransceivers3 list;
  CTransceiver3 &item = *list.Add("n");
  for (const char *text : {" 16", "0x10", "020"}) {
    item.std_id = text;
    EXPECT_EQ(static_cast<int>(item.std_id), 16) << text;
    EXPECT_EQ(list.FindByID(16), &item) << text;
  }
  item.std_id = "7x";
  EXPECT_EQ(thrownMessage([&] { list.FindByID(1); }), "Unexpected non-numeric value found in XML data (Error accessing "
                                                      "XML tag: std_id Value: '7x') [KRX#101]");
}

TEST(Transceivers, SchedulerModeIsADecimalNumber) {
  CTransceiver3 item;
  const auto mode = [&](const char *text) {
    item.SchedulerMode = text;
    return item.GetSchedulerMode();
  };
  EXPECT_EQ(mode("Unassigned"), 0u);
  EXPECT_EQ(mode(""), 0u);
  EXPECT_EQ(mode("010"), 10u);
  EXPECT_EQ(mode("-1"), 4294967295u);
  EXPECT_EQ(mode("99999999999"), 4294967295u);
  for (const std::string text : {"0x10", "7 ", "unassigned"})
    EXPECT_EQ(thrownMessage([&] { mode(text.c_str()); }),
              "Unexpected non-numeric value found in XML data (" + text + ") [KRX#101]");
}

/// For each version of the list.
template <class List>
void searchInOrder() {
  List list;
  EXPECT_EQ(list.FindByID(0), nullptr);
  ASSERT_EQ(load(list, "<Transceivers><Transceiver Name='a'><std_id>16</std_id></Transceiver><Transceiver Name='b'>"
                       "<std_id>0x10</std_id></Transceiver><Transceiver/></Transceivers>"),
            S_OK);
  EXPECT_STREQ(keyOf(list.FindByID(16)), "a");
  EXPECT_EQ(list.FindByID(17), nullptr);
  EXPECT_STREQ(keyOf(list.Find("B")), "b");
  EXPECT_EQ(list.Find(nullptr), nullptr);
  list.Add("Dummy");
  list.Add("c")->std_id = "5";
  EXPECT_STREQ(keyOf(list.FindByID(16)), "a") << "found before the bad one is reached";
  EXPECT_NE(thrownMessage([&] { list.FindByID(5); }), "");
  EXPECT_EQ(support::keys(list), "a,b,Dummy,c");
  support::expectCopies(list);
}

TEST(Transceivers, SearchesInOrder) {
  searchInOrder<CTransceivers>();
  searchInOrder<CTransceivers2>();
  searchInOrder<CTransceivers3>();
}

TEST(Transceivers, ModeSpecFollowsOnLoadAndAssignmentOnly) {
  CTransceiver3 item;
  EXPECT_GE(load(item, "<Transceiver Name='n'><alt_rate_tag>5</alt_rate_tag><ModeSpec><alt_rate_tag>6</alt_rate_tag>"
                       "<xcvr_gp_data>0xab</xcvr_gp_data></ModeSpec></Transceiver>"),
            0);
  EXPECT_STREQ(item.Key(), "n");
  EXPECT_STREQ(item.ModeSpec.alt_rate_tag, "6");
  EXPECT_STREQ(item.ModeSpec.xcvr_gp_data, "AB");
  item.ModeSpec2.alt_rate_tag = "7";
  const CTransceiver3 &self = item;
  item = self;
  EXPECT_STREQ(item.ModeSpec.alt_rate_tag, "6") << "assigning an object to itself changes nothing";
  EXPECT_STREQ(CTransceiver3(item).ModeSpec.alt_rate_tag, "7");
  EXPECT_EQ(item.LoadFromFile("/nonexistent/a.xml", nullptr), KRX_E_FILE_NOT_FOUND);
  EXPECT_STREQ(item.ModeSpec.alt_rate_tag, "7");
}

} // namespace
