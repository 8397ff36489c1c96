#include "tests/test_support.h"
#include "tests/xml/sample_records.h"

namespace {

constexpr const char *kNull = nullptr;

enum Flag { kUnmodified = 0, kModified = 1 };

struct State {
  explicit State(const CXMLPersistent &value) : State(value, value.GetTag(), value.GetModified()) {}
  State(const char *itsText, const char *itsTag, int itsFlag) : text(itsText), tag(itsTag), flag(itsFlag) {}
  bool operator==(const State &) const = default;
  friend void PrintTo(const State &state, std::ostream *out) { *out << state.text << " " << state.tag << state.flag; }

  std::string text;
  std::string tag;
  int flag;
};

template <class Value, class... Arguments>
State init(Arguments... arguments) {
  Value value;
  value.Init(arguments...);
  return State(value);
}

template <class Value>
State assign(auto text) {
  Value value;
  value = text;
  return State(value);
}

TEST(XmlPersistent, InitAndAssignmentSetTextTagAndFlag) {
  using Attribute = CXMLAttribute;
  using Element = CXMLElement;
  using Bool = CXMLBoolAttribute;
  using Hex = CXMLHexElement;
  // Init with a text leaves the flag alone, with a number or a truth value it sets it.
  EXPECT_EQ(State(CXMLPersistent()), State("Unassigned", "Undefined", kUnmodified));
  EXPECT_EQ(State(Hex()), State("0xFFFF", "Undefined", kUnmodified));
  EXPECT_EQ(init<Attribute>("T", "x"), State("x", "T", kUnmodified));
  EXPECT_EQ(init<Attribute>("T", kNull), State("Unassigned", "T", kUnmodified));
  EXPECT_EQ(init<Element>(kNull, "x"), State("x", "Unassigned", kUnmodified));
  EXPECT_EQ(init<Element>("T", -7), State("-7", "T", kModified));
  EXPECT_EQ(init<Attribute>("T", 0), State("Unassigned", "T", kUnmodified)) << "0 is a null text";
  EXPECT_EQ(init<Bool>("T", true), State("TRUE", "T", kModified));
  EXPECT_EQ(init<Bool>("T", "maybe"), State("maybe", "T", kUnmodified));
  EXPECT_EQ(init<Hex>("T", 0), State("0x0", "T", kModified));
  EXPECT_EQ(init<Hex>("T", kNull), State("Unassigned", "T", kUnmodified));
  // An assignment of the same text changes nothing.
  EXPECT_EQ(assign<Attribute>("Unassigned"), State("Unassigned", "Undefined", kUnmodified));
  EXPECT_EQ(assign<Element>(kNull), State("", "Undefined", kModified));
  EXPECT_EQ(assign<Attribute>(0), State("0", "Undefined", kModified));
  EXPECT_EQ(assign<Hex>("0"), State("0x0", "Undefined", kModified));
  EXPECT_EQ(assign<Hex>(4096), State("0x1000", "Undefined", kModified));
  EXPECT_EQ(assign<Bool>(false), State("FALSE", "Undefined", kModified));
  CXMLElement own;
  own = static_cast<const char *>(own) + 2;
  EXPECT_STREQ(own, "assigned") << "a part of its own text";
}

TEST(XmlPersistent, ACopyTakesTextAndTagAndItsFlagWhereTheTextDiffers) {
  CXMLAttribute source, target;
  source.Init("S", "text");
  target.Init("T", "text");
  target = source;
  EXPECT_STREQ(target.GetTag(), "S");
  EXPECT_EQ(std::as_const(target).GetModified(), 0) << "equal texts";
  source = "other";
  source.PutTag(CString());
  target = source;
  EXPECT_STREQ(target, "other");
  EXPECT_STREQ(target.GetTag(), "S") << "an empty tag is not taken";
  EXPECT_EQ(std::as_const(target).GetModified(), 1) << "different texts";
  const CXMLAttribute copy(source);
  EXPECT_STREQ(copy, "other");
  EXPECT_STREQ(copy.GetTag(), "Undefined");
  EXPECT_FALSE(source.isFolder());
}

TEST(XmlPersistent, ConversionToNumber) {
  CXMLElement value;
  value.PutTag(CString("T"));
  EXPECT_EQ(static_cast<int>(value = "0x1F"), 31);
  EXPECT_EQ(static_cast<int>(value = " 12"), 12);
  EXPECT_EQ(static_cast<int>(value = "010"), 8);
  EXPECT_EQ(static_cast<int>(value = ""), 0);
  EXPECT_EQ(static_cast<int>(value = "99999999999"), 2147483647);
  EXPECT_EQ(static_cast<int>(value = "-99999999999"), -2147483647 - 1);
  for (const char *text : {"Unassigned", "12 ", "0x"}) {
    value = text;
    EXPECT_EQ(support::thrownMessage([&] { static_cast<void>(static_cast<int>(value)); }),
              "Unexpected non-numeric value found in XML data (Error accessing XML tag: T Value: '" +
                  std::string(text) + "') [KRX#101]");
    EXPECT_STREQ(value, text);
  }
}

TEST(XmlPersistent, ConversionToTruth) {
  sample::Item item;
  const sample::Item &constant = item;
  item.Flag = "true";
  EXPECT_EQ(static_cast<int>(item.Flag), 1);
  EXPECT_TRUE(constant.Flag ? true : false);
  EXPECT_TRUE(!item.Flag) << "not its opposite";
  item.Flag = "False";
  EXPECT_EQ(static_cast<int>(item.Flag), 0);
  EXPECT_FALSE(constant.Flag ? true : false);
  EXPECT_FALSE(!constant.Flag);
  for (const std::string text : {"Unassigned", "1", "", " TRUE"}) {
    item.Flag = text.c_str();
    const std::string message = support::thrownMessage([&] { static_cast<void>(!item.Flag); });
    EXPECT_NE(message.find("Value: '" + text + "'"), std::string::npos) << message;
  }
}

TEST(XmlDom, TextConversions) {
  EXPECT_STREQ(IntToHexStr(-1), "0xFFFFFFFF");
  EXPECT_STREQ(IntToHexStrNoX(5), "05");
  EXPECT_STREQ(IntToHexStrNoX(256), "100");
  EXPECT_STREQ(HexStrToIntStr("0xFF"), "255");
  EXPECT_STREQ(HexStrToIntStr("  1g"), "1");
  EXPECT_STREQ(HexStrToIntStr("FFFFFFFF"), "-1");
  EXPECT_STREQ(IntStrToHexStr("-1x"), "0xFFFFFFFF");
  EXPECT_STREQ(IntStrToHexStr("99999999999"), "0x7FFFFFFF");
  EXPECT_STREQ(BSTRtoCString(CStringToBSTR("Größe €")), "Größe €");
}

} // namespace
