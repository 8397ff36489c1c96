#include "tests/document_support.h"

namespace {

using support::Cells, support::checkRows, support::keyOf, support::keys, support::load, support::save;

template <class Kind>
struct IdentityRow : testing::Test {};
using Kinds = testing::Types<CXMLPair, CXMLNameHexPair, CTKDeviceClass, CTKDeviceClass2>;
TYPED_TEST_SUITE(IdentityRow, Kinds);

TYPED_TEST(IdentityRow, TagsTextsAndOrder) {
  const auto names = [](const TypeParam &row) {
    return row.GetTag() + "/" + row + "/" + row.Name.GetTag() + "/" + row.Number.GetTag() + "=" + row.Number + " ";
  };
  TypeParam row("Kind", "Title", "Code");
  row.Number = "0x7";
  const TypeParam copy(row);
  row.Init();
  EXPECT_STREQ(names(copy) + names(row), "Kind/Kind/Title/Code=0x7 Kind/Kind/Name/Number=0x7 ");
  EXPECT_STREQ(TypeParam().GetTag() + TypeParam() + TypeParam().Number.GetTag(), "UnassignedUnassignedNumber");
  checkRows(5, "abc 0x1 abc 0x1 equal  abc 0x1 ABC 0x1 behind  abc 0xa abc 0xA other  a 0x9 b 0x1 before",
            [](const Cells &texts) {
              TypeParam a, b;
              a.Name = texts[0], a.Number = texts[1], b.Name = texts[2], b.Number = texts[3];
              return a == b ? "equal" : a < b ? "before" : b < a ? "behind" : "other";
            });
}

TEST(IdentityRows, ConstructorsWithValues) {
  const CTKDeviceClass2 second("n", 31);
  EXPECT_STREQ(CXMLPair("n", "07").Number + CXMLNameHexPair("n", 250).Number + CXMLNameHexPair().Number,
               "070xFA0xFFFF");
  EXPECT_STREQ(CTKDeviceClass("n", -5).Number + second.Number + second.Key() + second.Obsolete.GetTag(),
               "-531nObsolete");
  EXPECT_EQ(second.NumberMajor, 0);
}

TEST(NameNumberPairs, SearchesAndCopiesUnderTheTagsOfNoOwner) {
  CXMLPairCollection pairs;
  CXMLNameHexPairs hexPairs;
  std::string file = "<Unassigned><Unassigned Unassigned='1' Name='f'/>";
  for (const std::string item : {"a0x1A", "b26", "c0x1a", "d26", "e"})
    file += "<Unassigned Unassigned='2' Name='" + item.substr(0, 1) + "' Number='" + item.substr(1) + "'><Number>" +
            item.substr(1) + "</Number></Unassigned>";
  EXPECT_EQ(load(pairs, file + "</Unassigned>") + load(hexPairs, file + "</Unassigned>"), S_OK);
  checkRows(
      2, "0x1A a/a 0x1a c/c 26 b/b - e/e 1A none/none null none/none Unassigned f/none 0xFFFF none/f",
      [&](const Cells &row) { return keyOf(pairs.FindByNumber(row[0])) + "/" + keyOf(hexPairs.FindByNumber(row[0])); });
  checkRows(2, "A a/a ab none/none null none/none",
            [&](const Cells &row) { return keyOf(pairs.Find(row[0])) + "/" + keyOf(hexPairs.Find(row[0])); });
  EXPECT_THROW(pairs[6], std::out_of_range);
  EXPECT_NE(save(hexPairs).find("\t<Unassigned Name=\"a\">\n\t\t\t<Number>0x1A</Number>\n\t\t</Una"),
            std::string::npos);
  pairs.Add("Dummy", "1");
  pairs.Add("last", "2");
  CXMLPairCollection copy(pairs);
  const CXMLPairCollection &self = copy;
  copy = self;
  EXPECT_EQ(keys(copy), "f,a,b,c,d,e,Dummy,last");
  EXPECT_EQ(save(copy), save(pairs));
}

TEST(NameNumberPairs, AddForms) {
  CXMLPairCollection pairs;
  CXMLNameHexPairs hexPairs;
  CXMLPair *const bare = pairs.Add("x");
  EXPECT_STREQ(bare->Key() + keyOf(pairs.Find("x")), "Unassignednone");
  bare->Name = "x";
  EXPECT_STREQ(pairs.Add("y", nullptr)->Number, "Unassigned");
  EXPECT_STREQ(pairs.Add("z", "7")->Number, "7");
  EXPECT_STREQ(hexPairs.Add("x", 255)->Number, "0xFF");
  EXPECT_STREQ(hexPairs.Add("b", -1)->Number, "0xFFFFFFFF");
  for (const char *refused : {"X", "", static_cast<const char *>(nullptr)}) {
    EXPECT_EQ(pairs.Add(refused), nullptr);
    EXPECT_EQ(pairs.Add(refused, "8"), nullptr);
    EXPECT_EQ(hexPairs.Add(refused, 8), nullptr);
  }
  EXPECT_EQ(keys(pairs) + " " + keys(hexPairs), "x,y,z x,b");
}

TEST(DeviceClasses, NumberTextsOfFiles) {
  const auto test = [](auto item) { // one object for all: a load forgets the number before it
    checkRows(2,
              "3.12 3|12  3 3|0  3. 3|0  .5 0|5  3.4.5 3|4  -2.1 -2|1  0x10 0|0  Unassigned 0|0  - 0|0  1.. 1|0 "
              "~7.~-8 7|-8  +4.+5x 4|5  1~.2 1|2  x.6 0|6  99999999999.1 2147483647|1",
              [&item](const Cells &row) {
                load(item, "<Unassigned Number='" + std::string(row[0]) + "'/>");
                EXPECT_STREQ(item.Number, row[0]);
                return IntToCString(item.NumberMajor) + "|" + IntToCString(item.NumberMinor);
              });
  };
  test(CTKDeviceClass());
  test(CTKDeviceClass2());
}

TEST(DeviceClasses, SearchByNumberComparesWhatWasLoaded) {
  const auto test = [](auto list) {
    list.setTags("T", "I", "Name");
    load(list, "<T><I Name='a' Number='3.1'/><I Name='b' Number='3.01'/><I Name='c' Number='x'/><I Name='d'/></T>");
    EXPECT_STREQ(list.Find("D")->Number + list.Add("e", 5)->Number, "Unassigned5");
    EXPECT_EQ(list.Add("E", 6), nullptr);
    auto copy = list;
    for (auto *tried : {&list, &copy})
      EXPECT_STREQ(keyOf(tried->FindByNumber(3, 1)) + keyOf(tried->FindByNumber(0, 0)), "ac");
    EXPECT_EQ(list.FindByNumber(5, 0), nullptr);
    load(list, save(copy));
    EXPECT_STREQ(keyOf(list.FindByNumber(5, 0)), "e");
  };
  test(CTKDeviceClasses());
  test(CTKDeviceClasses2());
}

} // namespace
