#include "tests/xml/sample_records.h"

namespace {

using sample::Document;
using sample::Item;
using sample::Items;
using sample::Items2;

std::string keys(CXMLCollectionFolder &list) {
  std::string joined;
  for (int i = 0; i < list.Count(); ++i)
    joined += (i > 0 ? "," : "") + std::string(list[i]->Key());
  return joined;
}

template <class List>
long load(List &list, const std::string &items) {
  const support::Com com;
  const support::TempFolder folder;
  support::write(folder / "a.xml", "<Items>" + items + "</Items>");
  return list.LoadFromFile((folder / "a.xml").c_str(), nullptr);
}

TEST(XmlCollection, AddFindDelete) {
  Items list;
  list.PutModified(0);
  Item *const first = list.Add("abc");
  ASSERT_NE(first, nullptr);
  EXPECT_STREQ(first->Name, "abc");
  EXPECT_NE(list.GetModified(), 0);
  list.PutModified(0);
  EXPECT_EQ(list.Add("ABC"), nullptr);
  EXPECT_EQ(list.Add(""), nullptr);
  EXPECT_EQ(list.Add(nullptr), nullptr);
  EXPECT_EQ(list.GetModified(), 0) << "a refused key changes nothing";
  EXPECT_EQ(list.Find("aBc"), first);
  EXPECT_EQ(list.Find("x"), nullptr);
  EXPECT_EQ(list.Find(nullptr), nullptr);
  list.Delete("ABC");
  EXPECT_EQ(list.Count(), 1) << "Delete heeds case";
  EXPECT_EQ(list.GetModified(), 0);
  list.Add("b");
  list.Add("c");
  list.Delete("b");
  EXPECT_EQ(keys(list), "abc,c");
  for (const int index : {2, -1})
    EXPECT_THROW(
        {
          try {
            list[index];
          } catch (const std::out_of_range &error) {
            EXPECT_STREQ(error.what(), "vector");
            throw;
          }
        },
        std::out_of_range);
  list.Clear();
  list.PutModified(0);
  list.Clear();
  EXPECT_NE(list.GetModified(), 0) << "clearing nothing counts as a change";
  EXPECT_EQ(CXMLCollectionFolder().Add("x"), nullptr) << "no NewFolder";
}

TEST(XmlCollection, LoadTakesWhatItCanAndTellsTheFirstFailure) {
  const struct {
    const char *items;
    long result;
    const char *keys;
  } rows[] = {
      {"", KRX_S_EMPTY_COLLECTION, ""},
      {"<Other/>", KRX_S_EMPTY_COLLECTION, ""},
      {"<Item Name='a'/><Item Name='b'/>", S_OK, "a,b"},
      {"<Item/><Item Name='b'/>", S_OK, "b"},
      {"<Item/>", S_OK, ""},
      {"<Item Name='a'/><Item Name='A'/><Item Name='c'/>", KRX_E_DUPLICATE_KEY, "a,c"},
      {"<Item Name=''/><Item Name='c'/>", KRX_E_DUPLICATE_KEY, "c"},
      {"<Item Name='a'><Item Name='b'><Item Name='c'/></Item></Item><Item Name='d'/>", S_OK, "a,b,c,d"},
  };
  for (const auto &row : rows) {
    Items list;
    list.Add("old");
    EXPECT_EQ(load(list, row.items), row.result) << row.items;
    EXPECT_EQ(keys(list), row.keys) << row.items;
    EXPECT_EQ(list.GetModified(), 0) << row.items;
  }
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

TEST(XmlCollection, SavesItemsInOrderUnderTheItemTag) {
  const support::Com com;
  const support::TempFolder folder;
  Document document;
  document.Contents.CreationDate = "7";
  document.List.Add("z")->PutTag(CString("Item"));
  document.List.Add("a")->Text = "";
  document.List.PutModified(0);
  document.List[1]->Bound = "0x1";
  EXPECT_NE(document.GetModified(), 0);
  ASSERT_EQ(document.SaveToFile((folder / "a.xml").c_str(), nullptr, true), S_OK);
  EXPECT_EQ(document.GetModified(), 0);
  const std::string bytes = support::read(folder / "a.xml");
  EXPECT_EQ(bytes,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root>\n"
            "\t<Contents MajorVersion=\"0\" MinorVersion=\"0\" CreationDate=\"7\" Format=\"0\" Content=\"0\">\n"
            "\t\t<FileDescription>Empty File Description</FileDescription>\n"
            "\t\t<UpgradeStatus>0</UpgradeStatus>\n\t</Contents>\n"
            "\t<Items>\n"
            "\t\t<Item Name=\"z\" Flag=\"FALSE\">\n\t\t\t<Text>none</Text>\n\t\t\t<Bound>0xFFFF</Bound>\n\t\t</Item>\n"
            "\t\t<Item Name=\"a\" Flag=\"FALSE\">\n\t\t\t<Text></Text>\n\t\t\t<Bound>0x1</Bound>\n\t\t</Item>\n"
            "\t</Items>\n</Root>\n");
  Document again;
  EXPECT_EQ(again.LoadFromFile((folder / "a.xml").c_str(), nullptr), S_OK);
  EXPECT_EQ(again.SaveToFile((folder / "b.xml").c_str(), nullptr, false), S_OK);
  EXPECT_EQ(support::read(folder / "b.xml"), bytes);
  again.List.Clear();
  EXPECT_EQ(again.SaveToFile((folder / "b.xml").c_str(), nullptr, true), S_OK);
  EXPECT_NE(support::read(folder / "b.xml").find("\t<Items>\n\t</Items>\n</Root>\n"), std::string::npos);
}

TEST(XmlFileNames, ListOfFileNames) {
  const support::Com com;
  const support::TempFolder folder;
  CXMLFileNames names;
  CXMLFileName *const name = names.Add("a.xml");
  ASSERT_NE(name, nullptr);
  EXPECT_EQ(names.Add("A.XML"), nullptr);
  name->OptionFlags = 3;
  CXMLFileNames copy(names);
  EXPECT_STREQ(copy.Find("A.xml")->OptionFlags, "0x3");
  ASSERT_EQ(copy.SaveToFile((folder / "n.xml").c_str(), nullptr, true), S_OK);
  EXPECT_NE(support::read(folder / "n.xml").find("\t\t<PFXMLFileName Name=\"a.xml\">\n\t\t\t<OptionFlags>0x3<"),
            std::string::npos);
  const CXMLFileName other("Tag", "File");
  EXPECT_STREQ(other.GetTag(), "Tag");
  EXPECT_STREQ(other.Name.GetTag(), "File");
  EXPECT_STREQ(other, "Unassigned");
}

} // namespace
