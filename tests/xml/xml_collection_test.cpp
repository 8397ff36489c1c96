#include "tests/document_support.h"
#include "tests/xml/sample_records.h"

namespace {

using sample::Document;
using sample::Item;
using sample::Items;
using sample::Items2;
using support::keys, support::save;

long load(CXMLCollectionFolder &list, const std::string &items) {
  return support::load(list, "<Items>" + items + "</Items>");
}

long loadKeys(CXMLCollectionFolder &list, const std::vector<std::string> &keys) {
  std::string items;
  for (const std::string &key : keys)
    items += "<Item Name='" + key + "'/>";
  return load(list, items);
}

TEST(XmlCollection, AddFindDelete) {
  Items list;
  Item *const first = list.Add("abc");
  ASSERT_NE(first, nullptr);
  EXPECT_STREQ(first->Name, "abc");
  EXPECT_NE(list.GetModified(), 0);
  list.PutModified(0);
  EXPECT_EQ(list.Add("ABC"), nullptr);
  EXPECT_EQ(list.Add(""), nullptr);
  EXPECT_EQ(list.Add(nullptr), nullptr);
  EXPECT_EQ(CXMLCollectionFolder().Add("x"), nullptr) << "no NewFolder";
  EXPECT_EQ(list.Find("aBc"), first);
  EXPECT_EQ(list.Find("x"), nullptr);
  EXPECT_EQ(list.Find(nullptr), nullptr);
  list.Delete("ABC");
  EXPECT_EQ(list.GetModified(), 0) << "a refused key and one in another case change nothing";
  list.Add("b");
  list.Add("c");
  list.PutModified(0);
  list.Delete("b");
  EXPECT_NE(list.GetModified(), 0);
  EXPECT_EQ(keys(list), "abc,c");
  EXPECT_THROW(list[2], std::out_of_range);
  EXPECT_THROW(list[-1], std::out_of_range);
  list.Clear();
  EXPECT_EQ(list.Count(), 0);
  list.PutModified(0);
  list.Clear();
  EXPECT_NE(list.GetModified(), 0) << "clearing nothing counts as a change";
}

TEST(XmlCollection, LoadTakesWhatItCanAndReportsTheFirstFailure) {
  Items list;
  EXPECT_EQ(load(list, "<Other/>"), KRX_S_EMPTY_COLLECTION);
  EXPECT_EQ(load(list, "<Item/><Item Name='b'/>"), S_OK);
  EXPECT_EQ(keys(list), "b") << "an item without a key is passed over";
  EXPECT_EQ(load(list, "<Item Name=''/><Item Name='c'/>"), KRX_E_DUPLICATE_KEY);
  EXPECT_EQ(keys(list), "c");
  EXPECT_EQ(loadKeys(list, {"a", "A", "c"}), KRX_E_DUPLICATE_KEY);
  EXPECT_EQ(keys(list), "a,c");
  EXPECT_EQ(load(list, "<Item Name='a'><Item Name='b'><Item Name='c'/></Item></Item><Item Name='d'/>"), S_OK);
  EXPECT_EQ(keys(list), "a,b,c,d");
  EXPECT_EQ(list.GetModified(), 0);
}

TEST(XmlCollection, EqualKeysWhereTheyAreIgnored) {
  Items2 list;
  EXPECT_EQ(loadKeys(list, {"a", "a"}), KRX_E_DUPLICATE_KEY);
  list.SetIgnoreKey(1);
  EXPECT_EQ(load(list, "<Item Name='a'><Text>1</Text></Item><Item Name='A'/>"), S_OK);
  EXPECT_STREQ(list.Find("A")->Text, "1");
  Items2 copy(list);
  EXPECT_NE(copy.Add("a"), nullptr) << "the setting is copied";
  list.PutModified(0);
  list.DeleteIdx(-1);
  list.DeleteIdx(2);
  EXPECT_EQ(list.GetModified(), 0);
  list.DeleteIdx(1);
  EXPECT_EQ(keys(list), "a");
  EXPECT_NE(list.GetModified(), 0);
}

TEST(XmlCollection, CopyHoldsEveryItem) {
  Items list;
  for (const char *key : {"Dummy", "a", "x"})
    list.Add(key);
  list[2]->Name = "a"; // an equal key, made through the pointer
  list[1]->Text = "text";
  Items copy(list);
  EXPECT_EQ(keys(copy), "Dummy,a,a");
  EXPECT_STREQ(copy[1]->Text, "text");
  EXPECT_NE(copy[1], list[1]);
  copy.PutModified(0);
  copy = *&copy;
  EXPECT_EQ(keys(copy), "Dummy,a,a") << "assigned to itself";
  EXPECT_EQ(copy.GetModified(), 0);
  copy = list;
  EXPECT_EQ(keys(copy), "Dummy,a,a");
  EXPECT_EQ(copy.Add("DUMMY"), nullptr) << "afterwards keys count again";
  EXPECT_EQ(CXMLCollectionFolder(list).Count(), 0);
  list.CXMLCollectionFolder::operator=(list);
  EXPECT_EQ(list.Count(), 0) << "the base clears the list for itself too, so that a loop over it ends";
}

/// Compares keys by a rule of its own.
class Folding : public Items {
public:
  CXMLFolder *FindItem(const char *key) override { return Items::FindItem(CString(key) + "!"); }
  CXMLFolder *AddCollectionItem(const char *key) override {
    return *key == '-' ? nullptr : Items::AddCollectionItem(key);
  }
};

TEST(XmlCollection, OverriddenSearchAndAddAreCalledDuringALoad) {
  Folding list;
  EXPECT_EQ(loadKeys(list, {"a!", "a", "-b", "c"}), KRX_E_DUPLICATE_KEY);
  EXPECT_EQ(keys(list), "a!,c");
}

/// Changes itself while it is loaded, as the keys say.
class Busy : public Items {
public:
  CXMLFolder *AddCollectionItem(const char *key) override {
    const CString order(key);
    if (order == "load" && Find("inner") == nullptr)
      loadKeys(*this, {"inner", "other"});
    if (order == "copy") {
      Items source;
      source.Add("copied");
      assignCollection<Item>(source);
    }
    if (order == "delete a")
      Delete("a");
    if (order == "delete a in between")
      AddMany(1, [this](int) { Delete("a"); });
    if (order == "rename a")
      Find("a")->Name = "n";
    CXMLFolder *const item = Items::AddCollectionItem(key);
    if (order == "unnamed") {
      EXPECT_NE(FindItem("Unassigned"), nullptr) << "an item that is not loaded yet has its default key";
    }
    return item;
  }
};

TEST(XmlCollection, AListThatChangesWhileItIsLoadedKnowsItsKeys) {
  const struct {
    std::vector<std::string> given;
    const char *keys;
  } rows[] = {
      {{"a", "b", "load", "inner", "other", "a", "A"}, "inner,other,load,a"},
      // Equal keys are refused again after a copy, which takes all.
      {{"a", "b", "copy", "copied", "a", "copy"}, "copied,copy"},
      {{"a", "b", "c", "delete a", "b", "c", "a", "A"}, "b,c,delete a,a"},
      {{"a", "b", "c", "delete a in between", "b", "c", "a"}, "b,c,delete a in between,a"},
      {{"a", "rename a", "a", "A"}, "n,rename a,a"},
      {{"a", "unnamed", "UNNAMED", "Unassigned", "unassigned"}, "a,unnamed,Unassigned"},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.keys);
    Busy list;
    EXPECT_EQ(loadKeys(list, row.given), KRX_E_DUPLICATE_KEY);
    EXPECT_EQ(keys(list), row.keys);
  }
}

TEST(XmlCollection, OwnMembersCountAsChanges) {
  struct WithMember : Items {
    void pushMembers() override { m_members = {&Extra}; }
    CXMLAttribute Extra;
  } list;
  list.pushMembers();
  list.PutModified(0);
  EXPECT_EQ(list.GetModified(), 0);
  list.Extra = "x";
  EXPECT_EQ(list.GetModified(), 1);
  list.PutModified(0);
  EXPECT_EQ(list.Extra.GetModified(), 0);
}

TEST(XmlCollection, SavesItemsInOrderUnderTheItemTag) {
  Document document, again;
  document.Contents.CreationDate = "7";
  document.List.Add("z")->PutTag(CString("Item"));
  document.List.Add("a")->Text = "";
  document.PutModified(0);
  document.List[1]->Bound = "0x1";
  EXPECT_NE(document.GetModified(), 0);
  const std::string bytes = save(document);
  EXPECT_EQ(document.GetModified(), 0);
  EXPECT_EQ(bytes, support::read(KESTRUNE_TEST_DATA "/xml/sample.xml"));
  EXPECT_EQ(support::load(again, bytes), S_OK);
  EXPECT_EQ(save(again), bytes);
  again.List.Clear();
  EXPECT_TRUE(save(again).ends_with("\t<Items>\n\t</Items>\n</Root>\n"));
}

TEST(XmlFileNames, AreKeyedByNameAndHoldFlags) {
  CXMLFileNames names;
  ASSERT_NE(names.Add("a.xml"), nullptr);
  EXPECT_EQ(names.Add("A.XML"), nullptr);
  names[0]->OptionFlags = 3;
  support::expectCopies(names);
  EXPECT_NE(save(names).find("\t\t<PFXMLFileName Name=\"a.xml\">\n\t\t\t<OptionFlags>0x3<"), std::string::npos);
  EXPECT_STREQ(CXMLFileName("Tag", "File").GetTag(), "Tag");
  EXPECT_STREQ(CXMLFileName("Tag", "File").Name.GetTag(), "File");
}

} // namespace
