#include "tests/document_support.h"

#include <functional>

namespace {

using support::keyOf;

/// What `get` gives for a record whose member `tag` holds the text. It may throw.
template <class Record, class Get>
std::function<double(const std::string &)> reader(const std::string &tag, Get get) {
  return [=](const std::string &text) {
    Record record;
    const std::string root(record.GetTag());
    support::load(record,
                  "<" + root + " " + tag + "='" + text + "'><" + tag + ">" + text + "</" + tag + "></" + root + ">");
    return static_cast<double>(std::invoke(get, record));
  };
}

TEST(ChipAccessors, ReadNumbersInTheFormOfTheirMember) {
  enum Form { kSigned, kUnsignedAsInt, kUnsigned, kDecimal, kDouble };
  const struct {
    const char *name;
    Form form;
    std::function<double(const std::string &)> read;
  } accessors[] = {
      {"CClock::Value", kDouble, reader<CClock>("Value", &CClock::Value)},
      {"CMultiplier::Value", kDouble, reader<CMultiplier>("Value", &CMultiplier::Value)},
      {"CMultiplier::Cpu", kSigned, reader<CMultiplier>("Cpu", &CMultiplier::Cpu)},
      {"COscillator::Value", kDecimal, reader<COscillator>("Value", &COscillator::Value)},
      {"CClockingScheme::Id", kSigned, reader<CClockingScheme>("Id", &CClockingScheme::Id)},
      {"FlashDriverID", kSigned, reader<CNVMemoryType>("FlashDriverID", &CNVMemoryType::FlashDriverID)},
      {"InstructionSet", kSigned, reader<CVorlanModel4>("InstructionSet", &CVorlanModel4::InstructionSet)},
      {"Family", kUnsignedAsInt, reader<CVorlanModel4>("Family", &CVorlanModel4::Family)},
      {"CapacityModel", kUnsignedAsInt, reader<CVorlanModel4>("CapacityModel", &CVorlanModel4::CapacityModel)},
      {"Pullups", kUnsigned, reader<CVorlanModel4>("ProgrammablePullups", &CVorlanModel4::ProgrammablePullups)},
  };
  constexpr double kThrows = 0.125;
  const struct {
    const char *text;
    double bySigned, byUnsignedAsInt, byUnsigned, byDecimal, byDouble;
  } rows[] = {
      {"  12", 12, 12, 12, 12, 12},
      // Octal and hexadecimal, except for decimal members.
      {"010", 8, 8, 8, 10, 10},
      {"0x1F", 31, 31, 31, kThrows, 31},
      {"-1", -1, -1, 4294967295, -1, -1},
      {"99999999999", 2147483647, -1, 4294967295, -1, 99999999999},
      {"", 0, 0, 0, 0, 0},
      {"0.5", kThrows, kThrows, kThrows, kThrows, 0.5},
      {"12 ", kThrows, kThrows, kThrows, kThrows, kThrows},
  };
  for (const auto &row : rows) {
    const double expected[] = {row.bySigned, row.byUnsignedAsInt, row.byUnsigned, row.byDecimal, row.byDouble};
    for (const auto &accessor : accessors) {
      SCOPED_TRACE(testing::Message() << accessor.name << " of '" << row.text << "'");
      double value = kThrows;
      const std::string message = support::thrownMessage([&] { value = accessor.read(row.text); });
      EXPECT_EQ(value, expected[accessor.form]);
      if (value == kThrows) {
        EXPECT_EQ(message, "Unexpected non-numeric value found in XML data (" + std::string(row.text) + ") [KRX#101]");
      }
    }
  }
}

TEST(ChipAccessors, ReadTruthWordsWithoutRegardToCaseAndBlanks) {
  const auto uart = reader<CClock>("Uart", &CClock::Uart);
  for (const char *text : {"1 ", "\tt r u e", "Y E S"})
    EXPECT_EQ(uart(text), 1) << text;
  for (const char *text : {" 0", "False", "No"})
    EXPECT_EQ(uart(text), 0) << text;
  for (const std::string text : {"", "Y", "10"})
    EXPECT_EQ(support::thrownMessage([&] { uart(text); }), "Unrecognized boolean constant '" + text + "' [KRX#132]");
}

class ChipSearches : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_EQ(support::load(schemes, support::read(KESTRUNE_TEST_DATA "/chip/searches.xml")), S_OK);
  }

  CClockingSchemes schemes;
};

/// Whether a search stops at an item whose text is no number.
template <class Search>
bool stops(Search search) {
  return support::throws<CKRXException>(search);
}

TEST_F(ChipSearches, Clocks) {
  CClocks &clocks = *schemes[0]->Clocks();
  EXPECT_STREQ(keyOf(clocks.Find(10000.0)), "1e4");
  EXPECT_TRUE(stops([&] { clocks.Find(20000.0); }));
  EXPECT_STREQ(keyOf(clocks.FindByDisplay("10MHz")), "1e4");
  EXPECT_STREQ(keyOf(clocks.FindByDisplay("10 mhz")), "none");
  EXPECT_STREQ(keyOf(clocks.FindByDisplay("1/2")), "5000") << "the first of that name, however deep";
  EXPECT_STREQ(keyOf(clocks.FindByDisplay(nullptr)), "none");
  EXPECT_STREQ(keyOf(clocks.FindByEncoding("a1")), "1e4");
  EXPECT_STREQ(keyOf(clocks.FindByEncoding("B")), "10000");
}

TEST_F(ChipSearches, Multipliers) {
  CMultipliers &multipliers = *(*schemes[0]->Clocks())[1]->Multipliers();
  EXPECT_STREQ(keyOf(multipliers.Find(0.5 + 2e-16)), "0.5");
  EXPECT_TRUE(stops([&] { multipliers.Find(0.5 + 3e-16); }));
  EXPECT_STREQ(keyOf(multipliers.FindByDisplay("o d d")), "?");
  EXPECT_STREQ(keyOf(multipliers.FindByEncoding(" x")), "0.5");
  EXPECT_STREQ(keyOf(multipliers.FindByEncoding("X")), "none");
}

TEST_F(ChipSearches, Oscillators) {
  COscillators &oscillators = *(*schemes[0]->Clocks())[0]->Oscillators();
  EXPECT_STREQ(keyOf(oscillators.Find(4)), "4");
  EXPECT_TRUE(stops([&] { oscillators.Find(7); }));
  EXPECT_STREQ(keyOf(oscillators.Find("o s c3")), "3") << "case does not count";
  EXPECT_STREQ(keyOf(oscillators.FindByEncoding(5)), "3");
  EXPECT_TRUE(stops([&] { oscillators.FindByEncoding(7); }));
}

TEST_F(ChipSearches, EmptyOscillatorsActAsOne) {
  COscillators empty;
  for (int i = 0; i < 3; ++i) {
    COscillator *const oscillator = i == 0 ? empty.Find("any") : i == 1 ? empty.Find(7) : empty.FindByEncoding(9);
    ASSERT_NE(oscillator, nullptr);
    EXPECT_EQ(oscillator->Value(), 1);
    EXPECT_EQ(oscillator->Encoding(), 1);
    EXPECT_STREQ(oscillator->Display(), "OSC1");
    support::load(*oscillator, "<Oscillator Value='8'><Encoding>8</Encoding><Display>8</Display></Oscillator>");
  }
  EXPECT_EQ(empty.Count(), 0);
  empty.Add("x");
  EXPECT_EQ(empty.Find(99), nullptr);
}

TEST_F(ChipSearches, PairsOfClockAndMultiplier) {
  CClock noClock, *clock = &noClock;
  CMultiplier noMultiplier, *multiplier = &noMultiplier;
  EXPECT_TRUE(schemes.FindByDisplay(16, "10 MHz", "1 / 2", &clock, &multiplier));
  EXPECT_STREQ(keyOf(clock), "1e4");
  EXPECT_STREQ(keyOf(multiplier), "1");
  EXPECT_FALSE(schemes.FindByDisplay(16, "10 MHz", "odd", &clock, &multiplier));
  EXPECT_STREQ(keyOf(clock), "1e4");
  EXPECT_EQ(multiplier, nullptr);
  multiplier = &noMultiplier;
  EXPECT_FALSE(schemes.FindByDisplay(16, "11 MHz", "1/2", &clock, &multiplier));
  EXPECT_EQ(clock, nullptr);
  EXPECT_EQ(multiplier, &noMultiplier) << "without a clock nothing is written";
  EXPECT_TRUE(schemes.FindByEncoding(16, "b", "x", &clock, &multiplier));
  EXPECT_STREQ(keyOf(multiplier), "0.5");
  EXPECT_TRUE(schemes.FindByValue(16, 10000, 2, &clock, &multiplier));
  EXPECT_STREQ(keyOf(multiplier), "2");
  EXPECT_TRUE(stops([&] { schemes.FindByValue(16, 5000, 8, &clock, &multiplier); }));
  EXPECT_STREQ(keyOf(clock), "5000") << "written before the multipliers are looked at";
}

TEST_F(ChipSearches, Schemes) {
  ASSERT_EQ(schemes.Count(), 4) << "an item without key attribute is passed over";
  EXPECT_STREQ(keyOf(schemes.Find(16)), "0x10");
  EXPECT_TRUE(stops([&] { schemes.Find(3); }));
  schemes.Delete("two");
  EXPECT_FALSE(schemes.FindByValue(4, 1, 1, nullptr, nullptr)) << "no such scheme";
  CClockingScheme *const added = schemes.Add("9");
  ASSERT_NE(added, nullptr);
  EXPECT_STREQ(added->Key(), "Unassigned") << "the key is not written into the new item";
  EXPECT_EQ(schemes.Add("unassigned"), nullptr);
}

} // namespace
