#include "tests/document_support.h"

#include <algorithm>
#include <functional>
#include <sstream>

namespace {

using Reader = std::function<std::string(const std::string &)>;

/// What `get` gives for a record whose member `tag` holds the text, or the message of what it throws.
template <class Record, class Get>
Reader reader(const std::string &tag, Get get) {
  return [=](const std::string &text) {
    Record record;
    const std::string root(record.GetTag());
    support::load(record,
                  "<" + root + " " + tag + "='" + text + "'><" + tag + ">" + text + "</" + tag + "></" + root + ">");
    std::ostringstream value;
    const std::string message = support::thrownMessage([&] { value << std::invoke(get, record); });
    return message.empty() ? value.str() : message;
  };
}

TEST(ChipAccessors, Numbers) {
  enum Kind { kSigned, kUnsignedAsInt, kUnsigned, kDecimal, kDouble };
  const struct {
    const char *name;
    Kind kind;
    Reader read;
  } accessors[] = {
      {"CClock::Value", kDouble, reader<CClock>("Value", &CClock::Value)},
      {"CClock::CycleDivider", kDouble, reader<CClock>("CycleDivider", &CClock::CycleDivider)},
      {"CMultiplier::Value", kDouble, reader<CMultiplier>("Value", &CMultiplier::Value)},
      {"CMultiplier::Cpu", kSigned, reader<CMultiplier>("Cpu", &CMultiplier::Cpu)},
      {"CMultiplier::Mac", kSigned, reader<CMultiplier>("Mac", &CMultiplier::Mac)},
      {"COscillator::Value", kDecimal, reader<COscillator>("Value", &COscillator::Value)},
      {"COscillator::Encoding", kDecimal, reader<COscillator>("Encoding", &COscillator::Encoding)},
      {"CClockingScheme::Id", kSigned, reader<CClockingScheme>("Id", &CClockingScheme::Id)},
      {"CClockingScheme::Algorithm", kSigned, reader<CClockingScheme>("Algorithm", &CClockingScheme::Algorithm)},
      {"CNVMemoryType::DriverKey", kSigned, reader<CNVMemoryType>("Key", &CNVMemoryType::DriverKey)},
      {"FlashDriverID", kSigned, reader<CNVMemoryType>("FlashDriverID", &CNVMemoryType::FlashDriverID)},
      {"InstructionSet", kSigned, reader<CVorlanModel4>("InstructionSet", &CVorlanModel4::InstructionSet)},
      {"ClockingScheme", kSigned, reader<CVorlanModel4>("ClockingScheme", &CVorlanModel4::ClockingScheme)},
      {"Family", kUnsignedAsInt, reader<CVorlanModel4>("Family", &CVorlanModel4::Family)},
      {"CapacityModel", kUnsignedAsInt, reader<CVorlanModel4>("CapacityModel", &CVorlanModel4::CapacityModel)},
      {"Pullups", kUnsigned, reader<CVorlanModel4>("ProgrammablePullups", &CVorlanModel4::ProgrammablePullups)},
  };
  // A text and what comes of it, by kind; `~` is a blank, `-` the empty text, and `!` an exception.
  std::istringstream rows(R"(
    12          12         12 12         12 12
    ~~12        12         12 12         12 12
    -1          -1         -1 4294967295 -1 -1
    010         8          8  8          10 10
    0x1F        31         31 31         !  31
    4294967295  2147483647 -1 4294967295 -1 4.29497e+09
    99999999999 2147483647 -1 4294967295 -1 1e+11
    -           0          0  0          0  0
    0.5         !          !  !          !  0.5
    1e4         !          !  !          !  10000
    12~         !          !  !          !  !
    2x          !          !  !          !  !
    Unassigned  !          !  !          !  !)");
  for (std::string text, values[5]; rows >> text >> values[0] >> values[1] >> values[2] >> values[3] >> values[4];) {
    std::replace(text.begin(), text.end(), '~', ' ');
    text = text == "-" ? "" : text;
    for (const auto &accessor : accessors) {
      const std::string &value = values[accessor.kind];
      EXPECT_EQ(accessor.read(text),
                value != "!" ? value : "Unexpected non-numeric value found in XML data (" + text + ") [KRX#101]")
          << accessor.name << " of '" << text << "'";
    }
  }
}

TEST(ChipAccessors, TruthValue) {
  const Reader uart = reader<CClock>("Uart", &CClock::Uart);
  for (const std::string text : {"1 1 ", "1\tt r u e", "1Y E S", "0 0", "0False", "0No"})
    EXPECT_EQ(uart(text.substr(1)), text.substr(0, 1)) << text;
  for (const std::string text : {"", "Y", "10", "2", "Unassigned"})
    EXPECT_EQ(uart(text), "Unrecognized boolean constant '" + text + "' [KRX#132]");
}

/// Schemes to search in. In each list, an item without a number stands before the last.
class ChipSearches : public testing::Test {
protected:
  void SetUp() override {
    const char *const xml = R"(<ClockingSchemes><ClockingScheme Id='0x10'><Clocks>
      <Clock Value='1e4'><Display>10 MHz</Display><Encoding>a 1</Encoding><Multipliers>
        <Multiplier Value='1'><Display>1/2</Display></Multiplier><Multiplier Value='2'/></Multipliers><Oscillators>
        <Oscillator Value='3'><Encoding>5</Encoding><Display>OSC 3</Display></Oscillator>
        <Oscillator Value='4'><Encoding>5</Encoding><Display>osc3</Display></Oscillator>
        <Oscillator Value='six'><Encoding>six</Encoding></Oscillator>
        <Oscillator Value='7'><Encoding>7</Encoding></Oscillator></Oscillators></Clock>
      <Clock Value='5000'><Encoding>b</Encoding><Multipliers><Multiplier Value='0.5'><Display>1/2</Display>
        <Description>deep</Description><Encoding>x</Encoding></Multiplier>
        <Multiplier Value='?'><Display>odd</Display></Multiplier><Multiplier Value='8'/></Multipliers></Clock>
      <Clock Value='10000'><Display>10 MHz</Display><Encoding>B</Encoding></Clock>
      <Clock Value='fast'/><Clock Value='20000'><Display>20</Display></Clock></Clocks></ClockingScheme>
      <ClockingScheme Id='16'><Clocks><Clock Value='1'><Description>deep</Description></Clock></Clocks></ClockingScheme>
      <ClockingScheme/><ClockingScheme Id='two'/><ClockingScheme Id='3'/></ClockingSchemes>)";
    ASSERT_EQ(support::load(schemes, xml), S_OK);
  }

  /// The keys of what a search finds, and the texts that it throws in parentheses; `-` for null.
  template <class Key, class List, class Item>
  static std::string found(List &list, Item *(List::*search)(Key), std::initializer_list<Key> keys) {
    std::string all;
    for (const Key key : keys) {
      Item *item = nullptr;
      const std::string message = support::thrownMessage([&] { item = (list.*search)(key); });
      all += message.empty() ? item != nullptr ? std::string(item->Key()) : "-"
                             : message.substr(message.find('('), message.find(')') - message.find('(') + 1);
      all += " ";
    }
    return all;
  }

  CClockingSchemes schemes;
};

TEST_F(ChipSearches, ClocksMultipliersOscillators) {
  using Text = const char *;
  CClocks &clocks = *schemes[0]->Clocks();
  EXPECT_EQ(found(clocks, &CClocks::Find, {10000.0, 5000.0, 20000.0}), "1e4 5000 (fast) ");
  EXPECT_EQ(found<Text>(clocks, &CClocks::FindByDisplay, {"10MHz", "10 mhz", "20 ", nullptr}), "1e4 - 20000 - ");
  EXPECT_EQ(found<Text>(clocks, &CClocks::FindByDisplay, {"1/2"}), "5000 ") << "the first of that name, however deep";
  EXPECT_EQ(found<Text>(clocks, &CClocks::FindByEncoding, {"a1", "B", "A1", nullptr}), "1e4 10000 - - ");
  EXPECT_STREQ(clocks[1]->Description(), "deep");

  CMultipliers &multipliers = *clocks[1]->Multipliers();
  EXPECT_EQ(found(multipliers, &CMultipliers::Find, {0.5 + 2e-16, 0.5 + 3e-16, 8.0}), "0.5 (?) (?) ");
  EXPECT_EQ(found<Text>(multipliers, &CMultipliers::FindByDisplay, {"o d d", "ODD", nullptr}), "? - - ");
  EXPECT_EQ(found<Text>(multipliers, &CMultipliers::FindByEncoding, {" x", "X", nullptr}), "0.5 - - ");

  COscillators &oscillators = *clocks[0]->Oscillators();
  EXPECT_EQ(found<int>(oscillators, &COscillators::Find, {4, 7}), "4 (six) ");
  EXPECT_EQ(found<Text>(oscillators, &COscillators::Find, {"o s c3", "osc2", nullptr}), "3 - - ");
  EXPECT_EQ(found(oscillators, &COscillators::FindByEncoding, {5, 7}), "3 (six) ");
}

TEST_F(ChipSearches, EmptyOscillatorsActAsOne) {
  COscillators empty;
  for (int i = 0; i < 3; ++i) {
    COscillator *const oscillator = i == 0 ? empty.Find("any") : i == 1 ? empty.Find(7) : empty.FindByEncoding(9);
    ASSERT_NE(oscillator, nullptr);
    EXPECT_EQ(oscillator->Value() + oscillator->Encoding(), 2);
    EXPECT_STREQ(oscillator->Display(), "OSC1");
    support::load(*oscillator, "<Oscillator Value='8'><Encoding>8</Encoding><Display>8</Display></Oscillator>");
  }
  EXPECT_EQ(empty.Count(), 0);
  empty.Add("x");
  EXPECT_EQ(empty.Find(99), nullptr);
}

TEST_F(ChipSearches, Schemes) {
  ASSERT_EQ(schemes.Count(), 4) << "an item without key attribute is passed over";
  EXPECT_EQ(found(schemes, &CClockingSchemes::Find, {16, 3}), "0x10 (two) ");
  EXPECT_STREQ(schemes[1]->Description(), "deep");

  CClock *clock;
  CMultiplier *multiplier;
  /// The result of a search in the schemes, and the keys of what it has written.
  const auto pair = [&](auto search, auto... keys) {
    CClock noClock;
    CMultiplier noMultiplier;
    const bool result = (schemes.*search)(keys..., &(clock = &noClock), &(multiplier = &noMultiplier));
    return (result ? "yes" : "no") + (clock == &noClock ? "" : " " + std::string(support::keyOf(clock))) +
           (multiplier == &noMultiplier ? "" : " " + std::string(support::keyOf(multiplier)));
  };
  constexpr const char *kNull = nullptr;
  const auto byDisplay = &CClockingSchemes::FindByDisplay;
  const auto byEncoding = &CClockingSchemes::FindByEncoding;
  const auto byValue = &CClockingSchemes::FindByValue;
  EXPECT_EQ(pair(byDisplay, 16, "10 MHz", "1 / 2"), "yes 1e4 1");
  EXPECT_EQ(pair(byDisplay, 16, "1/2", "1/2"), "yes 5000 0.5") << "only the multipliers of that clock";
  EXPECT_EQ(pair(byDisplay, 16, "10 MHz", "odd"), "no 1e4 none");
  EXPECT_EQ(pair(byDisplay, 16, "11 MHz", "1/2"), "no none");
  EXPECT_EQ(pair(byEncoding, 16, "b", "x"), "yes 5000 0.5");
  EXPECT_EQ(pair(byEncoding, 16, kNull, "x"), "no none");
  EXPECT_EQ(pair(byValue, 16, 10000, 2), "yes 1e4 2");
  EXPECT_NE(support::thrownMessage([&] { pair(byValue, 16, 5000, 8); }), "");
  EXPECT_STREQ(support::keyOf(clock), "5000") << "written before the multipliers are looked at";
  EXPECT_NE(support::thrownMessage([&] { pair(byDisplay, 3, "", ""); }), "");
  schemes.Delete("two");
  EXPECT_EQ(pair(byValue, 4, 1, 1) + pair(byDisplay, 4, "1", "1") + pair(byEncoding, 4, "1", "1"), "nonono");

  CClockingScheme *const added = schemes.Add("9");
  ASSERT_NE(added, nullptr);
  EXPECT_STREQ(added->Key(), "Unassigned") << "the key is not written into the new item";
  EXPECT_EQ(schemes.Add("unassigned"), nullptr);
}

} // namespace
