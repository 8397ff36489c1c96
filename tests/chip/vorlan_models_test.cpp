#include "tests/document_support.h"

namespace {

TEST(VorlanModels, ANameIsNotTheKeyOfAnItemBeforeIt) {
  CVorlanModels4 models;
  EXPECT_EQ(support::load(models, "<VorlanModels><VorlanModel Name='a'><Key>B</Key></VorlanModel>"
                                  "<VorlanModel Name='b'/><VorlanModel Name='A'><Key>c</Key></VorlanModel>"
                                  "<VorlanModel Name='d'><Key>A</Key></VorlanModel></VorlanModels>"),
            KRX_E_DUPLICATE_KEY);
  EXPECT_EQ(support::keys(models), "B,c,A");
  EXPECT_EQ(models.Find("C"), models[1]);
  EXPECT_EQ(models.FindByName("D"), models[2]);
  EXPECT_EQ(models.Add("C"), nullptr);
  CVorlanModel4 *const added = models.Add("E");
  ASSERT_EQ(added, models[3]);
  EXPECT_STREQ(added->Name, "E");
}

TEST(VorlanModels, AMemoryTypeIsMadeWithKeyAndName) {
  CNVMemoryTypes types;
  CNVMemoryType *const item = types.Add("0x1F", nullptr);
  ASSERT_EQ(item, types[0]);
  EXPECT_STREQ(item->Name(), "Unassigned");
  EXPECT_EQ(types.Add("0X1f", "x"), nullptr);
  CNVMemoryType made("2", "n");
  std::string texts;
  for (const kestrune::MemberView &member : kestrune::MembersOf(made))
    texts += std::string(*member.value) + "|";
  EXPECT_EQ(texts, "2|n|0|FALSE||||");
}

} // namespace
