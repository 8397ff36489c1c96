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
  const struct {
    const char *inFile;
    const char *loaded;
  } rows[] = {
      {"0x1a2b", "1A2B"},
      // What is before the first x goes, unless that is the first character.
      {"ab0x12 0x34", "12 0X34"},
      {"X12", "X12"},
      {"0x", ""},
      {"1A2B", ""},
      {"", ""},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.inFile);
    load(mode, "<ModeSpec><xcvr_gp_data>" + std::string(row.inFile) + "</xcvr_gp_data></ModeSpec>");
    EXPECT_STREQ(mode.xcvr_gp_data, row.loaded);
    const std::string saved = save(mode);
    EXPECT_NE(saved.find("<xcvr_gp_data>0x" + std::string(row.loaded) + "<"), std::string::npos) << saved;
  }
  load(mode, "<ModeSpec/>");
  EXPECT_STREQ(mode.xcvr_gp_data, "");
}

TEST(Transceivers, NumbersOfTexts) {
  const std::string failure = "Unexpected non-numeric value found in XML data (";
  constexpr const char *kThrows = nullptr;
  const struct {
    const char *text;
    const char *id;        // std_id: octal and hexadecimal too
    const char *scheduler; // SchedulerMode: decimal, unsigned
  } rows[] = {
      {" 16", "16", "16"},
      // Only the first is octal or hexadecimal.
      {"0x10", "16", kThrows},
      {"010", "8", "10"},
      {"", "0", "0"},
      {"0x", kThrows, kThrows},
      {"Unassigned", kThrows, "0"},
      {"-1", "-1", "4294967295"},
      {"99999999999", "2147483647", "4294967295"},
  };
  CTransceivers3 list;
  CTransceiver3 &item = *list.Add("n");
  for (const auto &row : rows) {
    SCOPED_TRACE(row.text);
    item.std_id = row.text;
    item.SchedulerMode = row.text;
    std::string id, scheduler;
    const std::string idFailure = thrownMessage([&] { id = std::to_string(static_cast<int>(item.std_id)); });
    const std::string schedulerFailure = thrownMessage([&] { scheduler = std::to_string(item.GetSchedulerMode()); });
    if (row.id != kThrows) {
      EXPECT_EQ(id, row.id);
      EXPECT_EQ(list.FindByID(std::stoi(row.id)), &item);
    } else {
      EXPECT_EQ(idFailure, failure + "Error accessing XML tag: std_id Value: '" + row.text + "') [KRX#101]");
      EXPECT_EQ(thrownMessage([&] { list.FindByID(1); }), idFailure) << "a search comes upon it";
    }
    if (row.scheduler != kThrows)
      EXPECT_EQ(scheduler, row.scheduler);
    else
      EXPECT_EQ(schedulerFailure, failure + row.text + ") [KRX#101]");
  }
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
