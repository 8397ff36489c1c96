#include "tests/dom/dom_support.h"

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
  document->PutdocumentElement(root);
  above->appendChild(below);
  const struct {
    const char *what;
    IXMLDOMNode *parent, *child;
  } rows[] = {
      {"itself", above, above},
      {"its ancestor", below, above},
      {"the child of another", root, below},
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
