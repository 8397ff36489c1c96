#include "tests/test_support.h"

namespace {

TEST(CStringTest, CaseIsThatOfAsciiLetters) {
  CString upper = "@AZ[`az{\xC3\xA9", lower = upper;
  EXPECT_STREQ(upper.MakeUpper(), "@AZ[`AZ{\xC3\xA9");
  EXPECT_STREQ(lower.MakeLower(), "@az[`az{\xC3\xA9");
  EXPECT_EQ(CString("AZ").CompareNoCase("az"), 0);
  EXPECT_NE(CString("@[").CompareNoCase("`{"), 0);
}

TEST(CStringTest, AnIndexEndsAtTheTerminator) {
  for (const std::string text : {"abc", "a text of more than fifteen bytes"}) {
    const CString string = text.c_str();
    const int end = string.GetLength();
    EXPECT_EQ(string.GetAt(end - 1), text.back());
    EXPECT_EQ(string[end], '\0');
    CString changed = string;
    changed.SetAt(end - 1, 'x');
    EXPECT_EQ(changed[end - 1], 'x');
    EXPECT_TRUE(support::throws<CInvalidArgException>([&] { string.GetAt(-1); }));
    EXPECT_TRUE(support::throws<CInvalidArgException>([&] { string.GetAt(end + 1); }));
    EXPECT_TRUE(support::throws<CInvalidArgException>([&] { changed.SetAt(-1, 'x'); }));
    EXPECT_TRUE(support::throws<CInvalidArgException>([&] { changed.SetAt(end, 'x'); }));
  }
}

TEST(CStringTest, ChangesInPlaceAndByParts) {
  CString text = "0123456789";
  EXPECT_EQ(text.Delete(-1, 2), 8);
  EXPECT_EQ(text.Delete(6, 9), 6);
  EXPECT_EQ(text.Delete(6), 6);
  EXPECT_EQ(text.Insert(2, text), 12) << "a part of itself";
  EXPECT_EQ(text.Insert(99, '!'), 13);
  EXPECT_STREQ(text, "232345674567!");
  EXPECT_EQ(text.Replace('7', '-'), 2);
  text += text;
  EXPECT_STREQ(text, "2323456-456-!2323456-456-!");
  EXPECT_EQ(text.Find('4', 5), 8);
  EXPECT_EQ(text.Find("", text.GetLength()), text.GetLength());
  EXPECT_EQ(text.Find("", text.GetLength() + 1), -1);
  EXPECT_EQ(text.ReverseFind('3'), 16);
  EXPECT_STREQ(text.Trim("!-2"), "323456-456-!2323456-456");
  text.Format("%s|%d", static_cast<const char *>(text.Left(3)), 7);
  EXPECT_STREQ(text, "323|7");
}

} // namespace
