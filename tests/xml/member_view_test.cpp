#include "tests/xml/sample_records.h"

#include <map>

namespace {

using enum kestrune::MemberKind;
using kestrune::ItemClassOf, kestrune::MembersOf, kestrune::MemberView;

struct Told {
  kestrune::MemberKind kind;
  const char *defaultText;
};
using Tree = std::map<std::string, Told>;

/// What a new folder tells of its class. The items of a collection stand under their tag and key attribute.
void describe(CXMLFolder &folder, const std::string &prefix, Tree &tree) {
  for (const MemberView &member : MembersOf(folder)) {
    const std::string path = prefix + static_cast<const char *>(member.value->GetTag());
    SCOPED_TRACE(path);
    EXPECT_TRUE(tree.emplace(path, Told{member.kind, member.defaultText}).second);
    if (member.folder != nullptr)
      describe(*member.folder, path + '/', tree);
    else if (prefix != "Contents/") {
      EXPECT_STREQ(member.defaultText, *member.value) << "a new record holds its default";
    }
    if (member.collection != nullptr) {
      const kestrune::ItemClass items = ItemClassOf(*member.collection);
      const std::string place = std::string(items.tag) + '[' + std::string(items.keyAttribute) + ']';
      describe(*items.item, path + '/' + place + '/', tree);
    }
  }
}

template <class Document>
Tree treeOf() {
  Document document;
  Tree tree;
  describe(document, "", tree);
  return tree;
}

TEST(MemberView, DescribesDocumentsWithoutAFile) {
  const Tree chips = treeOf<CVorlanTyp4>(), transceivers = treeOf<CStdXcvr3>(), identity = treeOf<CSpidData2>();
  const struct {
    const Tree &document;
    const char *path;
    kestrune::MemberKind kind;
    const char *defaultText;
  } rows[] = {
      {chips, "Contents", Folder, nullptr},
      {chips, "Contents/FileDescription", Element, "Empty File Description"},
      {chips, "VorlanModels/VorlanModel[Name]/PTMSupported", BoolAttribute, "FALSE"},
      {chips, "VorlanModels/VorlanModel[Name]/ROMend", HexElement, "0xFFFF"},
      {chips, "VorlanModels/VorlanModel[Name]/Family", Element, "3100"},
      {chips, "ClockingSchemes/ClockingScheme[Id]/Clocks/Clock[Value]/Multipliers/Multiplier[Value]/Display", Element,
       "1/2"},
      {transceivers, "Transceivers/Transceiver[Name]/ModeSpec/standard_threshold", Element, "TRUE"},
      {identity, "DeviceClasses/DeviceClass[Name]/Obsolete", BoolAttribute, "Unassigned"},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.path);
    const auto told = row.document.find(row.path);
    ASSERT_NE(told, row.document.end());
    EXPECT_EQ(told->second.kind, row.kind);
    EXPECT_STREQ(told->second.defaultText, row.defaultText);
  }
  EXPECT_FALSE(treeOf<CVorlanTyp3>().contains("VorlanModels/VorlanModel[Name]/Family"));
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
