#include "tests/colliding_texts.h"
#include "tests/dom/dom_support.h"

#include <cctype>
#include <ctime>

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

TEST_F(Reading, AFailureHasAPlaceAndAReason) {
  const MSXML::ParseError failure = load("<a>\n  <b></c></a>")->GetparseError();
  EXPECT_EQ(failure.line, 2);
  EXPECT_EQ(failure.column, 8);
  EXPECT_STREQ(failure.reason, "mismatched tag");
  const IXMLDOMDocumentPtr missing = newDocument();
  EXPECT_FALSE(missing->load((m_folder / "missing.xml").c_str()));
  EXPECT_STREQ(missing->GetparseError().reason, "No such file or directory");
}

} // namespace
