#include "tests/test_support.h"

namespace {

TEST(MBStringTest, WalksAndCutsByCharacter) {
  // 95 5C and 88 9F are characters: a trail byte that looks like `\`, and one that looks like a lead byte.
  const struct {
    unsigned page;
    const char *text;
    int n;
    const char *slices; // Left(n), Right(n), Mid(n), Mid(n, 2), LeftChar(n), MidChar(n)
    int characters, last;
  } rows[] = {
      {65001, "abc", 2, "ab,bc,c,c,ab,c", 3, 2},
      {65001, "abc", 0, ",,abc,ab,,abc", 3, 2},
      {65001, "abc", -1, ",,abc,ab,,abc", 3, 2},
      {65001, "abc", 9, "abc,abc,,,abc,", 3, 2},
      {65001, "", 1, ",,,,,", 0, 0},
      {65001, "aéx", 2, "aé,éx,éx,é,aé,x", 3, 3},
      {65001, "😀", 3, "😀,😀,😀,\xF0\x9F,😀,", 1, 0},
      {65001, "\xA9\xA9z", 1, "\xA9,z,\xA9z,\xA9z,\xA9,\xA9z", 3, 2}, // no characters, so nothing to keep whole
      {1252, "\x88\x9F\\", 1, "\x88,\\,\x9F\\,\x9F\\,\x88,\x9F\\", 3, 2},
      {932, "a\x95\\x", 2, "a\x95\\,\x95\\x,\x95\\x,\x95\\,a\x95\\,x", 3, 3},
      {932, "a\x95\\x", 1, "a,x,\x95\\x,\x95\\,a,\x95\\x", 3, 3},
      {932, "\x88\x9F\x88\x9F", 2, "\x88\x9F,\x88\x9F,\x88\x9F,\x88\x9F,\x88\x9F\x88\x9F,", 2, 2},
      {936, "\x88\x9F\\\x88\x9F", 2, "\x88\x9F,\x88\x9F,\\\x88\x9F,\\\x88,\x88\x9F\\,\x88\x9F", 3, 3},
  };
  for (const auto &[page, given, n, slices, characters, last] : rows) {
    const support::CodePage inForce(page);
    const CMBString t = CString(given);
    const char *const first = t.GetCharFirst(), *const end = first + t.GetLength();
    const CString bytes = t.Left(n) + "," + t.Right(n) + "," + t.Mid(n) + "," + t.Mid(n, 2);
    EXPECT_STREQ(bytes + "," + t.LeftChar(n) + "," + t.MidChar(n), slices) << page << " " << n;
    EXPECT_TRUE(t.GetCharLast() == first + last && t.GetCharPrev(first, end) == first + last) << slices;
    EXPECT_TRUE(t.GetCharAt(-1) == first && t.GetCharAt(99) == end && t.GetCharAt(1) == t.GetCharNext(first));
    EXPECT_EQ(t.GetCharLength(), characters) << slices;
  }
  CMBString text; // an assignment copies up to the terminator
  EXPECT_EQ((text = CString("ab\0cd", 5)).GetLength(), 2);
  EXPECT_EQ(text = static_cast<const char *>(text) + 1, "b");
  EXPECT_EQ((text = static_cast<const char *>(nullptr)) + CMBString(L"é"), "é");
}

} // namespace
