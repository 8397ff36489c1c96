#include "tests/document_support.h"

#include <functional>

namespace {

using support::keyOf;

/// What `get` gives for a record whose member `tag` holds the text, or the message of its exception.
template <class Record, class Get>
std::function<std::string(const std::string &)> reader(const std::string &tag, Get get) {
  return [=](const std::string &text) {
    Record record;
    const std::string root(record.GetTag());
    support::load(record,
                  "<" + root + " " + tag + "='" + text + "'><" + tag + ">" + text + "</" + tag + "></" + root + ">");
    std::ostringstream value;
    const std::string message = support::thrownMessage([&] { value << std::invoke(get, record); });
    return message + value.str();
  };
}

TEST(ChipAccessors, ReadNumbersInTheFormOfTheirMember) {
  const auto clock = reader<CClock>("Value", &CClock::Value);
  const auto divider = reader<CClock>("CycleDivider", &CClock::CycleDivider);
  const auto oscillator = reader<COscillator>("Value", &COscillator::Value);
  const auto encoding = reader<COscillator>("Encoding", &COscillator::Encoding);
  const auto cpu = reader<CMultiplier>("Cpu", &CMultiplier::Cpu);
  const auto mac = reader<CMultiplier>("Mac", &CMultiplier::Mac);
  const auto family = reader<CVorlanModel4>("Family", &CVorlanModel4::Family);
  const auto pullups = reader<CVorlanModel4>("ProgrammablePullups", &CVorlanModel4::ProgrammablePullups);
  EXPECT_EQ(clock("0.5"), "0.5");
  EXPECT_EQ(clock("12 "), "Unexpected non-numeric value found in XML data (12 ) [KRX#101]");
  EXPECT_EQ(divider("1e-1"), "0.1");
  EXPECT_EQ(oscillator("010"), "10") << "always decimal";
  EXPECT_EQ(encoding("010"), "10");
  EXPECT_EQ(cpu("0x10") + mac("-3"), "16-3");
  EXPECT_EQ(family("010"), "8");
  EXPECT_EQ(family("4294967296"), "-1");
  EXPECT_EQ(pullups("0x1F"), "31");
  EXPECT_EQ(pullups("-1"), "4294967295");
}

TEST(ChipAccessors, GiveTheTextOfTheirMember) {
  EXPECT_EQ(reader<CNVMemoryType>("Description", &CNVMemoryType::Description)("d"), "d");
  EXPECT_EQ(reader<CNVMemoryType>("Symbol", &CNVMemoryType::Symbol)("s"), "s");
  EXPECT_EQ(reader<CClock>("Description", &CClock::Description)("d"), "d");
  EXPECT_EQ(reader<CClock>("Encoding", &CClock::Encoding)("e"), "e");
}

TEST(ChipAccessors, ReadTruthWordsWithoutRegardToCaseAndBlanks) {
  const auto uart = reader<CClock>("Uart", &CClock::Uart);
  EXPECT_EQ(uart("\tt r u e"), "1");
  EXPECT_EQ(uart("No"), "0");
  EXPECT_EQ(uart("10"), "Unrecognized boolean constant '10' [KRX#132]");
}

struct ChipSearches : testing::Test {
  void SetUp() override {
    ASSERT_EQ(support::load(schemes, support::read(KESTRUNE_TEST_DATA "/chip/searches.xml")), S_OK);
  }

  CClockingSchemes schemes;
};

TEST_F(ChipSearches, CompareTextsWithoutBlanksAndNumbersByValue) {
  CClocks &clocks = *schemes[0]->Clocks();
  EXPECT_STREQ(keyOf(clocks.Find(10000.0)), "1e4");
  EXPECT_TRUE(support::throws<CKRXException>([&] { clocks.Find(20000.0); })) << "a text before it is no number";
  EXPECT_STREQ(keyOf(clocks.FindByDisplay("10MHz")), "1e4");
  EXPECT_STREQ(keyOf(clocks.FindByDisplay("10 mhz")), "none");
  EXPECT_STREQ(keyOf(clocks.FindByDisplay("1/2")), "5000") << "the first of that name, however deep";
  EXPECT_STREQ(keyOf(clocks.FindByEncoding("B")), "10000");
  CMultipliers &multipliers = *clocks[1]->Multipliers();
  EXPECT_STREQ(keyOf(multipliers.Find(0.5 + 2e-16)), "0.5");
  EXPECT_STREQ(keyOf(multipliers.FindByEncoding(" x")), "0.5");
  COscillators &oscillators = *clocks[0]->Oscillators();
  EXPECT_STREQ(keyOf(oscillators.Find(4)), "4");
  EXPECT_STREQ(keyOf(oscillators.FindByEncoding(5)), "3");
  EXPECT_STREQ(keyOf(oscillators.Find("o s c3")), "3") << "case does not count";
}

TEST_F(ChipSearches, EmptyOscillatorsActAsOne) {
  COscillators empty;
  EXPECT_STREQ(empty.Find(7)->Display(), "OSC1");
  EXPECT_NE(empty.Find("any"), nullptr);
  EXPECT_NE(empty.FindByEncoding(9), nullptr);
  empty.Add("x");
  EXPECT_EQ(empty.Find(99), nullptr);
}

TEST_F(ChipSearches, PairsOfClockAndMultiplier) {
  CClock *clock = nullptr;
  CMultiplier *multiplier = nullptr;
  EXPECT_TRUE(schemes.FindByDisplay(16, "10 MHz", "1 / 2", &clock, &multiplier));
  EXPECT_STREQ(keyOf(clock), "1e4");
  EXPECT_STREQ(keyOf(multiplier), "1");
  EXPECT_FALSE(schemes.FindByDisplay(16, "11 MHz", "1/2", &clock, &multiplier));
  EXPECT_EQ(clock, nullptr);
  EXPECT_STREQ(keyOf(multiplier), "1") << "without a clock nothing is written";
  EXPECT_TRUE(schemes.FindByEncoding(16, "b", "x", &clock, &multiplier));
  EXPECT_TRUE(schemes.FindByValue(16, 10000, 2, &clock, &multiplier));
  EXPECT_STREQ(keyOf(multiplier), "2");
}

TEST_F(ChipSearches, Schemes) {
  ASSERT_EQ(schemes.Count(), 4) << "an item without key attribute is passed over";
  EXPECT_STREQ(keyOf(schemes.Find(16)), "0x10");
  EXPECT_STREQ(schemes.Add("9")->Key(), "Unassigned") << "the key is not written into the new item";
}

} // namespace
