#include "tests/document_support.h"
#include "tests/xml/sample_records.h"

namespace {

/// Text, tag and flag in one line.
template <class Value>
std::string state(const Value &value) {
  const CXMLPersistent &base = value;
  return static_cast<const char *>(value) + std::string("|") + static_cast<const char *>(base.GetTag()) + "|" +
         std::to_string(base.GetModified());
}

template <class Value, class... Arguments>
std::string init(Arguments... arguments) {
  Value value;
  value.Init(arguments...);
  return state(value) + " ";
}

template <class Value>
std::string assign(auto text) {
  Value value;
  value = text;
  return state(value) + " ";
}

TEST(XmlPersistent, InitAndAssignment) {
  using Attribute = CXMLAttribute;
  using Element = CXMLElement;
  using Bool = CXMLBoolAttribute;
  using Hex = CXMLHexElement;
  constexpr const char *kNull = nullptr;
  EXPECT_EQ(state(CXMLPersistent()) + " " + state(Hex()), "Unassigned|Undefined|0 0xFFFF|Undefined|0");
  EXPECT_EQ(init<Attribute>("T", "x") + init<Attribute>("T", kNull), "x|T|0 Unassigned|T|0 ");
  EXPECT_EQ(init<Element>(kNull, "x") + init<Element>("T", -7), "x|Unassigned|0 -7|T|1 ");
  EXPECT_EQ(init<Attribute>("T", 0) + init<Attribute>("T", "0"), "Unassigned|T|0 0|T|0 ");
  EXPECT_EQ(init<Bool>("T", true) + init<Bool>(kNull, false), "TRUE|T|1 FALSE|Unassigned|1 ");
  EXPECT_EQ(init<Bool>("T", "maybe") + init<Hex>("T", kNull), "maybe|T|0 Unassigned|T|0 ");
  EXPECT_EQ(init<Hex>("T", 0) + init<Hex>("T", 255) + init<Hex>("T", -1), "0x0|T|1 0xFF|T|1 0xFFFFFFFF|T|1 ");
  EXPECT_EQ(init<Hex>("T", "0xFFFF") + assign<Attribute>("Unassigned"), "0xFFFF|T|0 Unassigned|Undefined|0 ");
  EXPECT_EQ(assign<Attribute>("unassigned") + assign<Element>(kNull), "unassigned|Undefined|1 |Undefined|1 ");
  EXPECT_EQ(assign<Attribute>(0) + assign<Hex>("0"), "0|Undefined|1 0x0|Undefined|1 ");
  EXPECT_EQ(assign<Hex>("255") + assign<Hex>(4096), "255|Undefined|1 0x1000|Undefined|1 ");
  EXPECT_EQ(assign<Bool>(false) + assign<Bool>("?"), "FALSE|Undefined|1 ?|Undefined|1 ");
  Element own;
  own = static_cast<const char *>(own) + 2;
  EXPECT_EQ(state(own), "assigned|Undefined|1") << "a part of its own text";
}

TEST(XmlPersistent, Copies) {
  CXMLAttribute source;
  source.Init("S", "text");
  CXMLAttribute target;
  target.Init("T", "text");
  target = source;
  EXPECT_EQ(state(target), "text|S|0") << "equal texts";
  source = "other";
  target = source;
  EXPECT_EQ(state(target), "other|S|1") << "different texts";
  EXPECT_EQ(state(CXMLAttribute(source)), "other|S|1");
  source.PutTag(CString());
  target = source;
  EXPECT_EQ(state(target), "other|S|1") << "an empty tag";
  EXPECT_EQ(state(CXMLAttribute(source)), "other|Undefined|1");
  CString tag("tag");
  EXPECT_EQ(state(CXMLPersistent(tag)), "Unassigned|tag|0");
  EXPECT_FALSE(source.isFolder());
}

TEST(XmlPersistent, ConversionToNumber) {
  CXMLElement value;
  value.PutTag(CString("T"));
  support::checkRows(2, "0x1F 31 017 15 ~12 12 - 0 -5 -5 0xffff 65535 99999999999 2147483647 -99999999999 -2147483648",
                     [&](const support::Cells &row) { return IntToCString(static_cast<int>(value = row[0])); });
  for (const char *text : {"Unassigned", "12 ", "12kHz", "0x", "1.5", "089"}) {
    value = text;
    EXPECT_EQ(support::thrownMessage([&] { static_cast<void>(static_cast<int>(value)); }),
              "Unexpected non-numeric value found in XML data (Error accessing XML tag: T Value: '" +
                  std::string(text) + "') [KRX#101]");
    EXPECT_STREQ(value, text);
  }
  EXPECT_EQ(static_cast<int>(CXMLHexElement()), 65535);
}

TEST(XmlPersistent, ConversionToTruth) {
  CXMLBoolAttribute value;
  support::checkRows(2, "TRUE 11 true 11 False 0 FALSE 0", [&](const support::Cells &row) {
    value = row[0];
    return IntToCString(static_cast<int>(value) + (!value ? 10 : 0));
  });
  for (const char *text : {"Unassigned", "1", "YES", "", " TRUE"}) {
    value = text;
    EXPECT_NE(support::thrownMessage([&] { static_cast<void>(!value); }).find("Value: '" + std::string(text) + "'"),
              std::string::npos)
        << text;
  }
}

TEST(XmlPersistent, ATruthValueOfAConstRecordIsRead) {
  sample::Item item;
  const sample::Item &constant = item;
  item.Flag = TRUE;
  EXPECT_STREQ(item.Flag, "TRUE");
  EXPECT_TRUE(constant.Flag ? true : false);
  item.Flag = FALSE;
  EXPECT_STREQ(item.Flag, "FALSE");
  const bool value = constant.Flag;
  EXPECT_FALSE(value);
  EXPECT_FALSE(constant.Flag ? true : false);
  EXPECT_FALSE(!constant.Flag) << "as it is without const";
  item.Flag = "maybe";
  EXPECT_NE(support::thrownMessage([&] { static_cast<void>(constant.Flag ? 1 : 0); }), "");
  EXPECT_TRUE(constant.Flag == "maybe");
}

template <class Value>
concept LetsInitOut = requires(Value value) {
  value.Init();
};
static_assert(!LetsInitOut<CXMLAttribute> && !LetsInitOut<CXMLBoolAttribute>);
static_assert(!LetsInitOut<CXMLElement> && !LetsInitOut<CXMLHexElement>);
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
  const auto join = [](auto convert, auto... values) { return (CString() + ... + (convert(values) + " ")); };
  EXPECT_STREQ(join(IntToCString, -12, 0), "-12 0 ");
  EXPECT_STREQ(join(IntToHexStr, 0, -1), "0x0 0xFFFFFFFF ");
  EXPECT_STREQ(join(IntToHexStrNoX, 0, 5, 256), "00 05 100 ");
  EXPECT_STREQ(join(HexStrToIntStr, "FF", "0xFF", "  0x1g", "xyz", "FFFFFFFF"), "255 255 1 0 -1 ");
  EXPECT_STREQ(join(IntStrToHexStr, "255", "-1x", "none", "99999999999"), "0xFF 0xFFFFFFFF 0x0 0x7FFFFFFF ");
  EXPECT_STREQ(BSTRtoCString(CStringToBSTR("Größe €")), "Größe €");
  EXPECT_EQ(std::wstring(CStringToBSTR("ß€")), L"ß€");
}

} // namespace
