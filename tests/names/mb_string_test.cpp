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
      {65001, "abc", 2, "ab", "bc", "c", "ab", "c", 3, 2},
      // A count outside the text.
      {65001, "abc", -1, "", "", "abc", "", "abc", 3, 2},
      // A cut inside a character takes it in whole.
      {65001, "aéx", 2, "aé", "éx", "éx", "aé", "x", 3, 3},
      {65001, "😀", 3, "😀", "😀", "😀", "😀", "", 1, 0},
      {932, "a\x95\\x", 2, "a\x95\\", "\x95\\x", "\x95\\x", "a\x95\\", "x", 3, 3},
      {932, "\x88\x9F\x88\x9F", 2, "\x88\x9F", "\x88\x9F", "\x88\x9F", "\x88\x9F\x88\x9F", "", 2, 2},
      {936, "\x88\x9F\\\x88\x9F", 2, "\x88\x9F", "\x88\x9F", "\\\x88\x9F", "\x88\x9F\\", "\x88\x9F", 3, 3},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(testing::Message() << row.page << " " << testing::PrintToString(row.text) << " " << row.n);
    const support::CodePage inForce(row.page);
    const CMBString text = CString(row.text);
    const char *const first = text.GetCharFirst(), *const end = first + text.GetLength();
    EXPECT_STREQ(text.Left(row.n), row.left);
    EXPECT_STREQ(text.Right(row.n), row.right);
    EXPECT_STREQ(text.Mid(row.n), row.mid);
    EXPECT_STREQ(text.LeftChar(row.n), row.leftChar);
    EXPECT_STREQ(text.MidChar(row.n), row.midChar);
    EXPECT_EQ(text.GetCharLength(), row.characters);
    EXPECT_EQ(text.GetCharLast() - first, row.last);
    EXPECT_EQ(text.GetCharPrev(first, end) - first, row.last);
    EXPECT_EQ(text.GetCharAt(-1), first);
    EXPECT_EQ(text.GetCharAt(1), text.GetCharNext(first));
    EXPECT_EQ(text.GetCharAt(99), end);
  }
}

TEST(MBStringTest, AnAssignmentCopiesUpToTheTerminator) {
  CMBString text;
  EXPECT_EQ((text = CString("ab\0cd", 5)).GetLength(), 2);
  EXPECT_STREQ(text = static_cast<const char *>(text) + 1, "b");
}

TEST(MBStringTest, ACutBehindATerminatorEnds) {
  CMBString text = CString("abcd");
  text.SetAt(1, '\0');
  EXPECT_STREQ(text.Mid(3), "d");
}

} // namespace
