#include "tests/colliding_texts.h"
#include "tests/document_support.h"
#include "tests/xml/sample_records.h"

#include <ctime>
#include <sys/mman.h>

// Reading and writing of XML files: encodings, texts, entities, and files that mean harm.

namespace {

using sample::Document;
using support::Cells, support::checkRows, support::load, support::save;

constexpr const char *kRefused = "2147745797";

class Dom : public testing::Test {
protected:
  /// The text of element "Text" of one item.
  std::string text(const std::string &content, const std::string &before = "") {
    Document document;
    const long result = load(document,
                             before + "<Root><Items><Item Name='a'><Text>" + content +
                                 "</Text><Bound>0x1</Bound></Item></Items></Root>",
                             m_folder);
    return result == S_OK ? std::string(document.List[0]->Text)
                          : std::to_string(kestrune::platform::ResultBits(result));
  }

  support::Com m_com;
  support::TempFolder m_folder;
};

std::string utf16(std::string_view ascii, bool bigEndian) {
  std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
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
  const auto read = [](const std::string &bytes) {
    Document document;
    EXPECT_GE(load(document, bytes), 0);
    return document.List.Count() != 1 ? CString() : document.List[0]->Text + "," + document.List[0]->Name;
  };
  checkRows(3,
            "UTF-8 Größe€ Größe€,Größe€  ISO-8859-1 Gr\xF6\xDFz Größz,Größz  windows-1252 \xDFr\x80 ßr€,ßr€ "
            "US-ASCII a&#8364; a€,a€  big5 \xA4\xA4\xA5\x5C 中功,中功 "
            "GB2312 \xD6\xD0 中,中  EUC-KR \xB0\xA1 가,가  KOI8-R \xC1 а,а  EUC-JP \xA5\xBD ソ,ソ "
            "GB18030 \x81\x30\x81\x30 \xC2\x80,\xC2\x80",
            [&](const Cells &row) { return read(file(row[0], row[1])); });
  EXPECT_STREQ(read("\xEF\xBB\xBF" + file("utf-8", "Größe")), "Größe,Größe");
  EXPECT_STREQ(read(file("Shift_JIS", "\x83\x5C\\~\xB1")), "ソ\\~ｱ,ソ\\~ｱ");
  for (const bool bigEndian : {false, true})
    EXPECT_STREQ(read(utf16(file("UTF-16", "a&#223;~"), bigEndian)), "aß~,aß~") << bigEndian;
  for (const char *bad : {"no-such-encoding", "UTF-16"}) {
    Document document;
    EXPECT_EQ(load(document, file(bad, "x")), KRX_E_UNEXPECTED_DATA) << bad;
  }
  Document document;
  EXPECT_EQ(load(document, file("Shift_JIS", "\x83")), KRX_E_UNEXPECTED_DATA);
}

TEST_F(Dom, EveryTextComesBack) {
  std::istringstream list(
      "| |\t|\n|\r|\r\n|  a  |\n\ta\n|]]>|<a>&amp;|\"'|Größe ソ €|\xF0\x9F\x98\x80|\x7F|&#10;|<!-- -->");
  std::vector<std::string> texts;
  for (std::string text; std::getline(list, text, '|');)
    texts.push_back(text);
  Document document, again;
  for (const std::string &text : texts) {
    sample::Item *const item = document.List.Add(("k" + std::to_string(document.List.Count())).c_str());
    item->Text = text.c_str();
    item->Flag = text.c_str();
  }
  document.PutTag(CString("Rööt"));
  again.PutTag(CString("Rööt"));
  const std::string bytes = save(document);
  ASSERT_EQ(load(again, bytes), S_OK);
  for (int i = 0; i < document.List.Count(); ++i)
    EXPECT_TRUE(again.List[i]->Text == texts[i].c_str() && again.List[i]->Flag == texts[i].c_str()) << texts[i];
  EXPECT_EQ(save(again), bytes);
}

TEST_F(Dom, TextsThatXmlSpellsInOtherWays) {
  checkRows(2,
            "a<!--~c~-->b ab  ~<!--~c~-->~ ~~  a<?p~d?>b ab  &#x41;&#x42; AB  &lt;&gt;&amp;&quot;&apos; <>&\"' "
            "<![CDATA[<a>~]]~&amp;]]> <a>~]]~&amp;",
            [this](const Cells &row) { return CString(text(row[0]).c_str()); });
  EXPECT_EQ(text("a\r\nb\rc&#10;"), "a\nb\nc\n");
}

TEST_F(Dom, CodePagesOfTheProcess) {
  for (const auto &[page, bytes] : {std::pair<unsigned, const char *>{932, "\x83\x5C\\"}, {1252, "\x80\xF6"}}) {
    const support::CodePage codePage(page);
    Document document, again;
    document.List.Add("a")->Text = bytes;
    const std::string file = save(document, m_folder);
    EXPECT_NE(file.find(page == 932 ? "ソ\\" : "€ö"), std::string::npos) << page;
    EXPECT_EQ(load(again, file), S_OK) << page;
    EXPECT_STREQ(again.List[0]->Text, bytes) << page;
    document.List[0]->Text = page == 932 ? "\x83" : "\x81";
    EXPECT_EQ(document.SaveToFile((m_folder / "b.xml").c_str(), nullptr, true), KRX_E_SAVE_FAILED) << page;
  }
}

TEST_F(Dom, EntitiesNeverReachOutsideNorLoseATextInSilence) {
  support::write(m_folder / "secret.txt", "secret");
  const std::string external = "<!ENTITY e SYSTEM 'secret.txt'>";
  const std::string outside = "<!DOCTYPE Root SYSTEM 'secret.dtd'>",
                    parameter = "<!ENTITY % p SYSTEM 'secret.dtd'> %p;";
  const auto inside = [](const std::string &subset) { return "<!DOCTYPE Root [" + subset + "]>"; };
  EXPECT_EQ(text("&e;", inside("<!ENTITY e 'inner'>")), "inner");
  EXPECT_EQ(text("x", inside(external)), "x");
  EXPECT_EQ(text("&e;", inside(external)), kRefused);
  EXPECT_EQ(text("&e;"), kRefused);
  EXPECT_EQ(text("x", outside), "x");
  EXPECT_EQ(text("&e;", outside), kRefused);
  EXPECT_EQ(text("<b a='&e;'/>", outside), kRefused);
  EXPECT_EQ(text("<b a='&e;'/>", "<?xml version='1.0'\nencoding='ISO-8859-1'?><!DOCTYPE Root PUBLIC 'p' 's.dtd'>"),
            kRefused);
  EXPECT_EQ(text("&e;", inside(parameter + " <!ENTITY e 'late'>")), "late");
  EXPECT_EQ(text("<b a='&f;'/>", inside(parameter)), kRefused);
  EXPECT_EQ(text("&e;", inside("<!ENTITY % p \"<!ENTITY e 'by parameter'>\"> %p;")), "by parameter");
  EXPECT_EQ(text("x<b/>", inside(parameter + "<!ATTLIST b a CDATA 'd'>")), "x");
  EXPECT_EQ(text("\xE9", "<?xml version='1.0' encoding='windows-1252'?>" + outside), "é");
}

TEST_F(Dom, ExpansionIsBounded) {
  std::string laughs = "<!DOCTYPE Root [<!ENTITY e0 'lol'>";
  for (int i = 1; i < 40; ++i) {
    const std::string inner = "&e" + std::to_string(i - 1) + ";";
    laughs += "<!ENTITY e" + std::to_string(i) + " '" + inner + inner + inner + "'>";
  }
  EXPECT_EQ(text("&e39;", laughs + "]>"), kRefused);

  std::string chain = "<!DOCTYPE Root [<!ENTITY e0 'x'>";
  for (int i = 1; i < 200000; ++i)
    chain += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
  EXPECT_EQ(text("&e199999;", chain + "]>"), kRefused);

  const std::string defaults = "<!DOCTYPE Root [<!ATTLIST b a CDATA '" + std::string(100000, 'x') + "'>]>";
  std::string many;
  for (int i = 0; i < 100000; ++i)
    many += "<b/>";
  EXPECT_EQ(text(many, defaults), kRefused);

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
  EXPECT_EQ(text(deep), kRefused);
  std::string items;
  for (int i = 0; i < 50000; ++i)
    items += "<Item Name='" + std::to_string(i) + "'>";
  for (int i = 0; i < 50000; ++i)
    items += "</Item>";
  Document document;
  EXPECT_EQ(load(document, "<Root><Items>" + items + "</Items></Root>"), S_OK);
  EXPECT_EQ(document.List.Count(), 50000);
}

TEST_F(Dom, WhatATextHasReplacedCanBePutElsewhere) {
  IXMLDOMDocumentPtr document;
  ASSERT_EQ(S_OK, IXMLDOMDocument::CreateInstance(document));
  const IXMLDOMElementPtr root = document->createElement("r");
  const IXMLDOMElementPtr list = document->createElement("l");
  const IXMLDOMElementPtr first = document->createElement("a");
  document->PutdocumentElement(root);
  root->appendChild(list);
  list->appendChild(first);
  list->appendChild(document->createElement("b"));
  list->Puttext("t");
  root->appendChild(first);
  ASSERT_EQ(S_OK, document->save((m_folder / "b.xml").c_str()));
  EXPECT_EQ("<r><l>t</l><a></a></r>\n", support::read(m_folder / "b.xml"));
}

TEST_F(Dom, ASearchSeesWhatATextHasReplaced) {
  support::write(m_folder / "a.xml", "<r><l><a>1</a></l><a>2</a></r>");
  IXMLDOMDocumentPtr document;
  ASSERT_EQ(IXMLDOMDocument::CreateInstance(document), S_OK);
  ASSERT_TRUE(document->load((m_folder / "a.xml").c_str()));
  const IXMLDOMElementPtr root = document->GetdocumentElement();
  root->getElementsByTagName("l").Getitem(0)->Puttext("t");
  EXPECT_EQ(root->getElementsByTagName("a").Getlength(), 1);
  EXPECT_STREQ(root->getElementsByTagName("a").Getitem(0)->Gettext(), "2");
  EXPECT_EQ(root->getElementsByTagName("a").Getitem(1), nullptr);
}

TEST_F(Dom, ATextComesBeforeAFirstChildAndNothingStandsBelowItself) {
  IXMLDOMDocumentPtr document;
  ASSERT_EQ(IXMLDOMDocument::CreateInstance(document), S_OK);
  const IXMLDOMElementPtr above = document->createElement("a");
  const IXMLDOMElementPtr below = document->createElement("b");
  above->Puttext("t");
  above->appendChild(below);
  below->appendChild(document->createElement("c"));
  EXPECT_THROW(below->appendChild(above), _com_error);
  EXPECT_THROW(above->appendChild(above), _com_error);
  document->PutdocumentElement(above);
  ASSERT_EQ(document->save((m_folder / "b.xml").c_str()), S_OK);
  EXPECT_EQ(support::read(m_folder / "b.xml"), "<a>t<b><c></c></b></a>\n");
}

TEST_F(Dom, ATextOfTwoGibibytesIsRefused) {
  constexpr std::size_t kTooLong = std::size_t{1} << 31;
  void *const room = ::mmap(nullptr, kTooLong, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(room, MAP_FAILED);
  const std::string_view text(static_cast<const char *>(room), kTooLong);
  IXMLDOMDocumentPtr document;
  ASSERT_EQ(IXMLDOMDocument::CreateInstance(document), S_OK);
  const IXMLDOMElementPtr element = document->createElement("a");
  EXPECT_THROW(document->createTextNode(text), _com_error);
  EXPECT_THROW(element->Puttext(text), _com_error);
  EXPECT_THROW(element->setAttribute("b", text), _com_error);
  EXPECT_STREQ(element->Gettext(), "");
  ::munmap(room, kTooLong);
}

TEST_F(Dom, NamesThatSomebodyChoseCostNoMoreThanOthers) {
  const auto cost = [this](const std::vector<std::string> &names) {
    std::string content;
    for (const std::string &name : names)
      content += "<" + name + "/>";
    const std::clock_t start = std::clock();
    EXPECT_EQ(text(content), "");
    return static_cast<double>(std::clock() - start);
  };
  const double others = cost(support::otherTexts(10000));
  EXPECT_LE(cost(support::collidingTexts(10000)), 5 * others);
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
  IXMLDOMDocumentPtr unreadable;
  ASSERT_EQ(IXMLDOMDocument::CreateInstance(unreadable), S_OK);
  EXPECT_FALSE(unreadable->load(m_folder.path().c_str()));
  EXPECT_STREQ(unreadable->GetparseError().reason, "Is a directory");
  EXPECT_EQ(unreadable->GetparseError().line, 0);
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
