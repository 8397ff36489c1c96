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

/// A program's own version of a record of the library.
struct Extended : CVorlanModel4 {
  Extended();
  Extended(const Extended &rhs) : Extended() { *this = rhs; }
  Extended &operator=(const Extended &rhs);
  void Init() override;
  void pushMembers() override;
  CXMLElement Socket;
  int uses = 0; // in no file
  struct Members;
};
struct Extended::Members : RecordMembers<Members, Extended, CVorlanModel4> {
  static constexpr auto rows = std::tuple{Row{&Extended::Socket, "Socket", "none"}};
  static constexpr std::size_t unstored = sizeof(CXMLElement *); // `uses`, and what aligns the object
};
Extended::Extended() { Members::construct(*this); }
Extended &Extended::operator=(const Extended &rhs) { return Members::copy(*this, rhs); }
void Extended::Init() { Members::init(*this); }
void Extended::pushMembers() { Members::push(*this); }

TEST(MemberView, ShowsAProgramsOwnVersionOfARecord) {
  Extended model;
  EXPECT_STREQ(model.GetTag(), "VorlanModel");
  EXPECT_STREQ(model.Socket, "none");
  model.Name = "x";
  model.Socket = "DIP";
  const Extended copy(model);
  EXPECT_STREQ(copy.Name, "x");
  EXPECT_STREQ(copy.Socket, "DIP");
  const auto members = MembersOf(model);
  ASSERT_EQ(members.size(), 35u);
  EXPECT_EQ(members[34].value, &model.Socket);
  EXPECT_STREQ(members[34].defaultText, "none");
  model.Init();
  EXPECT_STREQ(model.Socket, "none");
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
