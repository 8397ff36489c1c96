#include "tests/colliding_texts.h"
#include "tests/document_support.h"
#include "tests/xml/sample_records.h"

#include <chrono>

namespace {

using sample::Document;
using sample::Item;
using sample::Items;
using sample::Items2;
using support::keys, support::save;

long load(CXMLCollectionFolder &list, const std::string &items) {
  return support::load(list, "<Items>" + items + "</Items>");
}

TEST(XmlCollection, AddFindDelete) {
  Items list;
  list.PutModified(0);
  Item *const first = list.Add("abc");
  ASSERT_NE(first, nullptr);
  EXPECT_STREQ(first->Name, "abc");
  EXPECT_NE(list.GetModified(), 0);
  list.PutModified(0);
  EXPECT_TRUE(list.Add("ABC") == nullptr && list.Add("") == nullptr && list.Add(nullptr) == nullptr);
  EXPECT_EQ(list.GetModified(), 0) << "a refused key changes nothing";
  EXPECT_EQ(list.Find("aBc"), first);
  EXPECT_TRUE(list.Find("x") == nullptr && list.Find(nullptr) == nullptr);
  list.Delete("ABC");
  EXPECT_EQ(list.Count(), 1) << "Delete heeds case";
  EXPECT_EQ(list.GetModified(), 0);
  list.Add("b");
  list.Add("c");
  list.Delete("b");
  EXPECT_EQ(keys(list), "abc,c");
  for (const int index : {2, -1})
    try {
      ADD_FAILURE() << list[index];
    } catch (const std::out_of_range &error) {
      EXPECT_STREQ(error.what(), "vector");
    }
  list.Clear();
  list.PutModified(0);
  list.Clear();
  EXPECT_NE(list.GetModified(), 0) << "clearing nothing counts as a change";
  EXPECT_EQ(CXMLCollectionFolder().Add("x"), nullptr) << "no NewFolder";
}

TEST(XmlCollection, LoadTakesWhatItCanAndTellsTheFirstFailure) {
  const auto outcome = [](const support::Cells &row) {
    Items list;
    list.Add("old");
    const long result = load(list, row[0]);
    EXPECT_EQ(list.GetModified(), 0) << row[0];
    return CString((std::to_string(result) + ":" + keys(list)).c_str());
  };
  const std::string empty = std::to_string(KRX_S_EMPTY_COLLECTION), twice = std::to_string(KRX_E_DUPLICATE_KEY);
  support::checkRows(2,
                     "- " + empty + ":   <Other/> " + empty + ":   <Item/> 0:   <Item/><Item~Name='b'/> 0:b " +
                         "<Item~Name='a'/><Item~Name='b'/> 0:a,b   <Item~Name=''/><Item~Name='c'/> " + twice + ":c " +
                         "<Item~Name='a'/><Item~Name='A'/><Item~Name='c'/> " + twice + ":a,c " +
                         "<Item~Name='a'><Item~Name='b'><Item~Name='c'/></Item></Item><Item~Name='d'/> 0:a,b,c,d",
                     outcome);
}

TEST(XmlCollection, EqualKeysWhereTheyAreIgnored) {
  Items2 list;
  EXPECT_EQ(load(list, "<Item Name='a'/><Item Name='a'/>"), KRX_E_DUPLICATE_KEY);
  list.SetIgnoreKey(1);
  EXPECT_EQ(load(list, "<Item Name='a'><Text>1</Text></Item><Item Name='A'/>"), S_OK);
  EXPECT_STREQ(list.Find("A")->Text, "1");
  Items2 copy(list);
  EXPECT_NE(copy.Add("a"), nullptr) << "the setting is copied";
  list.PutModified(0);
  for (const int outside : {-1, 2})
    list.DeleteIdx(outside);
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
  copy = list;
  copy = *&copy;
  EXPECT_EQ(keys(copy), "Dummy,a,a");
  EXPECT_EQ(copy.Add("DUMMY"), nullptr) << "afterwards keys count again";
  EXPECT_EQ(CXMLCollectionFolder(list).Count(), 0);
}

/// Keys are compared as a program's own rule says.
class Folding : public Items {
public:
  CXMLFolder *FindItem(const char *key) override {
    ++searches;
    return Items::FindItem(CString(key) + "!");
  }
  CXMLFolder *AddCollectionItem(const char *key) override {
    return *key == '-' ? nullptr : Items::AddCollectionItem(key);
  }
  int searches = 0;
};

TEST(XmlCollection, OverriddenSearchAndAddAreCalledDuringALoad) {
  Folding list;
  EXPECT_EQ(load(list, "<Item Name='a!'/><Item Name='a'/><Item Name='-b'/><Item Name='c'/>"), KRX_E_DUPLICATE_KEY);
  EXPECT_EQ(keys(list), "a!,c");
  EXPECT_EQ(list.searches, 3);
}

/// Searches right after each item was added, when that one still has its default key.
class SearchingTwice : public Items {
public:
  CXMLFolder *AddCollectionItem(const char *key) override {
    CXMLFolder *const item = Items::AddCollectionItem(key);
    found += FindItem("Default") != nullptr ? "yes " : "no ";
    return item;
  }
  std::string found;

protected:
  CXMLFolder *NewFolder() override {
    auto *const item = new Item;
    item->Name = "Default";
    return item;
  }
};

TEST(XmlCollection, AnItemThatIsNotLoadedYetHasItsDefaultKey) {
  SearchingTwice list;
  EXPECT_EQ(load(list, "<Item Name='b'/><Item Name='a'/><Item Name='A'/><Item Name='Default'/><Item Name='default'/>"),
            KRX_E_DUPLICATE_KEY);
  EXPECT_EQ(keys(list), "b,a,Default");
  EXPECT_EQ(list.found, "yes yes no yes yes ");
}

/// Loads or removes items of its own while it is loaded.
class Busy : public Items {
public:
  CXMLFolder *AddCollectionItem(const char *key) override {
    if (CString(key) == "again" && Count() == 1)
      load(*this, "<Item Name='inner'/><Item Name='x'/>");
    if (CString(key) == "delete b")
      Delete("b");
    if (CString(key) == "rename a")
      Find("a")->Name = "n";
    return Items::AddCollectionItem(key);
  }
};

TEST(XmlCollection, AListThatChangesWhileItIsLoaded) {
  const struct {
    const char *items;
    const char *keys;
  } rows[] = {
      {"<Item Name='a'/><Item Name='again'/><Item Name='x'/><Item Name='a'/>", "inner,x,again,a"},
      {"<Item Name='a'/><Item Name='b'/><Item Name='delete b'/><Item Name='b'/><Item Name='A'/>", "a,delete b,b"},
      {"<Item Name='a'/><Item Name='rename a'/><Item Name='a'/>", "n,rename a,a"},
  };
  for (const auto &row : rows) {
    Busy list;
    load(list, row.items);
    EXPECT_EQ(keys(list), row.keys) << row.items;
  }
}

/// Assigned by a loop of its own, without the library's helper.
class ByLoop : public Items {
public:
  ByLoop() = default;
  ByLoop &operator=(const ByLoop &rhs) {
    CXMLCollectionFolder::operator=(rhs);
    for (int index = 0; index < rhs.Count(); ++index)
      if (auto *const item = static_cast<Item *>(AddCollectionItem("Dummy")))
        *item = static_cast<const Item &>(*rhs.m_items[static_cast<std::size_t>(index)]);
    return *this;
  }
};

TEST(XmlCollection, AssignmentToItselfEnds) {
  ByLoop byLoop;
  byLoop.Add("a");
  byLoop = *&byLoop;
  EXPECT_EQ(byLoop.Count(), 0) << "the base clears the list for itself too";
  Items2 list;
  list.Add("a");
  list.PutModified(0);
  list = *&list;
  EXPECT_EQ(keys(list), "a");
  EXPECT_EQ(list.GetModified(), 0);
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

TEST(XmlCollection, ChosenKeysCostWhatOthersCost) {
  const auto seconds = [](const std::vector<std::string> &keys) {
    std::string items;
    for (const std::string &key : keys)
      items += "<Item Name='" + key + "'/>";
    double least = 1e9;
    for (int run = 0; run < 3; ++run) {
      Items list;
      const auto start = std::chrono::steady_clock::now();
      EXPECT_EQ(load(list, items), S_OK);
      least = std::min(least, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
      EXPECT_EQ(list.Count(), static_cast<int>(keys.size()));
    }
    return least;
  };
  EXPECT_LT(seconds(support::collidingTexts(4000, support::kKeyCharacters)), 5 * seconds(support::otherTexts(4000)));
}

TEST(XmlCollection, SavesItemsInOrderUnderTheItemTag) {
  Document document, again;
  document.Contents.CreationDate = "7";
  document.List.Add("z")->PutTag(CString("Item"));
  document.List.Add("a")->Text = "";
  document.List.PutModified(0);
  document.List[1]->Bound = "0x1";
  EXPECT_NE(document.GetModified(), 0);
  const std::string bytes = save(document);
  EXPECT_EQ(document.GetModified(), 0);
  EXPECT_EQ(
      bytes,
      support::document(
          "Root", '0', "Empty File Description",
          "\t<Items>\n"
          "\t\t<Item Name=\"z\" Flag=\"FALSE\">\n\t\t\t<Text>none</Text>\n\t\t\t<Bound>0xFFFF</Bound>\n\t\t</Item>\n"
          "\t\t<Item Name=\"a\" Flag=\"FALSE\">\n\t\t\t<Text></Text>\n\t\t\t<Bound>0x1</Bound>\n\t\t</Item>\n"
          "\t</Items>\n"));
  EXPECT_EQ(support::load(again, bytes), S_OK);
  EXPECT_EQ(save(again), bytes);
  again.List.Clear();
  EXPECT_TRUE(save(again).ends_with("\t<Items>\n\t</Items>\n</Root>\n"));
}

TEST(XmlFileNames, ListOfFileNames) {
  CXMLFileNames names;
  CXMLFileName *const name = names.Add("a.xml");
  ASSERT_NE(name, nullptr);
  EXPECT_EQ(names.Add("A.XML"), nullptr);
  name->OptionFlags = 3;
  CXMLFileNames copy(names);
  EXPECT_STREQ(copy.Find("A.xml")->OptionFlags, "0x3");
  EXPECT_NE(save(copy).find("\t\t<PFXMLFileName Name=\"a.xml\">\n\t\t\t<OptionFlags>0x3<"), std::string::npos);
  const CXMLFileName other("Tag", "File");
  EXPECT_STREQ(other.GetTag(), "Tag");
  EXPECT_STREQ(other.Name.GetTag(), "File");
  EXPECT_STREQ(other, "Unassigned");
}

} // namespace
