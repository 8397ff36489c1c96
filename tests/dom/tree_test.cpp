#include "tests/dom/dom_support.h"

#include <functional>
#include <sys/mman.h>

// Changes of trees and searches in them.

namespace {

using support::repeat;

class Tree : public support::Dom {};

TEST_F(Tree, AppendChildRefusesWhatHasAPlaceOrCanHaveNone) {
  const IXMLDOMDocumentPtr document = newDocument();
  const IXMLDOMElementPtr root = document->createElement("r");
  const IXMLDOMElementPtr above = document->createElement("a");
  const IXMLDOMElementPtr below = document->createElement("b");
  const IXMLDOMElementPtr single = document->createElement("s");
  document->PutdocumentElement(root);
  above->appendChild(below);
  const struct {
    const char *what;
    IXMLDOMNode *parent, *child;
  } rows[] = {
      {"itself", above, above},       {"itself, without children", single, single},
      {"its ancestor", below, above}, {"the child of another", root, below},
      {"the root", above, root},
  };
  for (const auto &row : rows)
    EXPECT_THROW(row.parent->appendChild(row.child), _com_error) << row.what;
  root->appendChild(above);
  EXPECT_EQ(save(document), "<r><a><b></b></a></r>\n");
}

TEST_F(Tree, WhatATextHasReplacedCanBeAddedAfterIt) {
  const IXMLDOMDocumentPtr document = load("<r><a/><b/></r>");
  const IXMLDOMElementPtr root = document->GetdocumentElement();
  const IXMLDOMElementPtr first = root->getElementsByTagName("a").Getitem(0);
  root->Puttext("t");
  root->appendChild(first);
  EXPECT_EQ(save(document), "<r>t<a></a></r>\n");
}

TEST_F(Tree, LayoutIsReadAndReplacedAsTheTextThatItIs) {
  const IXMLDOMDocumentPtr document = newDocument();
  const IXMLDOMElementPtr root = document->createElement("r");
  const IXMLDOMElementPtr child = document->createElement("c");
  document->PutdocumentElement(root);
  const struct {
    const char *what;
    std::function<void()> change;
    const char *text, *file;
  } rows[] = {
      {"alone", [&] { insertTabs(root, 1); }, "\n\t", "<r>\n\t</r>\n"},
      {"in front of text", [&] { root->appendChild(document->createTextNode("t")); }, "\n\tt", "<r>\n\tt</r>\n"},
      {"replaced", [&] { root->Puttext("t"); }, "t", "<r>t</r>\n"},
      {"behind text", [&] { insertTabs(root, 0); }, "t\n", "<r>t\n</r>\n"},
      {"twice in a row", [&] { insertTabs(root, 20); }, "t\n\n\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t",
       "<r>t\n\n\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t</r>\n"},
      {"replaced again", [&] { root->Puttext(""); }, "", "<r></r>\n"},
      {"in front of an element", [&] { insertTabs(root, 1), root->appendChild(child); }, "\n\t",
       "<r>\n\t<c></c></r>\n"},
      {"in the element too", [&] { insertTabs(child, 2), insertTabs(root, 0); }, "\n\t\n\t\t\n",
       "<r>\n\t<c>\n\t\t</c>\n</r>\n"},
      {"gone with its place", [&] { root->Puttext("t"), root->appendChild(child); }, "t\n\t\t",
       "<r>t<c>\n\t\t</c></r>\n"},
  };
  for (const auto &row : rows) {
    row.change();
    EXPECT_STREQ(root->Gettext(), row.text) << row.what;
    EXPECT_EQ(save(document), row.file) << row.what;
  }
  const IXMLDOMElementPtr parsed = load("<r>t</r>")->GetdocumentElement();
  insertTabs(parsed, 1);
  EXPECT_STREQ(parsed->Gettext(), "t\n\t");
}

TEST_F(Tree, SearchesOutOfOrderFindTheSame) {
  const IXMLDOMDocumentPtr document = load("<r>" + repeat("<l><a>1</a><b/><a>2</a></l><m/>", 50000) + "</r>");
  const MSXML::IXMLDOMNodeList lists = document->GetdocumentElement()->getElementsByTagName("l");
  ASSERT_EQ(lists.Getlength(), 50000);
  for (const long index : {49999, 0, 777, 776, 49998, 1}) {
    for (const char *const tag : {"a", "b", "a"}) {
      const MSXML::IXMLDOMNodeList found = lists.Getitem(index)->getElementsByTagName(tag);
      EXPECT_EQ(found.Getlength(), *tag == 'a' ? 2 : 1) << index << tag;
      EXPECT_STREQ(found.Getitem(found.Getlength() - 1)->Gettext(), *tag == 'a' ? "2" : "") << index << tag;
      EXPECT_STREQ(found.Getitem(0)->Gettext(), *tag == 'a' ? "1" : "") << index << tag;
    }
    EXPECT_EQ(lists.Getitem(index)->getElementsByTagName("m").Getitem(0), nullptr) << index;
  }
  // Backwards each search misses where the last one ended.
  CString text;
  int read = 0;
  for (long index = 49999; index >= 0; --index)
    read += getElementValue(lists.Getitem(index), "a", text) && text == "1" ? 1 : 0;
  EXPECT_EQ(read, 50000);
}

TEST_F(Tree, ASearchSeesOnlyWhatIsThere) {
  const IXMLDOMDocumentPtr document = load("<r><l><a>1</a></l><a>2</a><a>3</a></r>");
  const IXMLDOMElementPtr root = document->GetdocumentElement();
  EXPECT_EQ(root->getElementsByTagName("r").Getitem(0), nullptr) << "not the root itself";
  const IXMLDOMElementPtr list = root->getElementsByTagName("l").Getitem(0);
  EXPECT_EQ(list->getElementsByTagName("a").Getlength(), 1);
  list->Puttext("t");
  const MSXML::IXMLDOMNodeList left = root->getElementsByTagName("a");
  EXPECT_EQ(left.Getlength(), 2);
  EXPECT_STREQ(left.Getitem(0)->Gettext(), "2") << "also after a later item";
}

TEST_F(Tree, DepthTakesNeitherStackNorTime) {
  constexpr int kDepth = 1000000;
  const std::string open = repeat("<a>", kDepth);
  const std::string close = repeat("</a>", kDepth);
  const IXMLDOMDocumentPtr document = load(open + "x<z></z>" + close);
  const IXMLDOMElementPtr root = document->GetdocumentElement();
  int depth = 0;
  int found = 0;
  for (IXMLDOMElementPtr element = root; element != nullptr; element = element->getElementsByTagName("a").Getitem(0)) {
    ++depth;
    found += static_cast<int>(element->getElementsByTagName("z").Getlength());
  }
  EXPECT_EQ(depth, kDepth);
  EXPECT_EQ(found, kDepth);
  EXPECT_STREQ(root->Gettext(), "x");
  EXPECT_TRUE(save(document) == open + "x<z></z>" + close + "\n");
}

TEST_F(Tree, RefusesATextOfTwoGibibytes) {
  constexpr std::size_t kTooLong = std::size_t{1} << 31;
  void *const room = ::mmap(nullptr, kTooLong, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(room, MAP_FAILED);
  const IXMLDOMElementPtr element = newDocument()->createElement("a");
  EXPECT_THROW(element->Puttext({static_cast<const char *>(room), kTooLong}), _com_error);
  EXPECT_STREQ(element->Gettext(), "");
  ::munmap(room, kTooLong);
}

} // namespace
