#include "tests/document_support.h"

namespace {

TEST(VorlanModels, ANameIsNotTheKeyOfAnItemBeforeIt) {
  CVorlanModels4 models;
  const std::string file =
      "<VorlanModels><VorlanModel Name='a'><Key>B</Key></VorlanModel><VorlanModel Name='A'><Key>c</Key></VorlanModel>"
      "<VorlanModel/><VorlanModel Name='b'/><VorlanModel Name='C'/><VorlanModel Name=''/>"
      "<VorlanModel Name='d'><Key>A</Key></VorlanModel><VorlanModel Name='d'><Key>C</Key></VorlanModel></VorlanModels>";
  EXPECT_EQ(support::load(models, file), KRX_E_DUPLICATE_KEY);
  EXPECT_EQ(support::keys(models), "B,c,A,C");
  EXPECT_EQ(models.Find("C"), models[1]);
  EXPECT_EQ(models.FindByName("D"), models[2]);
  EXPECT_EQ(models.Find("d"), nullptr);
  EXPECT_EQ(models.FindByName("b"), nullptr);
  models[0]->Name = "";
  EXPECT_EQ(models.FindByName(nullptr), nullptr);
  EXPECT_EQ(models.Add("C"), nullptr);
  EXPECT_EQ(models.Add(""), nullptr);
  CVorlanModel4 *const added = models.Add("D");
  ASSERT_EQ(added, models[4]);
  EXPECT_STREQ(added->Name, "D");
  EXPECT_EQ(models.Add("unassigned"), nullptr);
}

TEST(VorlanModels, LinkTableIsKeyedByName) {
  CLinkCompatibleModels table;
  ASSERT_NE(table.Add("8"), nullptr);
  EXPECT_STREQ(table[0]->Name, "8");
  EXPECT_EQ(table.Add("8"), nullptr);
  EXPECT_EQ(table.Find("8"), table[0]);
  EXPECT_EQ(table.Find("9"), nullptr);
}

TEST(VorlanModels, AMemoryTypeIsMadeWithKeyAndName) {
  CNVMemoryTypes types;
  EXPECT_EQ(types.Add("", "x"), nullptr);
  CNVMemoryType *const item = types.Add("0x1F", nullptr);
  ASSERT_EQ(item, types[0]);
  EXPECT_STREQ(item->Name(), "Unassigned");
  EXPECT_EQ(types.Add("0X1f", "x"), nullptr);
  EXPECT_EQ(types.Find("0x1f"), item);
  EXPECT_STREQ(types.Add("a", "b")->Name(), "b");
  *item = CNVMemoryType("7", "flash");
  EXPECT_NE(support::save(*item).find(
                "<NVMemoryType Key=\"7\" EEWriteTimeRequired=\"FALSE\">\n\t\t<Name>flash</Name>\n\t\t"
                "<FlashSectorSizes>0</FlashSectorSizes>\n\t\t<Description></Description>\n\t\t<Symbol></Symbol>"
                "\n\t\t<FlashDriverID></FlashDriverID>"),
            std::string::npos);
}

/// Also where a key is the placeholder of a copy, or stands there twice.
template <class List>
void expectCopiesOfItems(const std::string &item, const std::string &key) {
  std::string items;
  for (const char *const keys : {"='dummy'><Key>Dummy", "='b'><Key>k", "='c'><Key>K"})
    items += "<" + item + " " + key + keys + "</Key></" + item + ">";
  List list;
  EXPECT_EQ(support::load(list, "<" + item + "s>" + items + "</" + item + "s>"), S_OK);
  EXPECT_EQ(list.Count(), 3);
  support::expectCopies(list);
}

TEST(VorlanModels, CopiesHoldAllItems) {
  expectCopiesOfItems<CClocks>("Clock", "Value");
  expectCopiesOfItems<CMultipliers>("Multiplier", "Value");
  expectCopiesOfItems<COscillators>("Oscillator", "Value");
  expectCopiesOfItems<CClockingSchemes>("ClockingScheme", "Id");
  expectCopiesOfItems<CNVMemoryTypes>("NVMemoryType", "Key");
  expectCopiesOfItems<CLinkCompatibleModels>("LinkCompatibleModel", "Name");
  expectCopiesOfItems<CVorlanModels4>("VorlanModel", "Name");
}

} // namespace
