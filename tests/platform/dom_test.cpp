#include "tests/xml/sample_records.h"

#include <fstream>

// Reading and writing of XML files: encodings, texts, entities, and files that mean harm.

namespace {

using sample::Document;
using sample::Item;

class Dom : public testing::Test {
protected:
  long load(Document &document, std::string_view bytes) {
    support::write(m_folder / "a.xml", bytes);
    return document.LoadFromFile((m_folder / "a.xml").c_str(), nullptr);
  }
  /// The text of element "Text" of one item.
  std::string text(const std::string &content, const std::string &before = "") {
    Document document;
    const long result = load(document, before + "<Root><Items><Item Name='a'><Text>" + content +
                                           "</Text><Bound>0x1</Bound></Item></Items></Root>");
    return result == S_OK ? std::string(document.List[0]->Text) : std::to_string(platform::ResultBits(result));
  }

  support::Com m_com;
  support::TempFolder m_folder;
};

std::string utf16(std::string_view ascii, bool bigEndian, bool mark) {
  std::string bytes = mark ? (bigEndian ? "\xFE\xFF" : "\xFF\xFE") : "";
  for (const char c : ascii) {
    bytes += bigEndian ? '\0' : c;
    bytes += bigEndian ? c : '\0';
  }
  return bytes;
}

TEST_F(Dom, EveryEncodingGivesTheSameTexts) {
  const auto file = [](const std::string &encoding, const std::string &text) {
    return "<?xml version='1.0' encoding='" + encoding + "'?>\n<Root><Items><Item Name='" + text + "'><Text>" + text +
           "</Text></Item></Items></Root>";
  };
  const struct {
    const char *what;
    std::string bytes;
    const char *text;
  } rows[] = {
      {"UTF-8", file("UTF-8", "Größe €"), "Größe €"},
      {"UTF-8 with a mark", "\xEF\xBB\xBF" + file("utf-8", "Größe"), "Größe"},
      {"ISO-8859-1",
       file("ISO-8859-1", "Gr\xF6\xDF"
                          "e"),
       "Größe"},
      {"windows-1252",
       file("windows-1252", "Gr\xF6\xDF"
                            "e \x80"),
       "Größe €"},
      {"US-ASCII", file("US-ASCII", "a&#8364;"), "a€"},
      {"UTF-16 little", utf16(file("UTF-16", "a&#223;~"), false, true), "aß~"},
      {"UTF-16 big", utf16(file("UTF-16", "a&#223;"), true, true), "aß"},
      {"Shift_JIS", file("Shift_JIS", "\x83\x5C\\~\xB1"), "ソ\\~ｱ"},
      {"Big5", file("big5", "\xA4\xA4\xA5\x5C"), "中功"},
      {"GB2312", file("GB2312", "\xD6\xD0~"), "中~"},
      {"EUC-KR", file("EUC-KR", "\xB0\xA1"), "가"},
      {"KOI8-R", file("KOI8-R", "\xC1"), "а"},
      {"EUC-JP", file("EUC-JP", "\xA5\xBD"), "ソ"},
      {"GB18030", file("GB18030", "\x81\x30\x81\x30"), "\xC2\x80"},
  };
  for (const auto &row : rows) {
    Document document;
    EXPECT_GE(load(document, row.bytes), 0) << row.what;
    ASSERT_EQ(document.List.Count(), 1) << row.what;
    EXPECT_STREQ(document.List[0]->Text, row.text) << row.what;
    EXPECT_STREQ(document.List[0]->Name, row.text) << row.what;
  }
  for (const char *bad : {"no-such-encoding", "UTF-16"}) {
    Document document;
    EXPECT_EQ(load(document, file(bad, "x")), KRX_E_UNEXPECTED_DATA) << bad;
  }
  Document document;
  EXPECT_EQ(load(document, file("Shift_JIS", "\x83")), KRX_E_UNEXPECTED_DATA);
}

TEST_F(Dom, EveryTextComesBack) {
  const char *const texts[] = {"",
                               " ",
                               "\t",
                               "\n",
                               "\r",
                               "\r\n",
                               "  a  ",
                               "\n\ta\n",
                               "]]>",
                               "<a>&amp;",
                               "\"'",
                               "Größe ソ €",
                               "\xF0\x9F\x98\x80",
                               "\x7F",
                               "&#10;",
                               "<!-- -->"};
  Document document;
  for (const char *text : texts) {
    Item *const item = document.List.Add(("k" + std::to_string(document.List.Count())).c_str());
    item->Text = text;
    item->Flag = text;
  }
  document.PutTag(CString("Rööt"));
  ASSERT_EQ(document.SaveToFile((m_folder / "a.xml").c_str(), nullptr, true), S_OK);
  Document again;
  again.PutTag(CString("Rööt"));
  ASSERT_EQ(again.LoadFromFile((m_folder / "a.xml").c_str(), nullptr), S_OK);
  for (int i = 0; i < again.List.Count(); ++i) {
    EXPECT_STREQ(again.List[i]->Text, texts[i]);
    EXPECT_STREQ(again.List[i]->Flag, texts[i]);
  }
  ASSERT_EQ(again.SaveToFile((m_folder / "b.xml").c_str(), nullptr, true), S_OK);
  EXPECT_EQ(support::read(m_folder / "b.xml"), support::read(m_folder / "a.xml"));
}

TEST_F(Dom, TextsThatXmlSpellsInOtherWays) {
  const std::pair<const char *, const char *> rows[] = {{"<![CDATA[<a> ]] &amp;]]>", "<a> ]] &amp;"},
                                                        {"a<!-- c -->b", "ab"},
                                                        {" <!-- c --> ", "  "},
                                                        {"a<?p d?>b", "ab"},
                                                        {"&#x41;&#10;", "A\n"},
                                                        {"a\r\nb\rc", "a\nb\nc"},
                                                        {"&lt;&gt;&amp;&quot;&apos;", "<>&\"'"}};
  for (const auto &[content, expected] : rows)
    EXPECT_EQ(text(content), expected) << content;
}

TEST_F(Dom, CodePagesOfTheProcess) {
  for (const auto &[page, bytes] : {std::pair<unsigned, const char *>{932, "\x83\x5C\\"}, {1252, "\x80\xF6"}}) {
    const support::CodePage codePage(page);
    Document document;
    document.List.Add("a")->Text = bytes;
    ASSERT_EQ(document.SaveToFile((m_folder / "p.xml").c_str(), nullptr, true), S_OK) << page;
    Document again;
    EXPECT_EQ(again.LoadFromFile((m_folder / "p.xml").c_str(), nullptr), S_OK) << page;
    EXPECT_STREQ(again.List[0]->Text, bytes) << page;
    EXPECT_NE(support::read(m_folder / "p.xml").find(page == 932 ? "ソ\\" : "€ö"), std::string::npos) << page;
    document.List[0]->Text = page == 932 ? "\x83" : "\x81";
    EXPECT_EQ(document.SaveToFile((m_folder / "p.xml").c_str(), nullptr, true), KRX_E_SAVE_FAILED) << page;
  }
}

TEST_F(Dom, EntitiesNeverReachOutsideNorLoseATextInSilence) {
  support::write(m_folder / "secret.txt", "secret");
  const std::string external = "<!ENTITY e SYSTEM 'secret.txt'>";
  const struct {
    const char *content;
    std::string before;
    const char *expected;
  } rows[] = {
      {"&e;", "<!DOCTYPE Root [<!ENTITY e 'inner'>]>", "inner"},
      {"x", "<!DOCTYPE Root [" + external + "]>", "x"},
      {"&e;", "<!DOCTYPE Root [" + external + "]>", "2147745797"},
      {"&e;", "", "2147745797"},
      {"x", "<!DOCTYPE Root SYSTEM 'secret.dtd'>", "x"},
      {"&e;", "<!DOCTYPE Root SYSTEM 'secret.dtd'>", "2147745797"},
      {"<b a='&e;'/>", "<!DOCTYPE Root SYSTEM 'secret.dtd'>", "2147745797"},
      {"<b a='&e;'/>", "<?xml version='1.0'\nencoding='ISO-8859-1'?><!DOCTYPE Root PUBLIC 'p' 'secret.dtd'>",
       "2147745797"},
      {"&e;", "<!DOCTYPE Root [<!ENTITY % p SYSTEM 'secret.dtd'> %p; <!ENTITY e 'late'>]>", "late"},
      {"<b a='&f;'/>", "<!DOCTYPE Root [<!ENTITY % p SYSTEM 'secret.dtd'> %p;]>", "2147745797"},
      {"&e;", "<!DOCTYPE Root [<!ENTITY % p \"<!ENTITY e 'by parameter'>\"> %p;]>", "by parameter"},
      {"x<b/>", "<!DOCTYPE Root [<!ENTITY % p SYSTEM 'secret.dtd'> %p;<!ATTLIST b a CDATA 'd'>]>", "x"},
      {"\xE9", "<?xml version='1.0' encoding='windows-1252'?><!DOCTYPE Root SYSTEM 's.dtd'>", "é"},
  };
  for (const auto &row : rows)
    EXPECT_EQ(text(row.content, row.before), row.expected) << row.before << row.content;
}

TEST_F(Dom, ExpansionIsBounded) {
  std::string laughs = "<!DOCTYPE Root [<!ENTITY e0 'lol'>";
  for (int i = 1; i < 40; ++i) {
    const std::string inner = "&e" + std::to_string(i - 1) + ";";
    laughs += "<!ENTITY e" + std::to_string(i) + " '" + inner + inner + inner + "'>";
  }
  EXPECT_EQ(text("&e39;", laughs + "]>"), "2147745797");

  std::string chain = "<!DOCTYPE Root [<!ENTITY e0 'x'>";
  for (int i = 1; i < 200000; ++i)
    chain += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
  EXPECT_EQ(text("&e199999;", chain + "]>"), "2147745797");

  const std::string defaults = "<!DOCTYPE Root [<!ATTLIST b a CDATA '" + std::string(100000, 'x') + "'>]>";
  std::string many;
  for (int i = 0; i < 100000; ++i)
    many += "<b/>";
  EXPECT_EQ(text(many, defaults), "2147745797");

  // Each text below would join all those further down.
  std::string nested;
  for (int i = 0; i < 30000; ++i)
    nested += "<Item Name='" + std::to_string(i) + "'><Text>some text";
  for (int i = 0; i < 30000; ++i)
    nested += "</Text></Item>";
  Document document;
  EXPECT_EQ(load(document, "<Root><Items>" + nested + "</Items></Root>"), KRX_E_LOAD_EXCEPTION);
}

TEST_F(Dom, DepthTakesNoStack) {
  constexpr int kDepth = 1000000;
  std::string deep;
  for (int i = 0; i < kDepth; ++i)
    deep += "<a>";
  for (int i = 0; i < kDepth; ++i)
    deep += "</a>";
  EXPECT_EQ(text("x</Text>" + deep + "<Text>"), "x");
  EXPECT_EQ(text(deep), "");
  deep.resize(deep.size() - 4);
  EXPECT_EQ(text(deep), "2147745797");
  std::string items;
  for (int i = 0; i < 50000; ++i)
    items += "<Item Name='" + std::to_string(i) + "'>";
  for (int i = 0; i < 50000; ++i)
    items += "</Item>";
  Document document;
  EXPECT_EQ(load(document, "<Root><Items>" + items + "</Items></Root>"), S_OK);
  EXPECT_EQ(document.List.Count(), 50000);
}

TEST_F(Dom, ErrorsHaveAPlace) {
  const struct {
    const char *bytes;
    long line;
    long column;
  } rows[] = {{"<a>\n  <b></c></a>", 2, 8},
              {"", 1, 1},
              {"<a>\n&u;</a>", 2, 1},
              {"<?xml version='1.0' encoding='x'?><a/>", 0, 0}};
  for (const auto &row : rows) {
    support::write(m_folder / "e.xml", row.bytes);
    IXMLDOMDocumentPtr document;
    ASSERT_EQ(IXMLDOMDocument::CreateInstance(document), S_OK);
    EXPECT_FALSE(document->load((m_folder / "e.xml").c_str()));
    EXPECT_EQ(document->GetparseError().line, row.line) << row.bytes;
    EXPECT_EQ(document->GetparseError().column, row.column) << row.bytes;
    EXPECT_FALSE(document->GetparseError().reason.IsEmpty()) << row.bytes;
  }
}

TEST_F(Dom, EveryPrefixAndEveryChangedByteLeavesTheDocumentUsable) {
  const std::string whole = "<?xml version='1.0'?><!DOCTYPE Root [<!ENTITY e 'x'>]><Root><Contents Format='1'/>"
                            "<Items><Item Name='a'><Text>&e;ä<![CDATA[]]></Text></Item></Items></Root>";
  for (std::size_t length = 0; length < whole.size(); ++length) {
    Document document;
    ASSERT_EQ(load(document, whole.substr(0, length)), KRX_E_UNEXPECTED_DATA) << length;
  }
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const char byte : {'\0', '<', '&', '"', '\xFF', 'z'}) {
      std::string changed = whole;
      changed[at] = byte;
      Document document;
      const long result = load(document, changed);
      ASSERT_TRUE(result >= 0 || result == KRX_E_UNEXPECTED_DATA || result == KRX_E_WRONG_ROOT_TAG) << changed;
      ASSERT_EQ(document.SaveToFile((m_folder / "b.xml").c_str(), nullptr, true), S_OK) << changed;
    }
  }
}

} // namespace
