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

TEST(VorlanModels, AModelLivesUntilItsOwnerDeletesIt) {
  struct Models : CVorlanModels4 {
    std::unique_ptr<CXMLFolder> takeOut(std::size_t index) {
      std::unique_ptr<CXMLFolder> item = std::move(m_items[index]);
      removeAt(index);
      return item;
    }
    void putIn(std::unique_ptr<CXMLFolder> item) { m_items.push_back(std::move(item)); }
  };
  std::unique_ptr<CXMLFolder> lasting;
  {
    Models other;
    {
      Models models;
      for (int i = 0; i < 120; ++i)
        models.Add(("model " + std::to_string(i)).c_str())->KeyText = std::to_string(i).c_str();
      for (int i = 1; i < 119; ++i) {
        if (i % 20 != 0)
          models.Delete(std::to_string(i).c_str());
      }
      other.Add("of the other")->KeyText = "other";
      for (int i = 0; i < 3; ++i)
        other.putIn(models.takeOut(2));
      models.Add("again")->KeyText = "again";
      other.Add("more")->KeyText = "more";
      EXPECT_EQ(support::keys(models), "0,20,100,119,again");
      lasting = models.takeOut(2);
    }
    EXPECT_EQ(support::keys(other), "other,40,60,80,more");
  }
  EXPECT_STREQ(lasting->Key(), "100");
  EXPECT_STREQ(static_cast<CVorlanModel4 &>(*lasting).Name, "model 100");
}

} // namespace
