#include "tests/test_support.h"

namespace {

TEST(MBStringTest, WalksAndCutsByCharacter) {
  // 95 5C and 88 9F are characters: a trail byte that looks like `\`, and one that looks like a lead byte.
  const struct {
    unsigned page;
    const char *text;
    int n;
    const char *left, *right, *mid, *leftChar, *midChar; // of n
    int characters, last;
  } rows[] = {
      {65001, "abc", -1, "", "", "abc", "", "abc", 3, 2},
      // A cut inside a character takes it in whole.
      {65001, "aéx", 2, "aé", "éx", "éx", "aé", "x", 3, 3},
      {932, "a\x95\\x", 2, "a\x95\\", "\x95\\x", "\x95\\x", "a\x95\\", "x", 3, 3},
      {932, "\x88\x9F\x88\x9F", 2, "\x88\x9F", "\x88\x9F", "\x88\x9F", "\x88\x9F\x88\x9F", "", 2, 2},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(testing::Message() << row.page << " " << testing::PrintToString(row.text) << " " << row.n);
    const support::CodePage inForce(row.page);
    const CMBString text = CString(row.text);
    const char *const first = text.GetCharFirst();
    EXPECT_STREQ(text.Left(row.n), row.left);
    EXPECT_STREQ(text.Right(row.n), row.right);
    EXPECT_STREQ(text.Mid(row.n), row.mid);
    EXPECT_STREQ(text.Mid(row.n, 9), row.mid);
    EXPECT_STREQ(text.LeftChar(row.n), row.leftChar);
    EXPECT_STREQ(text.MidChar(row.n), row.midChar);
    EXPECT_EQ(text.GetCharLength(), row.characters);
    EXPECT_EQ(text.GetCharLast() - first, row.last);
    EXPECT_EQ(text.GetCharPrev(first, text.GetCharNext(first)), first);
  }
  const CMBString text = CString("a");
  EXPECT_EQ(text.GetCharNext(nullptr), nullptr);
  EXPECT_EQ(text.GetCharPrev(nullptr, text), nullptr);
  EXPECT_EQ(text.GetCharPrev(text, nullptr), text.GetCharFirst());
}

} // namespace
