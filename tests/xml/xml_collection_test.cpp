#include "tests/colliding_texts.h"
#include "tests/document_support.h"
#include "tests/xml/sample_records.h"

#include <cctype>
#include <cstring>
#include <ctime>

namespace {

using sample::Item, sample::Items;
using support::keys, support::save;

long load(Items &list, const std::string &items) { return support::load(list, "<Items>" + items + "</Items>"); }

TEST(XmlCollection, AddFindDelete) {
  Items list;
  Item *const first = list.Add("abc");
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(list.Find("aBc"), first);
  list.PutModified(0);
  EXPECT_EQ(list.Add("ABC"), nullptr);
  EXPECT_EQ(list.Add(nullptr), nullptr);
  list.Delete("ABC");
  EXPECT_EQ(list.GetModified(), 0) << "a refused key and one in another case change nothing";
  list.Add("b");
  list.PutModified(0);
  list.Delete("abc");
  EXPECT_NE(list.GetModified(), 0);
  EXPECT_EQ(keys(list), "b");
  EXPECT_THROW(list[1], std::out_of_range);
  EXPECT_THROW(list[-1], std::out_of_range);
  list.Clear();
  list.PutModified(0);
  list.Clear();
  EXPECT_NE(list.GetModified(), 0) << "clearing nothing counts as a change";
}

TEST(XmlCollection, LoadTakesWhatItCanAndReportsTheFirstFailure) {
  Items list;
  EXPECT_EQ(load(list, "<Other/>"), KRX_S_EMPTY_COLLECTION);
  EXPECT_EQ(load(list, "<Item Name='a'/><Item Name='A'/><Item Name=''/><Item Name='c'/>"), KRX_E_DUPLICATE_KEY);
  EXPECT_EQ(keys(list), "a,c");
  EXPECT_EQ(load(list, "<Item/><Item Name='a'><Item Name='b'/></Item><Item Name='c'/>"), S_OK);
  EXPECT_EQ(keys(list), "a,b,c") << "an item without a key is passed over";
  EXPECT_EQ(list.GetModified(), 0);
}

TEST(XmlCollection, EqualKeysWhereTheyAreIgnored) {
  Items list;
  list.SetIgnoreKey(1);
  EXPECT_EQ(load(list, "<Item Name='a'/><Item Name='A'/>"), S_OK);
  EXPECT_EQ(list.Find("A"), list[0]);
  EXPECT_NE(Items(list).Add("a"), nullptr) << "the setting is copied";
  list.DeleteIdx(1);
  EXPECT_EQ(keys(list), "a");
  EXPECT_NE(list.GetModified(), 0);
}

TEST(XmlCollection, CopyHoldsEveryItem) {
  Items list;
  for (const char *key : {"Dummy", "a", "x"})
    list.Add(key);
  list[2]->Name = "a"; // an equal key, made through the pointer
  support::expectCopies(list);
  Items copy(list);
  EXPECT_EQ(copy.Add("DUMMY"), nullptr) << "afterwards keys count again";
}

/// Changes itself while it is loaded, as the keys say.
class Busy : public Items {
public:
  CXMLFolder *AddCollectionItem(const char *key) override {
    const CString order(key);
    if (order == "delete a")
      Delete("a");
    if (order == "delete a in between")
      AddMany(1, [this](int) { Delete("a"); });
    return Items::AddCollectionItem(key);
  }
};

TEST(XmlCollection, AListThatChangesWhileItIsLoadedKnowsItsKeys) {
  const struct {
    std::vector<std::string> given;
    const char *keys;
  } rows[] = {
      {{"a", "b", "c", "delete a", "b", "c", "a", "A"}, "b,c,delete a,a"},
      {{"a", "b", "c", "delete a in between", "b", "c", "a"}, "b,c,delete a in between,a"},
  };
  for (const auto &row : rows) {
    std::string items;
    for (const std::string &key : row.given)
      items += "<Item Name='" + key + "'/>";
    Busy list;
    EXPECT_EQ(load(list, items), KRX_E_DUPLICATE_KEY) << row.keys;
    EXPECT_EQ(keys(list), row.keys);
  }
}

TEST(XmlCollection, WhileItemsAreAddedTheKeysOfThatMomentCount) {
  for (const int count : {8, 80}) {
    SCOPED_TRACE(count);
    Items list;
    list.SetIgnoreKey(1);
    list.AddMany(count, [&](int index) {
      list.Add(std::to_string(index % (count / 2)).c_str());
      if (index < count - 1)
        return;
      EXPECT_EQ(list.Find("3"), list[3]);
      list[3]->Name = "new";
      EXPECT_EQ(list.Find("3"), list[count / 2 + 3]) << "the next one of that key";
      list[count / 2 + 3]->Name = "newer";
      EXPECT_EQ(list.Find("3"), nullptr);
      EXPECT_EQ(list.Find("NEW"), list[3]);
    });
  }
}

TEST(XmlCollection, OwnMembersCountAsChanges) {
  struct WithMember : Items {
    void pushMembers() override { m_members = {&Extra}; }
    CXMLAttribute Extra;
  } list;
  list.pushMembers();
  list.PutModified(0);
  list.Extra = "x";
  EXPECT_EQ(list.GetModified(), 1);
}

TEST(XmlCollection, KeysThatSomebodyChoseCostNoMoreThanOthers) {
  const auto cost = [](const std::vector<std::string> &keys) {
    std::string items;
    for (const std::string &key : keys)
      items += "<Item Name='" + key + "'/>";
    Items list;
    const std::clock_t start = std::clock();
    EXPECT_EQ(load(list, items), S_OK);
    return static_cast<double>(std::clock() - start);
  };
  // Keys are compared in lower case.
  const auto isUsable = [](int character) {
    return std::isgraph(character) != 0 && std::isupper(character) == 0 && std::strchr("<&'", character) == nullptr;
  };
  EXPECT_LE(cost(support::collidingTexts(5000, isUsable)), 5 * cost(support::otherTexts(5000)));
}

TEST(XmlCollection, SavesItemsInOrderUnderTheItemTag) {
  sample::Document document;
  document.Contents.CreationDate = "7";
  document.List.Add("z")->PutTag(CString("Item"));
  document.List.Add("a")->Text = "";
  document.PutModified(0);
  document.List[1]->Bound = "0x1";
  EXPECT_EQ(save(document), support::read(KESTRUNE_TEST_DATA "/xml/sample.xml"));
  EXPECT_EQ(document.GetModified(), 0);
}

} // namespace
