#include "tests/test_support.h"

namespace {

TEST(CStringTest, CaseIsThatOfAsciiLetters) {
  CString upper = "@AZ[`az{\xC3\xA9", lower = upper;
  EXPECT_STREQ(upper.MakeUpper(), "@AZ[`AZ{\xC3\xA9");
  EXPECT_STREQ(lower.MakeLower(), "@az[`az{\xC3\xA9");
  EXPECT_NE(CString("@[").CompareNoCase("`{"), 0);
}

TEST(CStringTest, AnIndexEndsAtTheTerminator) {
  CString text = "abc";
  EXPECT_EQ(text[3], '\0');
  EXPECT_TRUE(support::throws<CInvalidArgException>([&] { text.GetAt(-1); }));
  EXPECT_TRUE(support::throws<CInvalidArgException>([&] { text.GetAt(4); }));
  EXPECT_TRUE(support::throws<CInvalidArgException>([&] { text.SetAt(3, 'x'); }));
}

TEST(CStringTest, ChangesInPlaceAndByParts) {
  CString text = "0123456789";
  EXPECT_EQ(text.Delete(11, 1), 10) << "after the end";
  EXPECT_EQ(text.Delete(6, 9), 6);
  EXPECT_EQ(text.Insert(2, text), 12) << "a part of itself";
  EXPECT_STREQ(text, "010123452345");
  EXPECT_EQ(text.Replace('5', '-'), 2);
  EXPECT_EQ(text.Find('1', 2), 3);
  EXPECT_EQ(text.ReverseFind('3'), 9);
  EXPECT_STREQ(text.Trim("-0"), "101234-234");
}

} // namespace
