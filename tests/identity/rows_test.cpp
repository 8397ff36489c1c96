#include "tests/document_support.h"

namespace {

using support::keyOf, support::keys, support::load, support::save;

template <class Kind>
struct IdentityRow : testing::Test {};
using Kinds = testing::Types<CXMLPair, CXMLNameHexPair, CTKDeviceClass, CTKDeviceClass2>;
TYPED_TEST_SUITE(IdentityRow, Kinds);

TYPED_TEST(IdentityRow, TagsComeFromTheConstructor) {
  TypeParam row("Kind", "Title", "Code");
  row.Number = "0x7";
  const TypeParam copy(row);
  EXPECT_STREQ(copy.GetTag(), "Kind");
  EXPECT_STREQ(copy, "Kind");
  EXPECT_STREQ(copy.Name.GetTag(), "Title");
  EXPECT_STREQ(copy.Number.GetTag(), "Code");
  EXPECT_STREQ(copy.Number, "0x7");
  row.Init();
  EXPECT_STREQ(row.Name.GetTag(), "Name") << "Init knows no other tags";
  EXPECT_STREQ(row.Number, "0x7");
  EXPECT_STREQ(TypeParam().GetTag(), "Unassigned");
}

TYPED_TEST(IdentityRow, OrderIsThatOfTheNamesAndEqualityThatOfBoth) {
  const auto row = [](const char *name, const char *number) {
    TypeParam made;
    made.Name = name;
    made.Number = number;
    return made;
  };
  EXPECT_TRUE(row("abc", "0x1") == row("abc", "0x1"));
  EXPECT_FALSE(row("abc", "0xa") == row("abc", "0xA"));
  EXPECT_TRUE(row("ABC", "0x1") < row("abc", "0x1"));
  EXPECT_FALSE(row("a", "0x1") < row("a", "0x9"));
}

TEST(IdentityRows, ConstructorsWithValues) {
  EXPECT_STREQ(CXMLPair("n", "07").Number, "07");
  EXPECT_STREQ(CXMLNameHexPair("n", 250).Number, "0xFA");
  EXPECT_STREQ(CXMLNameHexPair().Number, "0xFFFF");
  EXPECT_STREQ(CTKDeviceClass("n", -5).Number, "-5");
  const CTKDeviceClass2 second("n", 31);
  EXPECT_STREQ(second.Number, "31");
  EXPECT_STREQ(second.Key(), "n");
  EXPECT_EQ(second.NumberMajor, 0) << "only a load splits the number";
}

TEST(NameNumberPairs, AreFoundByNameAndByNumber) {
  CXMLPairCollection pairs;
  CXMLNameHexPairs hexPairs;
  pairs.setTags("T", "I", "Name");
  hexPairs.setTags("T", "I", "Name");
  const char *const file = "<T><I Name='f'/><I Name='a' Number='0x1A'/><I Name='b' Number='26'/>"
                           "<I Name='c' Number='0x1a'/><I Name='d' Number='26'/><I Name='e' Number=''/></T>";
  const char *const hexFile = "<T><I Name='f'/><I Name='a'><Number>0x1A</Number></I>"
                              "<I Name='c'><Number>0x1a</Number></I></T>";
  EXPECT_EQ(load(pairs, file), S_OK);
  EXPECT_EQ(load(hexPairs, hexFile), S_OK);
  EXPECT_STREQ(keyOf(pairs.FindByNumber("0x1a")), "c");
  EXPECT_STREQ(keyOf(pairs.FindByNumber("26")), "b") << "the first of that text";
  EXPECT_STREQ(keyOf(pairs.FindByNumber("1A")), "none");
  EXPECT_STREQ(keyOf(pairs.FindByNumber(nullptr)), "none");
  EXPECT_STREQ(keyOf(hexPairs.FindByNumber("0x1a")), "c");
  EXPECT_STREQ(keyOf(hexPairs.FindByNumber("0xFFFF")), "f");
  EXPECT_STREQ(keyOf(pairs.Find("A")), "a");
  EXPECT_STREQ(keyOf(hexPairs.Find("A")), "a");
  EXPECT_THROW(pairs[6], std::out_of_range);

  pairs.Add("Dummy", "1");
  support::expectCopies(pairs);
  support::expectCopies(hexPairs);
}

TEST(NameNumberPairs, AddWritesNameAndNumber) {
  CXMLPairCollection pairs;
  CXMLNameHexPairs hexPairs;
  EXPECT_STREQ(pairs.Add("x")->Key(), "Unassigned") << "without a number the name is not written either";
  EXPECT_STREQ(pairs.Add("y", nullptr)->Number, "Unassigned");
  EXPECT_STREQ(pairs.Add("z", "7")->Number, "7");
  EXPECT_STREQ(hexPairs.Add("x", 255)->Number, "0xFF");
  EXPECT_STREQ(hexPairs.Add("b", -1)->Number, "0xFFFFFFFF");
  EXPECT_EQ(pairs.Add("Z", "8"), nullptr);
  EXPECT_EQ(hexPairs.Add("X", 8), nullptr);
  EXPECT_EQ(keys(pairs), "Unassigned,y,z");
  EXPECT_EQ(keys(hexPairs), "x,b");
}

/// For both versions of the device class.
template <class Item>
void expectNumbersOfTexts() {
  Item item; // one object for all: a load forgets the number before it
  const auto expectNumber = [&](const std::string &text, int major, int minor) {
    load(item, "<Unassigned Number='" + text + "'/>");
    EXPECT_EQ(item.NumberMajor, major) << text;
    EXPECT_EQ(item.NumberMinor, minor) << text;
  };
  expectNumber("3.12", 3, 12);
  expectNumber("3.", 3, 0);
  expectNumber("", 0, 0);
  expectNumber("-2.1", -2, 1);
  expectNumber("0x10", 0, 0);
  expectNumber(" 7. -8", 7, -8);
  expectNumber("+4.+5x", 4, 5);
  expectNumber("99999999999.1", 2147483647, 1);
}

TEST(DeviceClasses, ALoadSplitsTheNumber) {
  expectNumbersOfTexts<CTKDeviceClass>();
  expectNumbersOfTexts<CTKDeviceClass2>();
}

/// For both versions of the list.
template <class List>
void expectSearchByNumber() {
  List list;
  list.setTags("T", "I", "Name");
  load(list, "<T><I Name='a' Number='3.1'/><I Name='b' Number='3.01'/><I Name='c' Number='x'/><I Name='d'/></T>");
  EXPECT_STREQ(list.Find("D")->Number, "Unassigned");
  EXPECT_STREQ(list.Add("e", 5)->Number, "5");
  EXPECT_EQ(list.Add("E", 6), nullptr);
  List copy(list);
  EXPECT_STREQ(keyOf(copy.FindByNumber(3, 1)), "a");
  EXPECT_STREQ(keyOf(copy.FindByNumber(0, 0)), "c");
  EXPECT_EQ(list.FindByNumber(5, 0), nullptr) << "what was not loaded has no number";
  load(list, save(copy));
  EXPECT_STREQ(keyOf(list.FindByNumber(5, 0)), "e");
}

TEST(DeviceClasses, SearchByNumberComparesWhatWasLoaded) {
  expectSearchByNumber<CTKDeviceClasses>();
  expectSearchByNumber<CTKDeviceClasses2>();
}

} // namespace
