#include "tests/document_support.h"
#include "tests/xml/sample_records.h"

namespace {

using kestrune::ItemClassOf, kestrune::MembersOf, kestrune::MemberView;

/// The members of a new `folder`, one a line, with kind, text, and the default where it is another text.
std::string structureOf(CXMLFolder &folder, const std::string &indent = "") {
  constexpr const char *kKinds[] = {"attribute", "truth value", "element", "hex element", "folder", "collection"};
  std::string text;
  for (const MemberView &each : MembersOf(folder)) {
    const std::string tag(each.value->GetTag()), value(tag == "CreationDate" ? "now" : *each.value);
    text += indent + tag + ": " + kKinds[static_cast<int>(each.kind)] + ", '" + value + "'";
    text += each.defaultText != nullptr && each.defaultText != value
                ? std::string(", else '") + each.defaultText + "'\n"
                : "\n";
    if (each.collection != nullptr) {
      const kestrune::ItemClass items = ItemClassOf(*each.collection);
      text += indent + "\t" + std::string(items.tag) + " by " + std::string(items.keyAttribute) + ": '" +
              std::string(*items.item) + "'\n" + structureOf(*items.item, indent + "\t\t");
    } else if (each.folder != nullptr) {
      text += structureOf(*each.folder, indent + "\t");
    }
  }
  return text;
}

TEST(MemberView, DescribesDocumentsWithoutAFile) {
  CVorlanTyp4 chip;
  CStdXcvr3 transceivers;
  CSpidData2 identity;
  CKestruneUI interface;
  std::string all;
  for (CXMLFolder *const document : std::initializer_list<CXMLFolder *>{&chip, &transceivers, &identity, &interface})
    all += std::string(document->GetTag()) + ": '" + std::string(*document) + "'\n" + structureOf(*document, "\t");
  EXPECT_EQ(all, support::data("xml/structure.txt"));
}

TEST(XmlFileNames, HaveANameAndFlags) {
  CXMLFileNames names;
  names.Add("a.xml")->OptionFlags = 2;
  names.Add("b.xml");
  EXPECT_STREQ(names.Find("A.XML")->OptionFlags, "0x2");
  EXPECT_STREQ(CXMLFileName("T", "Key").Name.GetTag(), "Key");
  EXPECT_NE(support::save(names).find("<PFXMLFileName Name=\"b.xml\">"), std::string::npos);
  support::expectCopies(names);
}

TEST(MemberView, ShowsRecordsWithTheirOwnTagsOrWithoutATable) {
  CXMLNameHexPair renamed("Row", "A", "B");
  EXPECT_EQ(structureOf(renamed), "A: attribute, 'Unassigned'\nB: hex element, '0xFFFF'\n");
  sample::Item item;
  item.Bound = 16;
  EXPECT_EQ(structureOf(item), "Name: attribute, 'Unassigned'\nText: element, 'none'\n"
                               "Bound: hex element, '0x10'\nFlag: truth value, 'FALSE'\n");
}

} // namespace
