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
      {"Init(text) of a truth value", init<Bool>("T", "maybe"), "maybe", "T", kUnmodified},
      {"Init(null) of a hexadecimal value", init<Hex>("T", kNull), "Unassigned", "T", kUnmodified},
      {"Init(0) of a hexadecimal value", init<Hex>("T", 0), "0x0", "T", kModified},
      {"Init(-1) of a hexadecimal value", init<Hex>("T", -1), "0xFFFFFFFF", "T", kModified},
      // An assignment of the same text changes nothing.
      {"= the same text", assign<Attribute>("Unassigned"), "Unassigned", "Undefined", kUnmodified},
      {"= the text in another case", assign<Attribute>("unassigned"), "unassigned", "Undefined", kModified},
      {"= null", assign<Element>(kNull), "", "Undefined", kModified},
      {"= 0", assign<Attribute>(0), "0", "Undefined", kModified},
      {"= \"0\" of a hexadecimal value", assign<Hex>("0"), "0x0", "Undefined", kModified},
      {"= \"255\" of a hexadecimal value", assign<Hex>("255"), "255", "Undefined", kModified},
      {"= 4096 of a hexadecimal value", assign<Hex>(4096), "0x1000", "Undefined", kModified},
      {"= false", assign<Bool>(false), "FALSE", "Undefined", kModified},
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
  CString tag("tag");
  EXPECT_STREQ(CXMLPersistent(tag).GetTag(), "tag");
  EXPECT_FALSE(source.isFolder());
}

TEST(XmlPersistent, ConversionToNumber) {
  CXMLElement value;
  value.PutTag(CString("T"));
  const std::pair<const char *, int> rows[] = {
      {"0x1F", 31},
      // A number past the range gives its limit.
      {"017", 15},
      {" 12", 12},
      {"", 0},
      {"-5", -5},
      {"99999999999", 2147483647},
      {"-99999999999", -2147483647 - 1},
  };
  for (const auto &[text, number] : rows)
    EXPECT_EQ(static_cast<int>(value = text), number) << text;
  for (const char *text : {"Unassigned", "12 ", "0x", "1.5", "089"}) {
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
static_assert(!LetsInitOut<CXMLBoolAttribute>);
static_assert(!LetsInitOut<CXMLElement>);
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
  const struct {
    const char *call;
    CString result;
    const char *expected;
  } rows[] = {
      {"IntToCString(-12)", IntToCString(-12), "-12"},
      {"IntToHexStr(0)", IntToHexStr(0), "0x0"},
      {"IntToHexStr(-1)", IntToHexStr(-1), "0xFFFFFFFF"},
      {"IntToHexStrNoX(5)", IntToHexStrNoX(5), "05"},
      {"IntToHexStrNoX(256)", IntToHexStrNoX(256), "100"},
      {"HexStrToIntStr(0xFF)", HexStrToIntStr("0xFF"), "255"},
      {"HexStrToIntStr(  1g)", HexStrToIntStr("  1g"), "1"},
      {"HexStrToIntStr(xyz)", HexStrToIntStr("xyz"), "0"},
      {"HexStrToIntStr(FFFFFFFF)", HexStrToIntStr("FFFFFFFF"), "-1"},
      {"IntStrToHexStr(-1x)", IntStrToHexStr("-1x"), "0xFFFFFFFF"},
      {"IntStrToHexStr(none)", IntStrToHexStr("none"), "0x0"},
      {"IntStrToHexStr(99999999999)", IntStrToHexStr("99999999999"), "0x7FFFFFFF"},
      {"both ways", BSTRtoCString(CStringToBSTR("Größe €")), "Größe €"},
  };
  for (const auto &row : rows)
    EXPECT_STREQ(row.result, row.expected) << row.call;
}

} // namespace
