#include "tests/document_support.h"
#include "tests/xml/sample_records.h"

#include <algorithm>

namespace {

using sample::Item;
using support::load, support::save;

/// A folder whose members are those that a test gives it.
struct Group : CXMLFolder {
  Group(const char *tag, const std::vector<CXMLPersistent *> &members) {
    PutTag(CString(tag));
    m_members = members;
  }
};

TEST(XmlFolder, SavesAttributesAndElementsInTheirLayout) {
  Item item;
  item.Name = "a<\"&\t\n'>";
  item.Text = "\r a]]>\n\t";
  item.Bound = 16;
  EXPECT_EQ(save(item), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<Item>\n"
                        "\t<Item Name=\"a&lt;&quot;&amp;&#9;&#10;'>\" Flag=\"FALSE\">\n"
                        "\t\t<Text>&#13; a]]&gt;\n\t</Text>\n"
                        "\t\t<Bound>0x10</Bound>\n"
                        "\t</Item></Item>\n");
}

TEST(XmlFolder, ResultIsTheFirstFailureOrThatOfTheLastMember) {
  std::string reported;
  kestrune::platform::SetDebugSink([&](const char *text) { reported += text; });
  CXMLAttribute attribute;
  CXMLElement element;
  sample::Items bad;
  attribute.PutTag(CString("A"));
  element.PutTag(CString("E"));
  Group inner("In", {});
  Group group("R", {&attribute, &element, &inner});
  Group failing("R", {&bad, &attribute});
  EXPECT_EQ(load(group, "<R/>"), KRX_S_NO_ELEMENT) << "a missing folder does not count";
  kestrune::platform::SetDebugSink({});
  EXPECT_EQ(reported, "getAttributeValue.  Failed to find R.A\ngetElementValue.  Failed to find R.E\n"
                      "getElementByName. Failed to find R/In\n");
  EXPECT_EQ(load(group, "<R><E>x</E></R>"), S_OK);
  EXPECT_STREQ(attribute, "Unassigned") << "a missing value keeps its text";
  EXPECT_STREQ(element, "x");
  EXPECT_EQ(load(failing, "<R A='2'><Items><Item Name=''/></Items></R>"), KRX_E_DUPLICATE_KEY);
  EXPECT_STREQ(attribute, "2") << "also the members after a failure are loaded";
}

TEST(XmlFolder, SearchesAllDescendants) {
  Item item;
  EXPECT_EQ(load(item, "<Item><Q><Text>a<Bound>3</Bound>\n<K> c </K></Text></Q><Text>later</Text></Item>"),
            KRX_S_NO_ATTRIBUTE);
  EXPECT_STREQ(item.Text, "a3 c ");
  EXPECT_STREQ(item.Bound, "3");
}

TEST(XmlFolder, ModifiedFlagsWalkTheTree) {
  CXMLElement element;
  Group inner("In", {&element});
  Group group("R", {&inner});
  EXPECT_EQ(group.GetModified(), 0);
  element = "x";
  EXPECT_NE(group.GetModified(), 0);
  element.PutModified(0);
  EXPECT_NE(group.GetModified(), 0) << "the flag sticks on the way";
  group.PutModified(2);
  EXPECT_EQ(element.GetModified(), 2);
}

TEST(XmlFolder, CopyTakesTextsAndNoFileName) {
  Item source, target;
  source.Name = "n";
  source.m_fileName = "x.xml";
  target.m_fileName = "y.xml";
  target = source;
  EXPECT_STREQ(target.m_fileName, "y.xml");
  EXPECT_STREQ(target.Name, "n");
  CXMLTopLevelFolder document;
  document = "text";
  EXPECT_STREQ(document, "text");
}

TEST(XmlFolder, TheListOfARecordCanBeChangedByHand) {
  struct Longer : CXMLPair {
    void pushMembers() override {
      CXMLPair::pushMembers();
      m_members.push_back(&Extra);
    }
    using CXMLFolder::m_members;
    CXMLElement Extra;
  } record;
  using Members = std::vector<CXMLPersistent *>;
  EXPECT_EQ(Members(record.m_members), (Members{&record.Name, &record.Number}))
      << "that of its base, as long as nobody asked";
  record.pushMembers();
  const Members all{&record.Name, &record.Number, &record.Extra};
  EXPECT_EQ(Members(record.m_members), all);
  Longer copy(record);
  EXPECT_EQ(Members(copy.m_members), (Members{&copy.Name, &copy.Number})) << "each lists its own members";
  const kestrune::MemberList saved = record.m_members;
  *std::find(record.m_members.begin(), record.m_members.end(), &record.Name) = &record.Extra;
  record.m_members.erase(record.m_members.end() - 1);
  EXPECT_EQ(Members(record.m_members), (Members{&record.Extra, &record.Number}));
  record.m_members = saved;
  EXPECT_TRUE(std::equal(saved.begin(), saved.end(), all.begin(), all.end()));
  EXPECT_EQ(record.m_members.back(), &record.Extra);
  EXPECT_STREQ(kestrune::MembersOf(record)[1].defaultText, "Unassigned");
}

} // namespace
