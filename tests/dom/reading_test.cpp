#include "tests/colliding_texts.h"
#include "tests/dom/dom_support.h"

#include <cctype>
#include <ctime>
#include <sys/stat.h>
#include <thread>
#include <utility>

// Files into trees: encodings, spellings, entities, faults, and files that want to do harm.

namespace {

class Reading : public support::Dom {};

TEST_F(Reading, EncodingsGiveTheSameText) {
  const struct {
    const char *encoding, *bytes, *text;
  } rows[] = {
      {"UTF-8", "Größe€", "Größe€"},
      {"windows-1252", "\xDFr\x80", "ßr€"},
      {"Shift_JIS", "\x83\x5C\\~\xB1", "ソ\\~ｱ"},
      {"big5", "\xA4\xA4\xA5\x5C", "中功"},
      {"Shift_JIS", "\x83", kRefused},
      {"no-such-encoding", "x", kRefused},
  };
  for (const auto &[encoding, bytes, text] : rows) {
    const std::string declaration = std::string("<?xml version='1.0' encoding='") + encoding + "'?>";
    EXPECT_EQ(rootText(declaration + "<r>" + bytes + "</r>"), text) << encoding;
  }
  EXPECT_EQ(rootText("\xEF\xBB\xBF<r>Größe</r>"), "Größe");
  EXPECT_EQ(rootText(std::string_view("\xFF\xFE<\0r\0>\0\xDF\0<\0/\0r\0>\0", 18)), "ß") << "UTF-16";
}

TEST_F(Reading, APieceOfTextIsKeptUnlessItIsLayout) {
  const struct {
    const char *content, *text;
  } rows[] = {
      {"a<!-- c -->b<?p d?>&#x63;&lt;<![CDATA[<d> &amp;]]>e\r\n", "abc<<d> &amp;e\n"},
      {" \t\r\n&#13;", " \t\n\r"},
      {"a <b>c</b> d", "a c d"},
  };
  for (const auto &[content, text] : rows)
    EXPECT_EQ(rootText("<r>" + std::string(content) + "</r>"), text) << content;
}

TEST_F(Reading, EntitiesNeverReachOutsideNorLoseATextInSilence) {
  support::write(m_folder / "secret.txt", "secret");
  support::write(m_folder / "secret.dtd", "<!ENTITY e 'secret'>");
  const struct {
    const char *before, *content, *text;
  } rows[] = {
      {"<!DOCTYPE r [<!ENTITY e 'inner'>]>", "&e;", "inner"},
      {"<!DOCTYPE r [<!ENTITY e SYSTEM 'secret.txt'>]>", "&e;", kRefused},
      {"<!DOCTYPE r SYSTEM 'secret.dtd'>", "x", "x"},
      {"<!DOCTYPE r SYSTEM 'secret.dtd'>", "<b a='&e;'/>", kRefused},
      {"<!DOCTYPE r [<!ENTITY % p \"<!ENTITY e 'by parameter'>\"> %p;]>", "&e;", "by parameter"},
      {"<!DOCTYPE r [<!ENTITY % p ''> %p;]>", "<b a='&e;'/>", kRefused},
      {"<!DOCTYPE r [<!ENTITY % p SYSTEM 'secret.dtd'> %p; <!ENTITY e 'late'>]>", "&e;", "late"},
  };
  for (const auto &[before, content, text] : rows)
    EXPECT_EQ(rootText(before + std::string("<r>") + content + "</r>"), text) << before << content;
}

TEST_F(Reading, ExpansionIsBounded) {
  std::string laughs = "<!ENTITY e0 'lol'>";
  for (int i = 1; i < 40; ++i)
    laughs += "<!ENTITY e" + std::to_string(i) + " '" + support::repeat("&e" + std::to_string(i - 1) + ";", 3) + "'>";
  EXPECT_EQ(rootText("<!DOCTYPE r [" + laughs + "]><r>&e39;</r>"), kRefused);
}

TEST_F(Reading, NamesThatSomebodyChoseCostNoMoreThanOthers) {
  const auto cost = [this](const std::vector<std::string> &names) {
    std::string content;
    for (const std::string &name : names)
      content += "<" + name + "/>";
    const std::clock_t start = std::clock();
    EXPECT_EQ(rootText("<r>" + content + "</r>"), "");
    return static_cast<double>(std::clock() - start);
  };
  const auto isLetterOrDigit = [](int character) { return std::isalnum(character) != 0; };
  EXPECT_LE(cost(support::collidingTexts(5000, isLetterOrDigit)), 5 * cost(support::otherTexts(5000)));
}

TEST_F(Reading, WhatXmlSaysHoldsWhereverPiecesOfTheFileEnd) {
  const std::string longName(70000, 'n');
  const struct {
    std::string content, text, attribute;
  } rows[] = {
      {"<b a='x\r\ny\rz\t\n&#13;&#10;'>\r\nu\rv&#13;\n</b>", "\nu\nv\r\n", "x y z  \r\n"},
      {"<b a='&lt;&#x20AC;'>&amp;&apos;&quot;&gt;&#128512;</b>", "&'\">\xF0\x9F\x98\x80", "<\xE2\x82\xAC"},
      {"<b  a =\n\">'\"\t>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBF\xBD]]</b >", "é€😀\xEF\xBF\xBD]]", ">'"},
      {"<b a=''><![CDATA[<&]]]]><![CDATA[>\r\n]]><?p?><!---->c</b>", "<&]]>\nc", ""},
      {"<b a='" + longName + "'><" + longName + ">c</" + longName + "></b>", "c", longName},
  };
  for (const auto &[content, text, attribute] : rows) {
    // From the declaration to the end every byte comes to the end of 64 KiB once.
    const std::size_t step = content.size() > longName.size() ? 24 : 1;
    for (std::size_t before = (64 << 10) - 120; before <= 64 << 10; before += step) {
      const std::string declaration = "<?xml version='1.0' encoding='utf-8'?>\n";
      const IXMLDOMDocumentPtr document =
          load(declaration + std::string(before - declaration.size(), ' ') + "<r><c/>" + content + "</r>");
      const IXMLDOMElementPtr root = document->GetdocumentElement();
      ASSERT_NE(root, nullptr) << before << content.substr(0, 80) << document->GetparseError().reason;
      const IXMLDOMElementPtr element = root->getElementsByTagName("b").Getitem(0);
      ASSERT_TRUE(element->Gettext() == text.c_str()) << before << content.substr(0, 80);
      ASSERT_TRUE(element->getAttribute("a").text() == attribute.c_str()) << before << content.substr(0, 80);
    }
  }
}

TEST_F(Reading, AFailureHasAPlaceAndAReason) {
  const struct {
    std::string bytes;
    long line, column;
    const char *reason;
  } rows[] = {
      {"<a>\n  <b></c></a>", 2, 8, "mismatched tag"},
      {"<a b='1' c='2' b='3'/>", 1, 16, "duplicate attribute"},
      {"<a b='1'c='2'/>", 1, 9, "not well-formed (invalid token)"},
      {"<a b='<'/>", 1, 7, "not well-formed (invalid token)"},
      {"<a>\n]]></a>", 2, 3, "not well-formed (invalid token)"},
      {"<a>\xEF\xBF\xBE</a>", 1, 4, "not well-formed (invalid token)"},
      {"<a>\xED\xA0\x80</a>", 1, 4, "not well-formed (invalid token)"},
      {"<a>\xC0\x80</a>", 1, 4, "not well-formed (invalid token)"},
      {"<a>\x1F</a>", 1, 4, "not well-formed (invalid token)"},
      {"<a>&#xFFFF;</a>", 1, 4, "reference to invalid character number"},
      {"<a>&b;</a>", 1, 4, "undefined entity"},
      {"<a><!-- -- --></a>", 1, 11, "not well-formed (invalid token)"},
      {"<a><?XML b?></a>", 1, 9, "not well-formed (invalid token)"},
      {"<a/>\n<b/>", 2, 1, "junk after document element"},
      {"<a/>b", 1, 5, "junk after document element"},
      {"<a>\n", 2, 1, "the file ends before '<a>' is closed"},
      {"\xEF\xBB\xBF<a><b></a>", 1, 9, "mismatched tag"},
      {"<a><![CDATA[b</a>", 1, 18, "unclosed CDATA section"},
      {"", 1, 1, "no element found"},
      {std::string("<a/>\0", 5), 1, 5, "not well-formed (invalid token)"},
      {" <?xml version='1.0'?><a/>", 1, 2, "XML or text declaration not at start of entity"},
  };
  for (const auto &[bytes, line, column, reason] : rows) {
    const MSXML::ParseError failure = load(bytes)->GetparseError();
    EXPECT_EQ(failure.line, line) << bytes;
    EXPECT_EQ(failure.column, column) << bytes;
    EXPECT_STREQ(failure.reason, reason) << bytes;
  }
  for (const auto &[path, reason] : {std::pair{m_folder / "missing.xml", "No such file or directory"},
                                     std::pair{std::string("/dev/zero"), "not well-formed (invalid token)"},
                                     std::pair{m_folder.path().string(), "Is a directory"}}) {
    const IXMLDOMDocumentPtr document = newDocument();
    EXPECT_FALSE(document->load(path.c_str())) << path;
    EXPECT_STREQ(document->GetparseError().reason, reason) << path;
  }
}

TEST_F(Reading, APipeIsReadOnce) {
  const std::string path = m_folder / "pipe";
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  const std::string filling(200000, 'x');
  const struct {
    const char *before, *content, *text;
  } rows[] = {
      {"", "é", "é"},
      {"<?xml version='1.0' encoding='windows-1251'?>", "\xC6", "Ж"},
      {"<!DOCTYPE r SYSTEM 'none.dtd'>", "y", "y"},
  };
  for (const auto &[before, content, text] : rows) {
    std::thread writer([&, before = before, content = content] {
      std::ofstream(path, std::ios::binary) << before << "<r>" << content << filling << "</r>";
    });
    const IXMLDOMDocumentPtr document = newDocument();
    EXPECT_TRUE(document->load(path.c_str())) << before << document->GetparseError().reason;
    writer.join();
    const IXMLDOMElementPtr root = document->GetdocumentElement();
    EXPECT_TRUE(root != nullptr && root->Gettext().View() == text + filling) << before;
  }
}

} // namespace
