#include "tests/xml/sample_records.h"

namespace {

using enum kestrune::MemberKind;
using kestrune::ItemClassOf, kestrune::MembersOf, kestrune::MemberView;

/// The member of that tag.
MemberView member(CXMLFolder &folder, std::string_view tag) {
  for (const MemberView &each : MembersOf(folder))
    if (each.value->GetTag().View() == tag)
      return each;
  return {};
}

TEST(MemberView, DescribesKindsDefaultsAndItemsWithoutAFile) {
  CVorlanModel4 model;
  EXPECT_EQ(member(model, "Name").kind, Attribute);
  EXPECT_EQ(member(model, "PTMSupported").kind, BoolAttribute);
  EXPECT_EQ(member(model, "Family").kind, Element);
  EXPECT_STREQ(member(model, "Family").defaultText, "3100");
  CXMLNameHexPair renamed("Row", "A", "B");
  EXPECT_STREQ(member(renamed, "B").defaultText, "0xFFFF");
  CVorlanTyp4 document;
  EXPECT_EQ(member(document, "Contents").kind, Folder);
  EXPECT_EQ(member(document, "ClockingSchemes").kind, Collection);
  EXPECT_EQ(ItemClassOf(document.ClockingSchemes).keyAttribute, "Id");
  CXMLFileNames names;
  EXPECT_EQ(ItemClassOf(names).tag, "PFXMLFileName");
}

TEST(MemberView, ShowsRecordsWithoutATable) {
  sample::Document document;
  document.List.Add("x")->Bound = 16;
  const MemberView bound = member(*document.List[0], "Bound");
  EXPECT_EQ(bound.kind, HexElement);
  EXPECT_STREQ(*bound.value, "0x10");
}

} // namespace
