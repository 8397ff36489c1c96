#include "tests/xml/sample_records.h"

namespace {

using enum kestrune::MemberKind;
using kestrune::ItemClassOf, kestrune::MembersOf, kestrune::MemberView;

/// The member of that tag; a null value when there is none.
MemberView member(CXMLFolder &folder, std::string_view tag) {
  for (const MemberView &each : MembersOf(folder))
    if (each.value->GetTag().View() == tag)
      return each;
  return {};
}

TEST(MemberView, DescribesARecordWithoutAFile) {
  CVorlanModel4 model;
  EXPECT_EQ(member(model, "Name").kind, Attribute);
  EXPECT_EQ(member(model, "PTMSupported").kind, BoolAttribute);
  EXPECT_STREQ(member(model, "PTMSupported").defaultText, "FALSE");
  EXPECT_EQ(member(model, "ROMend").kind, HexElement);
  EXPECT_STREQ(member(model, "ROMend").defaultText, "0xFFFF");
  EXPECT_EQ(member(model, "Family").kind, Element);
  EXPECT_STREQ(member(model, "Family").defaultText, "3100");
  EXPECT_EQ(member(model, "NVMemoryTypes").kind, Collection);
  EXPECT_EQ(member(model, "NVMemoryTypes").defaultText, nullptr);
  CVorlanModel3 older;
  EXPECT_EQ(member(older, "Family").value, nullptr);
  for (const MemberView &each : MembersOf(model))
    EXPECT_TRUE(each.folder != nullptr || *each.value == each.defaultText) << each.value->GetTag();
}

TEST(MemberView, DescribesADocumentWithoutAFile) {
  CVorlanTyp4 document;
  EXPECT_EQ(member(document, "Contents").kind, Folder);
  EXPECT_STREQ(member(document.Contents, "FileDescription").defaultText, "Empty File Description");
  const kestrune::ItemClass items = ItemClassOf(*member(document, "ClockingSchemes").collection);
  EXPECT_EQ(items.tag, "ClockingScheme");
  EXPECT_EQ(items.keyAttribute, "Id");
  EXPECT_EQ(member(*items.item, "Clocks").kind, Collection);
}

TEST(MemberView, ShowsRecordsWithoutATable) {
  sample::Document document;
  document.List.Add("x")->Bound = 16;
  const auto sections = MembersOf(document);
  ASSERT_EQ(sections.size(), 2u);
  EXPECT_EQ(sections[1].collection, &document.List);
  EXPECT_NE(ItemClassOf(document.List).item.get(), document.List[0]);
  const auto members = MembersOf(*document.List[0]);
  ASSERT_EQ(members.size(), 4u);
  EXPECT_EQ(members[0].kind, Attribute);
  EXPECT_EQ(members[2].kind, HexElement);
  EXPECT_EQ(members[2].defaultText, nullptr);
  EXPECT_STREQ(*members[2].value, "0x10");
  CXMLCollectionFolder plain;
  EXPECT_EQ(ItemClassOf(plain).item, nullptr) << "it makes no items";
}

TEST(MemberView, KnowsTheDefaultsOfRenamedAndReplacedMembers) {
  CXMLNameHexPair pair("Row", "A", "B");
  const auto members = MembersOf(pair);
  ASSERT_EQ(members.size(), 2u);
  EXPECT_STREQ(members[1].value->GetTag(), "B");
  EXPECT_STREQ(members[1].defaultText, "0xFFFF");
  CTransceiver3 transceiver;
  EXPECT_EQ(MembersOf(transceiver)[9].folder, &transceiver.ModeSpec2) << "in the place of ModeSpec";
}

} // namespace
