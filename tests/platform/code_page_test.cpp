#include "tests/test_support.h"

#include <vector>

namespace {

struct Table : CMacroString {
  static void clear() { oMacros.RemoveAll(); }
};

TEST(CodePageTest, OnlyPagesThatKeepAsciiAreTaken) {
  for (const unsigned page : {932U, 936U, 949U, 950U, 1252U, 1251U, 65001U}) {
    EXPECT_TRUE(kestrune::platform::SetCodePage(page)) << page;
    EXPECT_EQ(kestrune::platform::GetCodePage(), page);
  }
  // Not there, EBCDIC, and a won sign in the place of the backslash.
  for (const unsigned page : {0U, 3U, 99999U, 4294967295U, 37U, 930U, 1361U})
    EXPECT_FALSE(kestrune::platform::SetCodePage(page)) << page;
  EXPECT_EQ(kestrune::platform::GetCodePage(), kestrune::platform::kUtf8);
}

TEST(CodePageDeathTest, TheEnvironmentChoosesThePageOfAProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe"); // the page is chosen at the first use, in a process of its own
  const auto expectPage = [](const char *value, unsigned page) {
    const support::Environment variable("KESTRUNE_CODE_PAGE", value);
    EXPECT_EXIT(std::exit(kestrune::platform::GetCodePage() == page ? 0 : 1), testing::ExitedWithCode(0), "") << value;
  };
  expectPage("932", 932);
  expectPage("", 65001);
  expectPage("932x", 65001);
  expectPage("99999", 65001);
}

void expectConverts(unsigned number, const wchar_t *wide, const char *text, const wchar_t *back) {
  SCOPED_TRACE(testing::Message() << number << " " << text);
  const support::CodePage page(number);
  EXPECT_STREQ(CString(wide), text);
  EXPECT_STREQ(CStringToBSTR(text), back);
}

TEST(CodePageTest, WideTextConverts) {
  expectConverts(65001, L"a\x8868\x1F600", "a\xE8\xA1\xA8\xF0\x9F\x98\x80", L"a\x8868\x1F600");
  expectConverts(65001, L"\xD800x\x110000", "?x?", L"?x?");
  expectConverts(932, L"\\~\x8868\x1F600\xE9", "\\~\x95\\??", L"\\~\x8868??");
  expectConverts(949, L"\\~\xAC02\xAC00", "\\~\x81\x41\xB0\xA1", L"\\~\xAC02\xAC00");
  expectConverts(950, L"\\~\x529F\xE9", "\\~\xA5\\?", L"\\~\x529F?");
  expectConverts(1252, L"\\\x20AC\xE9\x8868", "\\\x80\xE9?", L"\\\x20AC\xE9?");
  const support::CodePage page(1252);
  const std::string many(5000, '\x80'); // past any first guess at the room that it takes
  EXPECT_EQ(std::string(CString(static_cast<const wchar_t *>(CStringToBSTR(many.c_str())))), many);
}

TEST(CodePageTest, InvalidBytesBecomeReplacementCharacters) {
  EXPECT_STREQ(CStringToBSTR("a\xC3z\xED\xA0\x80\xC0\x80"), L"a\xFFFDz\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD");
  EXPECT_STREQ(CStringToBSTR("\xF4\x90\x80\x80"), L"\xFFFD\xFFFD\xFFFD\xFFFD");
  const support::CodePage page(932);
  EXPECT_STREQ(CStringToBSTR("\x95\\\x95"), L"\x8868\xFFFD");
}

// Each text is walked from its start by whole characters; from any place in it the way back leads to the last of those
// places before it.
TEST(CodePageTest, WalksForwardAndBack) {
  const struct {
    unsigned page;
    const char *text;
    std::vector<std::ptrdiff_t> bounds;
  } rows[] = {
      {65001, "a\xC3\xA9\xE8\xA1\xA8\xF0\x9F\x98\x80", {0, 1, 3, 6, 10}},
      // Invalid bytes stand alone.
      {65001, "\xA1\xC3\xE8\xA1\xF0\x9F\x98z\xFF", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}},
      {65001, "\xED\xA0\x80\xC0\x80\xA1\xA1\xA1", {0, 1, 2, 3, 4, 5, 6, 7, 8}},
      {932, "\x95\\\\\x81\x81\x81\xB1\xDF\xE0\x40\xFC\xFCz", {0, 2, 3, 5, 7, 8, 10, 12, 13}},
      {932, "\x9F\x9F\xA0\xFD\x80\xFFz\x95", {0, 2, 3, 4, 5, 6, 7, 8}}, // the last has no trail byte
      {1252, "\x95\\\xE9", {0, 1, 2, 3}},
  };
  for (const auto &[number, text, bounds] : rows) {
    SCOPED_TRACE(testing::Message() << number << " " << testing::PrintToString(text));
    const support::CodePage page(number);
    std::vector<std::ptrdiff_t> walked{0};
    for (const char *p = text; *p != '\0'; p = CharNextA(p))
      walked.push_back(CharNextA(p) - text);
    EXPECT_EQ(walked, bounds);
    EXPECT_EQ(CharNextA(text + bounds.back()) - text, bounds.back());
    std::ptrdiff_t before = 0;
    for (std::ptrdiff_t at = 0; at <= bounds.back(); ++at) {
      EXPECT_EQ(CharPrevA(text, text + at) - text, before) << at;
      if (std::find(bounds.begin(), bounds.end(), at) != bounds.end())
        before = at;
    }
  }
}

// The trail bytes look like `\`, `Z` and `z`: nothing takes them for such, and in a single-byte page they are.
TEST(CodePageTest, TrailBytesAreNoCharacters) {
  for (const unsigned number : {932U, 936U, 949U, 950U, 1252U}) {
    SCOPED_TRACE(number);
    const support::CodePage page(number);
    const bool single = number == 1252;
    const CString text = "x\xE1\\\\\xE1Zy\xE1z\xE1\\";
    EXPECT_EQ(text.Find('\\'), single ? 2 : 3);
    EXPECT_EQ(text.Find("Z"), single ? 5 : -1);
    EXPECT_EQ(text.ReverseFind('\\'), single ? 10 : 3);
    CString changed = text;
    EXPECT_EQ(changed.Replace('\\', '/'), single ? 3 : 1);
    EXPECT_STREQ(changed, single ? "x\xE1//\xE1Zy\xE1z\xE1/" : "x\xE1\\/\xE1Zy\xE1z\xE1\\");
    changed = text;
    EXPECT_STREQ(changed.MakeLower(), single ? "x\xE1\\\\\xE1zy\xE1z\xE1\\" : text);
    changed = text;
    EXPECT_STREQ(changed.MakeUpper(), single ? "X\xE1\\\\\xE1ZY\xE1Z\xE1\\" : "X\xE1\\\\\xE1ZY\xE1z\xE1\\");
    changed = text;
    EXPECT_STREQ(changed.TrimRight('\\'), single ? text.Left(10) : text);
    EXPECT_EQ(CString("B\xE1Z").CompareNoCase("b\xE1z") == 0, single);
    EXPECT_EQ(CString("\xE1ZQ").CompareNoCase("\xE1Zq"), 0);
    CMacroString().AddMacro("$\xE1Zq$", "1");
    EXPECT_TRUE(CMacroString("$\xE1ZQ$").Explode(changed, 10));
    EXPECT_EQ(CMacroString("$\xE1zq$").Explode(changed, 10), single);
    Table::clear();
  }
}

} // namespace
