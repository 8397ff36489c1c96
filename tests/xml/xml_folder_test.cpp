#include "tests/document_support.h"
#include "tests/xml/sample_records.h"

namespace {

using sample::Item;
using support::load, support::save;

/// A folder whose members are those that a test gives it.
class Group : public CXMLFolder {
public:
  explicit Group(const char *tag, std::vector<CXMLPersistent *> members) : m_list(std::move(members)) {
    PutTag(CString(tag));
    Group::pushMembers();
  }
  void pushMembers() override { m_members = m_list; }

private:
  std::vector<CXMLPersistent *> m_list;
};

/// A member whose load fails.
class Failing : public CXMLElement {
public:
  explicit Failing(long code) : m_code(code) {}
  long Load(MSXML::IXMLDOMElement *) override {
    ++loads;
    return m_code;
  }
  int loads = 0;

private:
  long m_code;
};

template <class Value>
struct Tagged : Value {
  explicit Tagged(const char *tag) { this->PutTag(CString(tag)); }
  using Value::operator=;
};
using Attribute = Tagged<CXMLAttribute>;
using Element = Tagged<CXMLElement>;

TEST(XmlFolder, SavesAttributesAndElementsInTheirLayout) {
  Item item, again;
  item.Name = "a<\"&\t\n'>";
  item.Text = "\r a]]>\n\t";
  item.Bound = 16;
  const std::string bytes = save(item);
  EXPECT_EQ(bytes, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                   "<Item>\n"
                   "\t<Item Name=\"a&lt;&quot;&amp;&#9;&#10;'>\" Flag=\"FALSE\">\n"
                   "\t\t<Text>&#13; a]]&gt;\n\t</Text>\n"
                   "\t\t<Bound>0x10</Bound>\n"
                   "\t</Item></Item>\n");
  EXPECT_EQ(load(again, bytes), KRX_S_NO_ATTRIBUTE) << "a plain folder finds its elements, but not its attributes";
  EXPECT_EQ(again.Text, item.Text);
  EXPECT_STREQ(again.Name, "Unassigned");
}

TEST(XmlFolder, ResultIsThatOfTheLastMemberThatWasLoaded) {
  Attribute attribute("A");
  Element element("E");
  Group inner("In", {});
  Group group("R", {&attribute, &element, &inner});
  EXPECT_EQ(load(group, "<R/>"), KRX_S_NO_ELEMENT);
  EXPECT_STREQ(inner, "Unassigned") << "a missing folder is not touched";
  EXPECT_EQ(load(group, "<R><In/></R>"), S_OK);
  EXPECT_EQ(load(group, "<R A='1'><E>x</E></R>"), S_OK);
  EXPECT_STREQ(attribute, "1");
  EXPECT_STREQ(element, "x");
  EXPECT_STREQ(group, "R");
  Group backwards("R", {&element, &attribute});
  EXPECT_EQ(load(backwards, "<R/>"), KRX_S_NO_ATTRIBUTE);
  EXPECT_STREQ(attribute, "1") << "a missing value keeps its text";

  Failing first(KRX_E_DUPLICATE_KEY), second(KRX_E_SAVE_FAILED);
  Group failing("R", {&first, &attribute, &second});
  EXPECT_EQ(load(failing, "<R A='2'/>"), KRX_E_DUPLICATE_KEY);
  EXPECT_EQ(second.loads, 1);
  EXPECT_STREQ(attribute, "2");
}

TEST(XmlFolder, SearchesAllDescendants) {
  Element text("T"), same("T"), joined("J");
  Attribute attribute("A");
  Group group("R", {&text, &same, &attribute, &joined});
  EXPECT_EQ(load(group, "<r><Q><T A='q'>deep</T></Q><T>later</T><J>a<T/> <K>b</K>\n<K> c </K></J></r>"), S_OK);
  EXPECT_STREQ(text, "deep");
  EXPECT_STREQ(same, "deep");
  EXPECT_STREQ(attribute, "Unassigned");
  EXPECT_STREQ(joined, "ab c ");
}

TEST(XmlFolder, ModifiedFlagsWalkTheTree) {
  CXMLElement element;
  Group inner("In", {&element});
  Group group("R", {&inner});
  EXPECT_EQ(group.GetModified(), 0);
  element = "x";
  EXPECT_NE(group.GetModified(), 0);
  EXPECT_EQ(std::as_const(inner).GetModified(), 1) << "the flag sticks on the way";
  element.PutModified(0);
  EXPECT_NE(group.GetModified(), 0);
  group.PutModified(0);
  EXPECT_EQ(group.GetModified(), 0);
  group.PutModified(2);
  EXPECT_EQ(element.GetModified(), 2);
}

TEST(XmlFolder, CopyTakesTextsAndNoFileName) {
  Item source, target;
  source.Name = "n";
  source.m_fileName = "x.xml";
  target.PutModified(0);
  target.m_fileName = "y.xml";
  target = source;
  EXPECT_STREQ(target.m_fileName, "y.xml");
  EXPECT_STREQ(target.Name, "n");
  EXPECT_EQ(target.Name.GetModified(), 1);
  EXPECT_EQ(target.Bound.GetModified(), 0);
  EXPECT_TRUE(Item(source).m_fileName.IsEmpty());
  target.CXMLFolder::operator=(source);
  EXPECT_TRUE(target.m_fileName.IsEmpty());
  source.CXMLFolder::operator=(source);
  EXPECT_STREQ(source.m_fileName, "x.xml") << "assigned to itself";
}

TEST(XmlFolder, OrderIsThatOfTheKeys) {
  Item lower, upper;
  lower.Name = "abc";
  upper.Name = "ABC";
  EXPECT_TRUE(upper < lower);
  EXPECT_FALSE(lower < upper);
}

TEST(XmlFolder, DebugChannelReportsWhatIsMissingOrOdd) {
  std::string told;
  kestrune::platform::SetDebugSink([&](const char *text) { told += text; });
  Attribute attribute("A");
  Element element("E");
  Group inner("In", {});
  Group group("R", {&attribute, &element, &inner});
  load(group, "<R/>");
  CXMLHexElement hex;
  hex = "0X12";
  hex = "0x12";
  kestrune::platform::SetDebugSink({});
  EXPECT_EQ(told, "getAttributeValue.  Failed to find R.A\ngetElementValue.  Failed to find R.E\n"
                  "getElementByName. Failed to find R/In\n"
                  "KO. CXMLHexElement. You must prefix hex values with 0x, you tried: 0X12\n");
}

/// Loads nothing of its own, but shows the DOM functions an element.
class Probe : public CXMLFolder {
public:
  Probe() { PutTag(CString("R")); }
  long Load(MSXML::IXMLDOMElement *parent) override {
    const IXMLDOMElementPtr element(parent);
    CString value("old");
    EXPECT_FALSE(getElementValue(element, "none", value));
    EXPECT_STREQ(value, "") << "emptied where there is none";
    EXPECT_FALSE(setElementValue(element, "none", "x"));
    EXPECT_TRUE(setElementValue(element, "T", "new <text>"));
    EXPECT_TRUE(getElementValue(element, "T", value));
    EXPECT_STREQ(value, "new <text>");
    EXPECT_TRUE(setAttributeValue(element, "B", "b"));
    EXPECT_TRUE(getAttributeValue(element, "B", value));
    EXPECT_STREQ(value, "b");
    EXPECT_FALSE(setAttributeValue(nullptr, "T", "x"));
    EXPECT_THROW(getElementByName(nullptr, "T"), _com_error);
    EXPECT_THROW(insertTabs(nullptr, 1), _com_error);
    for (const int depth : {3, -1, 100})
      insertTabs(element, depth);
    appendNewline(element);
    EXPECT_TRUE(element->Gettext().View().ends_with("\n\t\t\t\n\n" + std::string(100, '\t') + "\n"));
    return S_OK;
  }
};

TEST(XmlFolder, DomFunctionsOnAnElement) {
  Probe probe;
  EXPECT_EQ(load(probe, "<R><T>1</T></R>"), S_OK);
}

} // namespace
