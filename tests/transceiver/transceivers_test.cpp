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
  expectSaves<CStdXcvr>("version-1.xml", "version-3.xml");
  expectSaves<CStdXcvr2>("version-2.xml", "version-3.xml");
  expectSaves<CStdXcvr3>("version-3.xml", "version-3.xml");
  expectSaves<CStdXcvr2>("version-1-saved-by-2.xml", "version-1.xml");
  expectSaves<CStdXcvr3>("version-1-saved-by-3.xml", "version-1.xml");
}

TEST(Transceivers, RecordsAreCopied) {
  CStdXcvr3 document;
  load(document, transceiverData("version-3.xml"));
  CTransceiver3 &item = *document.Transceivers3[0];
  support::expectCopies(document);
  support::expectCopies(item.Timing);
  support::expectCopies(item.ModeSpec2);
}

TEST(Transceivers, ANewItemHasDefaultsAndItsName) {
  CTransceivers3 list;
  const CTransceiver3 &item = *list.Add("n");
  EXPECT_STREQ(item.Key(), "n");
  EXPECT_STREQ(item.UsesVorlanComPort, "TRUE");
  EXPECT_STREQ(item.Timing, "Timing") << "a folder's text is its tag";
  EXPECT_EQ(list.Add("N"), nullptr) << "the name is there, in another case";
}

TEST(Transceivers, GeneralPurposeDataLosesItsPrefixOnLoadAndGetsItBackOnSave) {
  CTransceiverModeSpec2 mode;
  const auto loaded = [&](const std::string &inFile) {
    load(mode, "<ModeSpec><xcvr_gp_data>" + inFile + "</xcvr_gp_data></ModeSpec>");
    return std::string(mode.xcvr_gp_data);
  };
  EXPECT_EQ(loaded("ab0x12 0x34"), "12 0X34") << "up to the first x";
  EXPECT_EQ(loaded("0x1a2b"), "1A2B");
  EXPECT_NE(save(mode).find("<xcvr_gp_data>0x1A2B<"), std::string::npos);
}

TEST(Transceivers, SchedulerModeIsADecimalNumber) {
  CTransceiver3 item;
  EXPECT_EQ(item.GetSchedulerMode(), 0u);
  item.SchedulerMode = "010";
  EXPECT_EQ(item.GetSchedulerMode(), 10u);
  item.SchedulerMode = "0x10";
  EXPECT_EQ(thrownMessage([&] { item.GetSchedulerMode(); }),
            "Unexpected non-numeric value found in XML data (0x10) [KRX#101]");
}

TEST(Transceivers, SearchesInOrder) {
  CTransceivers3 list;
  load(list, "<Transceivers><Transceiver Name='a'><std_id>16</std_id></Transceiver><Transceiver Name='b'>"
             "<std_id>0x10</std_id></Transceiver></Transceivers>");
  EXPECT_STREQ(keyOf(list.FindByID(16)), "a");
  EXPECT_EQ(list.FindByID(17), nullptr);
  list.Add("Dummy")->std_id = "7x";
  EXPECT_STREQ(keyOf(list.FindByID(16)), "a") << "found before the bad one is reached";
  EXPECT_EQ(thrownMessage([&] { list.FindByID(1); }), "Unexpected non-numeric value found in XML data (Error accessing "
                                                      "XML tag: std_id Value: '7x') [KRX#101]");
}

TEST(Transceivers, ModeSpecFollowsOnLoadAndAssignmentOnly) {
  CTransceiver3 item;
  load(item, "<Transceiver><alt_rate_tag>5</alt_rate_tag><ModeSpec><alt_rate_tag>6</alt_rate_tag></ModeSpec>"
             "</Transceiver>");
  EXPECT_STREQ(item.ModeSpec.alt_rate_tag, "6");
  item.ModeSpec2.alt_rate_tag = "7";
  EXPECT_STREQ(item.ModeSpec.alt_rate_tag, "6");
  EXPECT_STREQ(CTransceiver3(item).ModeSpec.alt_rate_tag, "7");
}

} // namespace
