#include "tests/test_support.h"

#include <vector>

namespace {

TEST(CodePageTest, OnlyPagesThatKeepAsciiAreTaken) {
  for (const unsigned page : {932U, 936U, 949U, 950U, 1252U, 65001U})
    EXPECT_TRUE(kestrune::platform::SetCodePage(page)) << page;
  // Not there, EBCDIC, and a won sign in the place of the backslash.
  for (const unsigned page : {99999U, 37U, 1361U})
    EXPECT_FALSE(kestrune::platform::SetCodePage(page)) << page;
  EXPECT_EQ(kestrune::platform::GetCodePage(), kestrune::platform::kUtf8);
}

TEST(CodePageDeathTest, TheEnvironmentChoosesThePageOfAProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe"); // the page is chosen at the first use, in a process of its own
  const support::Environment variable("KESTRUNE_CODE_PAGE", "932");
  EXPECT_EXIT(std::exit(kestrune::platform::GetCodePage() == 932 ? 0 : 1), testing::ExitedWithCode(0), "");
}

void expectConverts(unsigned number, const wchar_t *wide, const char *text, const wchar_t *back) {
  SCOPED_TRACE(testing::Message() << number << " " << text);
  const support::CodePage page(number);
  EXPECT_STREQ(CString(wide), text);
  EXPECT_STREQ(CStringToBSTR(text), back);
}

TEST(CodePageTest, WideTextConverts) {
  expectConverts(65001, L"a\x8868\x1F600", "a\xE8\xA1\xA8\xF0\x9F\x98\x80", L"a\x8868\x1F600");
  expectConverts(932, L"\\~\x8868\x1F600\xE9", "\\~\x95\\??", L"\\~\x8868??");
  expectConverts(65001, L"\x80\xD7FF\xE000\x10FFFF", "\xC2\x80\xED\x9F\xBF\xEE\x80\x80\xF4\x8F\xBF\xBF",
                 L"\x80\xD7FF\xE000\x10FFFF");
}

TEST(CodePageTest, WhatIsNoCharacterIsReplaced) {
  EXPECT_STREQ(CString(L"\xD800\xDFFF\x110000"), "???") << "no characters";
  EXPECT_STREQ(CStringToBSTR("a\xC3z\xED\xA0\x80"), L"a\xFFFDz\xFFFD\xFFFD\xFFFD") << "bytes that are not UTF-8";
  const support::CodePage page(932);
  EXPECT_STREQ(CStringToBSTR("\xFDz\x95"), L"\xFFFDz\xFFFD") << "bytes that are not of the page";
  EXPECT_EQ(CStringToBSTR("\xFDz\x95").length(), 3U);
}

// Each text is walked from its start by whole characters, and back from each place in it to the last of those places.
TEST(CodePageTest, WalksForwardAndBack) {
  const struct {
    unsigned page;
    const char *text;
    std::vector<std::ptrdiff_t> bounds;
  } rows[] = {
      {65001, "a\xC2\x80\xE0\xA0\x80\xED\x9F\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", {0, 1, 3, 6, 9, 13, 17}},
      // Invalid bytes stand alone.
      {65001, "\xA1\xC3\xE8\xA1\xF0\x9F\x98z\xFF", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}},
      {932, "\x95\\\\\x81\x81\x81\xB1\xDF\xE0\x40\xFC\xFCz", {0, 2, 3, 5, 7, 8, 10, 12, 13}},
  };
  for (const auto &[number, text, bounds] : rows) {
    SCOPED_TRACE(testing::Message() << number << " " << testing::PrintToString(text));
    const support::CodePage page(number);
    std::ptrdiff_t at = 0;
    for (std::size_t i = 1; i < bounds.size(); ++i) {
      EXPECT_EQ(CharNextA(text + bounds[i - 1]) - text, bounds[i]);
      while (at < bounds[i])
        EXPECT_EQ(CharPrevA(text, text + ++at) - text, bounds[i - 1]) << at;
    }
  }
  const support::CodePage page(932);
  const char *const text = "\x95\x95\\";
  EXPECT_EQ(CharPrevA(text + 1, text + 3) - text, 1) << "what is before the start does not count";
}

TEST(CodePageTest, AShorterTextIsLess) {
  EXPECT_LT(CString("a").CompareNoCase("AB"), 0);
  EXPECT_GT(CString("AB").CompareNoCase("a"), 0);
}

// The trail bytes look like `\`, `Z` and `z`.
TEST(CodePageTest, TrailBytesAreNoCharacters) {
  for (const unsigned number : {932U, 936U, 949U, 950U}) {
    SCOPED_TRACE(number);
    const support::CodePage page(number);
    const CString text = "x\xE1\\\\\xE1Zy\xE1z\xE1\\";
    EXPECT_EQ(text.Find('\\'), 3);
    EXPECT_EQ(text.ReverseFind('\\'), 3);
    CString changed = text;
    EXPECT_EQ(changed.Replace('\\', '/'), 1);
    EXPECT_STREQ(changed.MakeUpper(), "X\xE1\\/\xE1ZY\xE1z\xE1\\");
    EXPECT_STREQ(changed.MakeLower(), "x\xE1\\/\xE1Zy\xE1z\xE1\\");
    EXPECT_STREQ(changed.TrimRight('\\'), "x\xE1\\/\xE1Zy\xE1z\xE1\\");
    EXPECT_NE(CString("\xE1Z").CompareNoCase("\xE1z"), 0);
  }
}

} // namespace
