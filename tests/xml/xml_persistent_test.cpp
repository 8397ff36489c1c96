#include "tests/test_support.h"
#include "tests/xml/sample_records.h"

namespace {

constexpr const char *kNull = nullptr;

struct State {
  explicit State(const CXMLPersistent &value) : text(value), tag(value.GetTag()), flag(value.GetModified()) {}
  CString text;
  CString tag;
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
  enum Flag { kUnmodified = 0, kModified = 1 };
  const struct {
    const char *call;
    State made;
    const char *text;
    const char *tag;
    Flag flag;
  } rows[] = {
      {"constructor", State(CXMLPersistent()), "Unassigned", "Undefined", kUnmodified},
      {"constructor of a hexadecimal value", State(Hex()), "0xFFFF", "Undefined", kUnmodified},
      // Init with a text leaves the flag alone, with a number or a truth value it sets it.
      {"Init(text)", init<Attribute>("T", "x"), "x", "T", kUnmodified},
      {"Init(null)", init<Attribute>("T", kNull), "Unassigned", "T", kUnmodified},
      {"Init without a tag", init<Element>(kNull, "x"), "x", "Unassigned", kUnmodified},
      {"Init(-7)", init<Element>("T", -7), "-7", "T", kModified},
      {"Init(0), which is a null text", init<Attribute>("T", 0), "Unassigned", "T", kUnmodified},
      {"Init(true)", init<Bool>("T", true), "TRUE", "T", kModified},
      {"Init(false)", init<Bool>(kNull, false), "FALSE", "Unassigned", kModified},
      {"Init(0) of a hexadecimal value", init<Hex>("T", 0), "0x0", "T", kModified},
      // An assignment of the same text changes nothing.
      {"= the same text", assign<Attribute>("Unassigned"), "Unassigned", "Undefined", kUnmodified},
      {"= 0", assign<Attribute>(0), "0", "Undefined", kModified},
      {"= \"0\" of a hexadecimal value", assign<Hex>("0"), "0x0", "Undefined", kModified},
      {"= a text, of a truth value", assign<Bool>("?"), "?", "Undefined", kModified},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.call);
    EXPECT_STREQ(row.made.text, row.text);
    EXPECT_STREQ(row.made.tag, row.tag);
    EXPECT_EQ(row.made.flag, row.flag);
  }
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
  for (const char *text : {"TRUE", "true"}) {
    item.Flag = text;
    EXPECT_TRUE(static_cast<int>(item.Flag)) << text;
    EXPECT_TRUE(constant.Flag ? true : false) << text;
  }
  for (const char *text : {"FALSE", "False"}) {
    item.Flag = text;
    EXPECT_FALSE(static_cast<int>(item.Flag)) << text;
    EXPECT_FALSE(constant.Flag ? true : false) << text;
    EXPECT_FALSE(!constant.Flag) << text << ", as it is without const";
  }
  for (const std::string text : {"Unassigned", "1", "YES", "", " TRUE"}) {
    item.Flag = text.c_str();
    const std::string message = support::thrownMessage([&] { static_cast<void>(!item.Flag); });
    EXPECT_NE(message.find("Value: '" + text + "'"), std::string::npos) << message;
    EXPECT_EQ(support::thrownMessage([&] { static_cast<void>(constant.Flag ? 1 : 0); }), message);
  }
}

template <class Value>
concept LetsInitOut = requires(Value value) {
  value.Init();
};
static_assert(!LetsInitOut<CXMLAttribute>);
static_assert(!LetsInitOut<CXMLHexElement>);
static_assert(LetsInitOut<CXMLFolder>);

TEST(XmlPersistent, HexWarningGoesToTheDebugChannel) {
  std::string told;
  kestrune::platform::SetDebugSink([&](const char *text) { told += text; });
  CXMLHexElement value;
  for (const char *text : {"0x12", "0", "0X12", "255"})
    value = text;
  kestrune::platform::SetDebugSink({});
  EXPECT_EQ(told, "KO. CXMLHexElement. You must prefix hex values with 0x, you tried: 0X12\n"
                  "KO. CXMLHexElement. You must prefix hex values with 0x, you tried: 255\n");
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
