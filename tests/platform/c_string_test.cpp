#include "tests/test_support.h"

#include <utility>

namespace {

constexpr CString kLong = CString::OfLiteral("One text of two owners");
constexpr CString kShort = CString::OfLiteral("One of two");

CString withRoom(const CString &text) {
  CString roomy = text;
  roomy.GetBuffer(100);
  roomy.ReleaseBuffer();
  return roomy;
}

struct Change {
  const char *name;
  void (*act)(CString &text);
  const char *ofLong;
  const char *ofShort;
};

const Change kChanges[] = {
    {"SetAt", [](CString &t) { t.SetAt(0, 'o'); }, "one text of two owners", "one of two"},
    {"+= char", [](CString &t) { t += '!'; }, "One text of two owners!", "One of two!"},
    {"+= itself", [](CString &t) { t += t; }, "One text of two ownersOne text of two owners", "One of twoOne of two"},
    {"= text", [](CString &t) { t = "new"; }, "new", "new"},
    {"= its end", [](CString &t) { t = static_cast<const char *>(t) + 4; }, "text of two owners", "of two"},
    {"= itself", [](CString &t) { t = *&t; }, "One text of two owners", "One of two"},
    {"Empty", [](CString &t) { t.Empty(); }, "", ""},
    {"move", [](CString &t) { const CString taken = std::move(t); }, "", ""},
    {"Delete, start", [](CString &t) { t.Delete(0, 4); }, "text of two owners", "of two"},
    {"Delete, rest", [](CString &t) { t.Delete(3, 99); }, "One", "One"},
    {"Insert char", [](CString &t) { t.Insert(3, '-'); }, "One- text of two owners", "One- of two"},
    {"Insert its end", [](CString &t) { t.Insert(0, t.operator const char *() + 7); },
     "t of two ownersOne text of two owners", "twoOne of two"},
    {"Replace", [](CString &t) { t.Replace('w', 'o'); }, "One text of too ooners", "One of too"},
    {"Trim", [](CString &t) { t.Trim("Oosrenw"); }, " text of two ", " of t"},
    {"TrimRight",
     [](CString &t) {
       t.TrimRight('o');
       t.TrimRight('s');
     },
     "One text of two owner", "One of tw"},
    {"MakeUpper", [](CString &t) { t.MakeUpper(); }, "ONE TEXT OF TWO OWNERS", "ONE OF TWO"},
    {"MakeLower", [](CString &t) { t.MakeLower(); }, "one text of two owners", "one of two"},
    {"Format", [](CString &t) { t.Format("%.3s!", t.operator const char *()); }, "One!", "One!"},
    {"GetBuffer", [](CString &t) { t.GetBuffer(0)[0] = 'o'; }, "one text of two owners", "one of two"},
    {"GetBufferSetLength", [](CString &t) { t.GetBufferSetLength(3)[0] = 'o'; }, "one", "one"},
    {"ReleaseBuffer", [](CString &t) { t.ReleaseBuffer(3); }, "One", "One"},
};

TEST(CStringTest, AChangeLeavesTheOtherOwnersAlone) {
  for (const CString &origin : {CString("One text of two owners"), withRoom(kLong), CString(kLong), CString(kShort)}) {
    for (const Change &change : kChanges) {
      SCOPED_TRACE(change.name + std::string(" of ") + static_cast<const char *>(origin));
      const CString wanted(origin == kShort ? change.ofShort : change.ofLong);
      CString text = origin;
      auto other = std::make_unique<CString>(text);
      const char *const pointer = *other;
      change.act(text);
      EXPECT_STREQ(text, wanted);
      EXPECT_TRUE(text == wanted) << "short texts are compared with what is behind them";
      EXPECT_EQ(static_cast<const char *>(*other), pointer);
      EXPECT_TRUE(*other == origin);

      CString alone(origin.View());
      CString roomy = withRoom(origin);
      change.act(alone);
      change.act(roomy);
      EXPECT_STREQ(alone, wanted);
      EXPECT_TRUE(roomy == wanted) << static_cast<const char *>(roomy);

      text = origin;
      const char *const kept = text;
      change.act(*other);
      other.reset();
      EXPECT_EQ(static_cast<const char *>(text), kept);
      EXPECT_STREQ(text, origin);
    }
  }
}

TEST(CStringTest, ALentTextIsNotShared) {
  CString text = kLong;
  char *const buffer = text.GetBuffer(40);
  const CString copy = text;
  CString assigned;
  assigned = text;
  text = *&text;
  CString moved = std::move(text);
  const CString ofMoved = moved;
  buffer[0] = 'o';
  EXPECT_STREQ(copy, kLong);
  EXPECT_STREQ(assigned, kLong);
  EXPECT_STREQ(ofMoved, kLong);
  moved.ReleaseBuffer();
  EXPECT_STREQ(moved, "one text of two owners");
  EXPECT_EQ(static_cast<const char *>(CString(moved)), static_cast<const char *>(moved)) << "shared again";
}

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
  EXPECT_EQ(text.Delete(6, 9), 6);
  EXPECT_EQ(text.Insert(2, text), 12) << "a part of itself";
  EXPECT_STREQ(text, "010123452345");
  EXPECT_EQ(text.Replace('5', '-'), 2);
  EXPECT_EQ(text.Find('1', 2), 3);
  EXPECT_EQ(text.ReverseFind('3'), 9);
  EXPECT_STREQ(text.Trim("-0"), "101234-234");
}

} // namespace
