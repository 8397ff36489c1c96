#include "tests/test_support.h"

namespace {

/// "tag: text", and whether the value counts as modified.
std::string state(const CXMLPersistent &value) {
  return std::string(value.GetTag()) + ": " + std::string(value) + (value.GetModified() != 0 ? ", modified" : "");
}

template <class Value>
std::string init(auto value) {
  Value made;
  made.Init("T", value);
  return state(made);
}

template <class Value>
std::string assign(auto value) {
  Value made;
  made = value;
  return state(made);
}

TEST(XmlPersistent, InitAndAssignmentSetTextTagAndFlag) {
  constexpr const char *kNull = nullptr;
  EXPECT_EQ(state(CXMLPersistent()), "Undefined: Unassigned");
  EXPECT_EQ(state(CXMLHexElement()), "Undefined: 0xFFFF");
  // Init with a text leaves the flag alone, with a number or a truth value it sets it.
  EXPECT_EQ(init<CXMLAttribute>("x"), "T: x");
  EXPECT_EQ(init<CXMLBoolAttribute>(true), "T: TRUE, modified");
  EXPECT_EQ(init<CXMLHexElement>(0), "T: 0x0, modified");
  // An assignment of the same text changes nothing.
  EXPECT_EQ(assign<CXMLAttribute>("Unassigned"), "Undefined: Unassigned");
  EXPECT_EQ(assign<CXMLElement>(kNull), "Undefined: , modified");
  EXPECT_EQ(assign<CXMLHexElement>("0"), "Undefined: 0x0, modified");
}

TEST(XmlPersistent, ACopyTakesTextAndTagAndCountsAsModifiedWhereTheTextDiffers) {
  CXMLAttribute source, target;
  source.Init("S", "text");
  target.Init("T", "text");
  target = source;
  EXPECT_EQ(state(target), "S: text");
  source = "other";
  target = source;
  EXPECT_EQ(state(target), "S: other, modified");
}

TEST(XmlPersistent, ConversionToNumber) {
  CXMLElement value;
  value.PutTag(CString("T"));
  EXPECT_EQ(static_cast<int>(value = " 0x1F"), 31);
  EXPECT_EQ(static_cast<int>(value = "010"), 8);
  EXPECT_EQ(static_cast<int>(value = ""), 0);
  value = "12 ";
  EXPECT_EQ(support::thrownMessage([&] { static_cast<void>(static_cast<int>(value)); }),
            "Unexpected non-numeric value found in XML data (Error accessing XML tag: T Value: '12 ') [KRX#101]");
}

TEST(XmlPersistent, ConversionToTruth) {
  CXMLBoolAttribute value;
  value = "true";
  EXPECT_EQ(static_cast<int>(value), 1);
  EXPECT_TRUE(!value) << "not its opposite";
  value = "False";
  EXPECT_EQ(static_cast<int>(value), 0);
  value = "1";
  EXPECT_TRUE(support::throws<CKRXException>([&] { static_cast<void>(!value); }));
}

TEST(XmlDom, TextConversions) {
  EXPECT_STREQ(IntToHexStr(-1), "0xFFFFFFFF");
  EXPECT_STREQ(IntToHexStrNoX(5), "05");
  EXPECT_STREQ(HexStrToIntStr("FFFFFFFF"), "-1");
  EXPECT_STREQ(BSTRtoCString(CStringToBSTR("Größe €")), "Größe €");
}

} // namespace
