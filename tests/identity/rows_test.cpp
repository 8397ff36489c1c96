#include "tests/document_support.h"

namespace {

using support::keyOf, support::load;

template <class Kind>
struct IdentityRow : testing::Test {};
using Kinds = testing::Types<CXMLPair, CXMLNameHexPair, CTKDeviceClass, CTKDeviceClass2>;
TYPED_TEST_SUITE(IdentityRow, Kinds);

TYPED_TEST(IdentityRow, HasTheTagsOfItsConstructorAndIsComparedByNameAndNumber) {
  TypeParam row("Kind", "Title", "Code");
  row.Name = "abc";
  row.Number = "0xa";
  TypeParam copy(row);
  EXPECT_STREQ(copy.GetTag(), "Kind");
  EXPECT_STREQ(copy, "Kind");
  EXPECT_STREQ(copy.Name.GetTag(), "Title");
  EXPECT_STREQ(copy.Number.GetTag(), "Code");
  EXPECT_TRUE(copy == row);
  copy.Number = "0xA";
  EXPECT_FALSE(copy == row);
  EXPECT_FALSE(copy < row) << "the order is that of the names";
  copy.Name = "ABC";
  EXPECT_TRUE(copy < row);
}

TEST(IdentityRows, ConstructorsWithValues) {
  EXPECT_STREQ(CXMLPair("n", "07").Number, "07");
  EXPECT_STREQ(CXMLNameHexPair("n", 250).Number, "0xFA");
  EXPECT_STREQ(CTKDeviceClass2("n", -5).Number, "-5");
}

TEST(NameNumberPairs, AreFoundByTheTextOfTheirNumber) {
  CXMLPairCollection pairs;
  pairs.setTags("T", "I", "Name");
  load(pairs, "<T><I Name='a' Number='0x1A'/><I Name='b' Number='26'/><I Name='c' Number='0x1a'/>"
              "<I Name='d' Number='26'/></T>");
  EXPECT_STREQ(keyOf(pairs.Find("A")), "a");
  EXPECT_STREQ(keyOf(pairs.FindByNumber("0x1a")), "c");
  EXPECT_STREQ(keyOf(pairs.FindByNumber("26")), "b") << "the first of that text";
  EXPECT_EQ(pairs.FindByNumber(nullptr), nullptr);
  EXPECT_THROW(pairs[4], std::out_of_range);
  support::expectCopies(pairs);
}

TEST(NameNumberPairs, AddWritesNameAndNumber) {
  CXMLPairCollection pairs;
  EXPECT_STREQ(pairs.Add("x")->Key(), "Unassigned") << "without a number the name is not written either";
  EXPECT_STREQ(pairs.Add("z", "7")->Number, "7");
  EXPECT_EQ(pairs.Add("Z", "8"), nullptr);
  CXMLNameHexPairs hexPairs;
  EXPECT_STREQ(hexPairs.Add("x", -1)->Number, "0xFFFFFFFF");
  EXPECT_STREQ(keyOf(hexPairs.FindByNumber("0xFFFFFFFF")), "x");
  EXPECT_EQ(hexPairs.Find("X"), hexPairs[0]);
  EXPECT_STREQ(hexPairs.GetTag(), "Unassigned");
  support::expectCopies(hexPairs);
}

TEST(DeviceClasses, ALoadSplitsTheNumber) {
  CTKDeviceClass2 item; // one object for all: a load forgets the number before it
  const auto majorAndMinor = [&](const std::string &number) {
    load(item, "<Unassigned Number='" + number + "'/>");
    return std::pair<int, int>(item.NumberMajor, item.NumberMinor);
  };
  EXPECT_EQ(majorAndMinor("3.12"), std::pair(3, 12));
  EXPECT_EQ(majorAndMinor("3."), std::pair(3, 0));
  EXPECT_EQ(majorAndMinor(".5"), std::pair(0, 5));
  EXPECT_EQ(majorAndMinor(" -7. +8x"), std::pair(-7, 8));
  EXPECT_EQ(majorAndMinor("0x10"), std::pair(0, 0));
}

/// For both versions of the list.
template <class List>
void expectSearchByNumber() {
  List list;
  list.setTags("T", "I", "Name");
  load(list, "<T><I Name='a' Number='3.1'/><I Name='b' Number='3.01'/></T>");
  list.Add("c", 5);
  EXPECT_STREQ(keyOf(list.Find("C")), "c");
  EXPECT_STREQ(keyOf(List(list).FindByNumber(3, 1)), "a");
  EXPECT_EQ(list.FindByNumber(5, 0), nullptr) << "what was not loaded has no number";
}

TEST(DeviceClasses, SearchByNumberComparesWhatWasLoaded) {
  expectSearchByNumber<CTKDeviceClasses>();
  expectSearchByNumber<CTKDeviceClasses2>();
}

} // namespace
