#include "tests/colliding_texts.h"
#include "tests/dom/dom_support.h"

#include <ctime>
#include <filesystem>

// Files into trees: encodings, spellings, entities, faults, and files that want to do harm.

namespace {

using support::repeat;

class Reading : public support::Dom {};

std::string utf16(const std::string &mark, bool highByteFirst, std::string_view ascii) {
  std::string bytes = mark;
  for (const char c : ascii)
    bytes += highByteFirst ? std::string{'\0', c} : std::string{c, '\0'};
  return bytes;
}

TEST_F(Reading, EncodingsGiveTheSameText) {
  const struct {
    const char *encoding, *bytes, *text;
  } rows[] = {
      {"UTF-8", "Größe€", "Größe€"},
      {"ISO-8859-1", "Gr\xF6\xDFz", "Größz"},
      {"US-ASCII", "a&#8364;", "a€"},
      {"windows-1252", "\xDFr\x80", "ßr€"},
      {"Shift_JIS", "\x83\x5C\\~\xB1", "ソ\\~ｱ"},
      {"big5", "\xA4\xA4\xA5\x5C", "中功"},
      {"GB2312", "\xD6\xD0", "中"},
      {"EUC-KR", "\xB0\xA1", "가"},
      {"Shift_JIS", "\x83", kRefused},
      {"UTF-16", "x", kRefused},
      {"no-such-encoding", "x", kRefused},
  };
  for (const auto &[encoding, bytes, text] : rows) {
    const std::string declaration = std::string("<?xml version='1.0' encoding='") + encoding + "'?>";
    EXPECT_EQ(rootText(declaration + "<r>" + bytes + "</r>"), text) << encoding;
  }
  EXPECT_EQ(rootText("\xEF\xBB\xBF<r>Größe</r>"), "Größe");
}

TEST_F(Reading, Utf16IsKnownByItsFirstBytes) {
  const std::string file = "<?xml version='1.0' encoding='UTF-16'?><!DOCTYPE r SYSTEM 'unread'><r>a&#223;~</r>";
  EXPECT_EQ(rootText(utf16("\xFF\xFE", false, file)), "aß~");
  EXPECT_EQ(rootText(utf16("\xFE\xFF", true, file)), "aß~");
  EXPECT_EQ(rootText(utf16("", false, file)), "aß~");
  EXPECT_EQ(rootText(utf16("", true, file)), "aß~");
}

TEST_F(Reading, APieceOfTextIsKeptUnlessItIsLayout) {
  const struct {
    const char *content, *text;
  } rows[] = {
      {"a<!-- c -->b<?p d?>&#x63;&lt;<![CDATA[<d> &amp;]]>e\r\n", "abc<<d> &amp;e\n"},
      {" \t\r\n&#13;", " \t\n\r"},
      {"\n <b> </b>\n <c>\n</c>\n", " \n"},
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
      {"", "&e;", kRefused},
      {"<!DOCTYPE r [<!ENTITY e 'inner'>]>", "&e;", "inner"},
      {"<!DOCTYPE r [<!ENTITY e SYSTEM 'secret.txt'>]>", "x", "x"},
      {"<!DOCTYPE r [<!ENTITY e SYSTEM 'secret.txt'>]>", "&e;", kRefused},
      {"<!DOCTYPE r SYSTEM 'secret.dtd'>", "x", "x"},
      {"<!DOCTYPE r SYSTEM 'secret.dtd'>", "&e;", kRefused},
      {"<!DOCTYPE r SYSTEM 'secret.dtd'>", "<b a='&e;'/>", kRefused},
      {"<?xml version='1.0'\nencoding='ISO-8859-1'?><!DOCTYPE r PUBLIC 'p' 'secret.dtd'>", "<b a='&e;'/>", kRefused},
      {"<?xml version='1.0' encoding='windows-1252'?><!DOCTYPE r SYSTEM 'secret.dtd'>", "\xE9", "é"},
      {"<!DOCTYPE r [<!ENTITY % p \"<!ENTITY e 'by parameter'>\"> %p;]>", "&e;", "by parameter"},
      {"<!DOCTYPE r [<!ENTITY % p ''> %p;]>", "&e;", kRefused},
      {"<!DOCTYPE r [<!ENTITY % p ''> %p;]>", "<b a='&e;'/>", kRefused},
      {"<!DOCTYPE r [<!ENTITY % p \"<!ENTITY e 'd'>\"> %p;]>", "x<b a='&e;&lt;&#65;'/>", "x"},
      {"<!DOCTYPE r [<!ENTITY % p SYSTEM 'secret.dtd'> %p; <!ENTITY e 'late'>]>", "&e;", "late"},
      {"<!DOCTYPE r [<!ENTITY % p SYSTEM 'secret.dtd'> %p;]>", "<b a='&e;'/>", kRefused},
      {"<!DOCTYPE r [<!ENTITY % p SYSTEM 'secret.dtd'> %p; <!ATTLIST b a CDATA 'd'>]>", "x<b/>", "x"},
  };
  for (const auto &[before, content, text] : rows)
    EXPECT_EQ(rootText(before + std::string("<r>") + content + "</r>"), text) << before << content;
}

TEST_F(Reading, ExpansionIsBounded) {
  std::string laughs = "<!ENTITY e0 'lol'>";
  std::string chain = laughs;
  for (int i = 1; i < 200000; ++i) {
    const std::string inner = "&e" + std::to_string(i - 1) + ";";
    const std::string name = "<!ENTITY e" + std::to_string(i);
    chain += name + " '" + inner + "'>";
    if (i < 40)
      laughs += name + " '" + repeat(inner, 3) + "'>";
  }
  EXPECT_EQ(rootText("<!DOCTYPE r [" + laughs + "]><r>&e39;</r>"), kRefused);
  EXPECT_EQ(rootText("<!DOCTYPE r [" + chain + "]><r>&e199999;</r>"), kRefused);
  const std::string defaults = "<!ATTLIST b a CDATA '" + std::string(100000, 'x') + "'>";
  EXPECT_EQ(rootText("<!DOCTYPE r [" + defaults + "]><r>" + repeat("<b/>", 100000) + "</r>"), kRefused);
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
  const double others = cost(support::otherTexts(10000));
  EXPECT_LE(cost(support::collidingTexts(10000)), 5 * others);
}

TEST_F(Reading, FailuresHaveAPlace) {
  const struct {
    const char *bytes;
    long line, column;
    const char *reason;
  } rows[] = {
      {"<a>\n  <b></c></a>", 2, 8, "mismatched tag"},
      {"", 1, 1, "no element found"},
      {"<a>\n&u;</a>", 2, 1, "undefined entity"},
      {"<?xml version='1.0'\n?><!DOCTYPE a SYSTEM 'unread.dtd'><a>&u;</a>", 2, 38, "undefined entity"},
      {"<?xml version='1.0' encoding='x'?><a/>", 0, 0, "the text is not in a known encoding: x"},
  };
  for (const auto &row : rows) {
    const MSXML::ParseError failure = load(row.bytes)->GetparseError();
    EXPECT_EQ(failure.line, row.line) << row.bytes;
    EXPECT_EQ(failure.column, row.column) << row.bytes;
    EXPECT_STREQ(failure.reason, row.reason) << row.bytes;
  }
}

TEST_F(Reading, UnreadableFilesHaveAReasonAndNoPlace) {
  std::filesystem::create_symlink("loop.xml", m_folder / "loop.xml");
  const struct {
    const char *name, *reason;
  } rows[] = {
      {".", "Is a directory"},
      {"missing.xml", "No such file or directory"},
      {"loop.xml", "Too many levels of symbolic links"},
  };
  for (const auto &[name, reason] : rows) {
    const IXMLDOMDocumentPtr document = newDocument();
    EXPECT_FALSE(document->load((m_folder / name).c_str())) << name;
    EXPECT_EQ(document->GetparseError().line, 0) << name;
    EXPECT_STREQ(document->GetparseError().reason, reason) << name;
  }
}

TEST_F(Reading, EveryPrefixIsRefusedAndEveryChangedByteLeavesTheDocumentUsable) {
  const std::string whole =
      "<?xml version='1.0'?><!DOCTYPE r [<!ENTITY e 'x'>]><r><b Name='a'>&e;ä<![CDATA[]]></b></r>";
  for (std::size_t at = 0; at < whole.size(); ++at) {
    EXPECT_EQ(rootText(whole.substr(0, at)), kRefused) << at;
    for (const char byte : {'\0', '<', '&', '"', '\xFF', 'z'}) {
      const IXMLDOMDocumentPtr document = load(std::string(whole).replace(at, 1, 1, byte));
      document->PutdocumentElement(document->createElement("new"));
      EXPECT_NE(save(document).find("<new></new>"), std::string::npos) << at << byte;
    }
  }
}

} // namespace
