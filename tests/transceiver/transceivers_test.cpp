#include "tests/document_support.h"

namespace {

using support::Cells, support::checkRows, support::keyOf, support::load, support::save, support::thrownMessage;

/// One item in the order of the file; a digit marks what the third version brought.
constexpr const char *kItem = R"(
  std_id support_level ChannelTypeNumber std_xcvr_id
<Timing> rcv_start_delay rcv_end_delay indeterm_time min_interpkt preamble turnaround missed_pream packet_qual </Timing>
  <Channel> comm_mode osc_accuracy osc_wakeup comm_rate max_priority default_priority_slots min_clockID max_clockID
    avg_pkt_size flags </Channel>
  <ModeSpec> chan_bit_rate alt_rate_tag xcvr_cntrls_pream wakeup_pin_dir xcvr_gp_data allow_node_override
    3standard_threshold </ModeSpec>
  3SchedulerMode)";

/// What version `version` of the classes writes when the values come from a file of version `from`: numbers in the
/// order of the file, and the defaults of what that file lacks.
std::string transceiverFile(int version, int from) {
  const std::string second = from >= 2 ? "yes" : "FALSE";
  std::string text = "\t<Transceivers>\n\t\t<Transceiver TevroskApproved=\"no\" Name=\"A\" UsesVorlanComPort=\"0\"";
  if (version >= 2)
    text += " SignalStrengthIndicator=\"" + second + "\" SupportAlternateClockRates=\"" + second + "\"";
  text += ">\n";
  std::istringstream words(kItem);
  std::string indent = "\t\t\t";
  int number = 0;
  for (std::string word; words >> word;) {
    const bool third = word[0] == '3';
    if (word[0] == '<') {
      text += "\t\t\t" + word + "\n";
      indent.resize(word[1] == '/' ? 3 : 4, '\t');
    } else if (!third || version >= 3) {
      const std::string tag = word.substr(third);
      const std::string fallBack = tag == "SchedulerMode" ? "Unassigned" : "TRUE";
      text += indent + "<" + tag + ">" + (third && from < 3 ? fallBack : "0x" + std::to_string(++number)) + "</" + tag +
              ">\n";
    }
  }
  return support::document("StdXcvr", '1', "Standard Transceivers file",
                           text + "\t\t</Transceiver>\n\t</Transceivers>\n");
}

TEST(Transceivers, EachVersionReadsAndWritesAllVersions) {
  for (int from = 1; from <= 3; ++from) {
    const std::string file = transceiverFile(from, from);
    CStdXcvr first;
    CStdXcvr2 second;
    CStdXcvr3 third;
    EXPECT_GE(load(first, file) | load(second, file) | load(third, file), 0);
    EXPECT_EQ(third.GetModified(), 0);
    EXPECT_EQ(save(first), transceiverFile(1, from));
    EXPECT_EQ(save(second), transceiverFile(2, from));
    EXPECT_EQ(save(third), transceiverFile(3, from));
    EXPECT_EQ(second.Transceivers.Count() + third.Transceivers.Count() + third.Transceivers2.Count(), 0);
  }
}

TEST(Transceivers, DefaultsOfANewItem) {
  CTransceivers3 list;
  const CTransceiver3 &item = *list.Add("n");
  EXPECT_STREQ(item.TevroskApproved + item.Key() + item.std_id + item.support_level, "FALSEnUnassignedUnassigned");
  EXPECT_STREQ(item.ChannelTypeNumber + item.std_xcvr_id + item.UsesVorlanComPort, "00TRUE");
  EXPECT_STREQ(item.Timing.preamble + item.Channel.flags + item.ModeSpec2.xcvr_gp_data, "Unassigned0xFFFFUnassigned");
  EXPECT_STREQ(item.Timing + item.Channel + item.ModeSpec2 + item, "TimingChannelModeSpecTransceiver");
  EXPECT_EQ(list.Add("N"), nullptr);
  EXPECT_STREQ(CTransceiver("a").Key() + CTransceiver2("b").Key() + CTransceiver3("c").Key(), "abc");
}

TEST(Transceivers, GeneralPurposeDataLosesItsPrefixOnLoadAndGetsItBackOnSave) {
  CTransceiverModeSpec2 mode;
  EXPECT_NE(save(mode).find("<xcvr_gp_data>0xUnassigned<"), std::string::npos);
  checkRows(2,
            "0x1a2b 1A2B  0X1A2B 1A2B  0x -  ab0x12 12  0x12~0x34 12~0X34  X12 X12  1A2B -  - -  abx - "
            "0xUnassigned UNASSIGNED",
            [&mode](const Cells &row) {
              load(mode, "<ModeSpec><xcvr_gp_data>" + std::string(row[0]) + "</xcvr_gp_data></ModeSpec>");
              const CString loaded = mode.xcvr_gp_data;
              const std::string saved = save(mode);
              EXPECT_NE(saved.find("<xcvr_gp_data>0x" + std::string(loaded) + "<"), std::string::npos);
              load(mode, saved);
              EXPECT_STREQ(mode.xcvr_gp_data, loaded);
              return loaded;
            });
  load(mode, "<ModeSpec/>");
  EXPECT_STREQ(mode.xcvr_gp_data, "");
}

TEST(Transceivers, NumbersOfTexts) {
  CTransceivers3 list;
  CTransceiver3 &item = *list.Add("n");
  std::string id, mode, idRefused, modeRefused;
  const auto read = [&](const Cells &row) {
    item.std_id = row[0];
    item.SchedulerMode = row[0];
    id = mode = "";
    idRefused = thrownMessage([&] {
      EXPECT_EQ(list.FindByID(-3), nullptr);
      id = std::to_string(static_cast<int>(item.std_id));
      EXPECT_EQ(list.FindByID(std::stoi(id)), &item);
    });
    modeRefused = thrownMessage([&] { mode = std::to_string(item.GetSchedulerMode()); });
    return CString((id + "/" + mode).c_str());
  };
  checkRows(2,
            "16 16/16  0x10 16/  020 16/20  010 8/10  - 0/0  ~7 7/7  7~ /  Unassigned /0  unassigned /  0x / "
            "-1 -1/4294967295  09 /9  99999999999 2147483647/4294967295  7x /",
            read);
  const std::string text = "Unexpected non-numeric value found in XML data (";
  EXPECT_EQ(idRefused, text + "Error accessing XML tag: std_id Value: '7x') [KRX#101]");
  EXPECT_EQ(modeRefused, text + "7x) [KRX#101]");
}

/// For each version of the list.
template <class List>
void searchInOrder() {
  List list;
  EXPECT_EQ(list.FindByID(0), nullptr);
  ASSERT_EQ(load(list, "<Transceivers><Transceiver Name='a'><std_id>16</std_id></Transceiver><Transceiver Name='b'>"
                       "<std_id>0x10</std_id></Transceiver><Transceiver/></Transceivers>"),
            S_OK);
  EXPECT_STREQ(keyOf(list.FindByID(16)) + keyOf(list.FindByID(17)) + keyOf(list.Find("B")), "anoneb");
  EXPECT_EQ(list.Find(nullptr), nullptr);
  list.Add("Dummy");
  list.Add("c")->std_id = "5";
  EXPECT_STREQ(keyOf(list.FindByID(16)), "a") << "found before the bad one is reached";
  EXPECT_NE(thrownMessage([&] { list.FindByID(5); }), "");
  List copy(list);
  const List &self = copy;
  copy = self;
  EXPECT_EQ(support::keys(copy), "a,b,Dummy,c");
  EXPECT_EQ(save(copy), save(list));
}

TEST(Transceivers, SearchesInOrder) {
  searchInOrder<CTransceivers>(), searchInOrder<CTransceivers2>(), searchInOrder<CTransceivers3>();
}

TEST(Transceivers, ModeSpecFollowsOnLoadAndAssignmentOnly) {
  CTransceiver3 item;
  EXPECT_GE(load(item, "<Transceiver Name='n'><alt_rate_tag>5</alt_rate_tag><ModeSpec><alt_rate_tag>6</alt_rate_tag>"
                       "<xcvr_gp_data>0xab</xcvr_gp_data></ModeSpec></Transceiver>"),
            0);
  EXPECT_STREQ(item.Key() + item.ModeSpec.alt_rate_tag + item.ModeSpec.xcvr_gp_data, "n6AB");
  item.ModeSpec2.alt_rate_tag = "7";
  const CTransceiver3 &self = item;
  item = self;
  EXPECT_STREQ(item.ModeSpec.alt_rate_tag, "6") << "assigning an object to itself changes nothing";
  EXPECT_STREQ(CTransceiver3(item).ModeSpec.alt_rate_tag, "7");
  EXPECT_EQ(item.LoadFromFile("/nonexistent/a.xml", nullptr), KRX_E_FILE_NOT_FOUND);
  EXPECT_STREQ(item.ModeSpec.alt_rate_tag, "7");
}

} // namespace
