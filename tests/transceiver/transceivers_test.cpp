#include "tests/document_support.h"

namespace {

using support::expectSaves, support::keyOf, support::load, support::save, support::thrownMessage;

TEST(Transceivers, EachVersionReadsAndWritesAllVersions) {
  expectSaves<CStdXcvr>("transceiver/version-1.xml", "transceiver/version-3.xml");
  expectSaves<CStdXcvr2>("transceiver/version-2.xml", "transceiver/version-3.xml");
  expectSaves<CStdXcvr3>("transceiver/version-3.xml", "transceiver/version-3.xml");
  expectSaves<CStdXcvr2>("transceiver/version-1-saved-by-2.xml", "transceiver/version-1.xml");
  expectSaves<CStdXcvr3>("transceiver/version-1-saved-by-3.xml", "transceiver/version-1.xml");
}

TEST(Transceivers, InitOfALoadedDocumentRenewsTheHeaderAlone) {
  support::expectInitRenewsTheHeader<CStdXcvr>("transceiver/version-1.xml");
  support::expectInitRenewsTheHeader<CStdXcvr2>("transceiver/version-2.xml");
  support::expectInitRenewsTheHeader<CStdXcvr3>("transceiver/version-3.xml");
}

TEST(Transceivers, RecordsAreCopied) {
  CStdXcvr3 document;
  load(document, support::data("transceiver/version-3.xml"));
  CTransceiver3 &item = *document.Transceivers3[0];
  support::expectCopies(document);
  support::expectCopies(item.Timing);
  support::expectCopies(item.ModeSpec2);
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
