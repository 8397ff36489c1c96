#include "tests/test_support.h"

#include <cfloat>

namespace {

/// Text, tag and flag in one line.
template <class Value>
std::string state(const Value &value) {
  const CXMLPersistent &base = value;
  return static_cast<const char *>(value) + std::string("|") + static_cast<const char *>(base.GetTag()) + "|" +
         std::to_string(base.GetModified());
}

template <class Value, class Change>
std::string after(Change change) {
  Value value;
  change(value);
  return state(value);
}

TEST(XmlPersistent, InitAndAssignment) {
  const struct {
    const char *what;
    std::string state;
    const char *expected;
  } rows[] = {
      {"fresh", after<CXMLPersistent>([](auto &) {}), "Unassigned|Undefined|0"},
      {"fresh hex", after<CXMLHexElement>([](auto &) {}), "0xFFFF|Undefined|0"},
      {"text", after<CXMLAttribute>([](auto &v) { v.Init("T", "x"); }), "x|T|0"},
      {"null text", after<CXMLAttribute>([](auto &v) { v.Init("T", static_cast<const char *>(nullptr)); }),
       "Unassigned|T|0"},
      {"null tag", after<CXMLElement>([](auto &v) { v.Init(nullptr, "x"); }), "x|Unassigned|0"},
      {"number", after<CXMLElement>([](auto &v) { v.Init("T", -7); }), "-7|T|1"},
      {"zero", after<CXMLAttribute>([](auto &v) { v.Init("T", 0); }), "Unassigned|T|0"},
      {"text zero", after<CXMLAttribute>([](auto &v) { v.Init("T", "0"); }), "0|T|0"},
      {"true", after<CXMLBoolAttribute>([](auto &v) { v.Init("T", true); }), "TRUE|T|1"},
      {"null tag, bool", after<CXMLBoolAttribute>([](auto &v) { v.Init(nullptr, false); }), "FALSE|Unassigned|1"},
      {"bool text", after<CXMLBoolAttribute>([](auto &v) { v.Init("T", "maybe"); }), "maybe|T|0"},
      {"hex zero", after<CXMLHexElement>([](auto &v) { v.Init("T", 0); }), "0x0|T|1"},
      {"hex number", after<CXMLHexElement>([](auto &v) { v.Init("T", 255); }), "0xFF|T|1"},
      {"hex negative", after<CXMLHexElement>([](auto &v) { v.Init("T", -1); }), "0xFFFFFFFF|T|1"},
      {"hex null", after<CXMLHexElement>([](auto &v) { v.Init("T", static_cast<const char *>(nullptr)); }),
       "Unassigned|T|0"},
      {"hex same", after<CXMLHexElement>([](auto &v) { v.Init("T", "0xFFFF"); }), "0xFFFF|T|0"},
      {"assign same", after<CXMLAttribute>([](auto &v) { v = "Unassigned"; }), "Unassigned|Undefined|0"},
      {"assign case", after<CXMLAttribute>([](auto &v) { v = "unassigned"; }), "unassigned|Undefined|1"},
      {"assign null", after<CXMLElement>([](auto &v) { v = static_cast<const char *>(nullptr); }), "|Undefined|1"},
      {"assign itself", after<CXMLElement>([](auto &v) { v = static_cast<const char *>(v) + 2; }),
       "assigned|Undefined|1"},
      {"assign number", after<CXMLAttribute>([](auto &v) { v = 0; }), "0|Undefined|1"},
      {"hex text zero", after<CXMLHexElement>([](auto &v) { v = "0"; }), "0x0|Undefined|1"},
      {"hex no prefix", after<CXMLHexElement>([](auto &v) { v = "255"; }), "255|Undefined|1"},
      {"hex int", after<CXMLHexElement>([](auto &v) { v = 4096; }), "0x1000|Undefined|1"},
      {"bool false", after<CXMLBoolAttribute>([](auto &v) { v = false; }), "FALSE|Undefined|1"},
      {"bool any", after<CXMLBoolAttribute>([](auto &v) { v = "?"; }), "?|Undefined|1"},
  };
  for (const auto &row : rows)
    EXPECT_EQ(row.state, row.expected) << row.what;
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
  const std::pair<const char *, int> good[] = {{"0x1F", 31},
                                               {"017", 15},
                                               {" 12", 12},
                                               {"", 0},
                                               {"-5", -5},
                                               {"0xffff", 65535},
                                               {"99999999999", INT32_MAX},
                                               {"-99999999999", INT32_MIN}};
  CXMLElement value;
  value.PutTag(CString("T"));
  for (const auto &[text, number] : good) {
    value = text;
    EXPECT_EQ(static_cast<int>(value), number) << text;
  }
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
  const std::pair<const char *, int> good[] = {{"TRUE", 1}, {"true", 1}, {"False", 0}, {"FALSE", 0}};
  for (const auto &[text, truth] : good) {
    value = text;
    EXPECT_EQ(static_cast<int>(value), truth) << text;
    EXPECT_EQ(!value, truth == 1) << text;
  }
  for (const char *text : {"Unassigned", "1", "YES", "", " TRUE"}) {
    value = text;
    EXPECT_NE(support::thrownMessage([&] { static_cast<void>(!value); }).find("Value: '" + std::string(text) + "'"),
              std::string::npos)
        << text;
  }
}

TEST(XmlPersistent, HexWarningGoesToTheDebugChannel) {
  std::string told;
  platform::SetDebugSink([&](const char *text) { told += text; });
  CXMLHexElement value;
  for (const char *text : {"0x12", "0", "0X12", "255"})
    value = text;
  platform::SetDebugSink({});
  EXPECT_EQ(told, "KO. CXMLHexElement. You must prefix hex values with 0x, you tried: 0X12\n"
                  "KO. CXMLHexElement. You must prefix hex values with 0x, you tried: 255\n");
}

TEST(XmlDom, TextConversions) {
  const std::pair<CString, const char *> rows[] = {{IntToCString(-12), "-12"},
                                                   {IntToHexStr(0), "0x0"},
                                                   {IntToHexStr(-1), "0xFFFFFFFF"},
                                                   {IntToHexStrNoX(0), "00"},
                                                   {IntToHexStrNoX(5), "05"},
                                                   {IntToHexStrNoX(256), "100"},
                                                   {HexStrToIntStr("FF"), "255"},
                                                   {HexStrToIntStr("0xFF"), "255"},
                                                   {HexStrToIntStr("  0x1g"), "1"},
                                                   {HexStrToIntStr("xyz"), "0"},
                                                   {HexStrToIntStr("FFFFFFFF"), "-1"},
                                                   {IntStrToHexStr("255"), "0xFF"},
                                                   {IntStrToHexStr("-1x"), "0xFFFFFFFF"},
                                                   {IntStrToHexStr("none"), "0x0"},
                                                   {IntStrToHexStr("99999999999"), "0x7FFFFFFF"}};
  for (const auto &[text, expected] : rows)
    EXPECT_STREQ(text, expected);
  EXPECT_STREQ(BSTRtoCString(CStringToBSTR("Größe €")), "Größe €");
  EXPECT_EQ(std::wstring(CStringToBSTR("ß€")), L"ß€");
}

} // namespace
