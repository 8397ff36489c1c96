#include "tests/dom/dom_support.h"

// Trees into files.

namespace {

class Writing : public support::Dom {};

TEST_F(Writing, EveryTextComesBack) {
  const IXMLDOMDocumentPtr document = newDocument();
  const IXMLDOMElementPtr root = document->createElement("Rööt");
  document->PutdocumentElement(root);
  const std::string texts[] = {"",
                               " ",
                               "\t",
                               "\n",
                               "\r\n",
                               "  a  ",
                               "]]>",
                               "\"'",
                               "<a>&amp;",
                               "😀",
                               "Größe ソ €",
                               "15 bytes are <!",
                               "16 bytes, then &",
                               "nothing in sixteen, then \xC3\x9F and \"",
                               std::string(70000, '<')};
  for (const std::string &text : texts) {
    const IXMLDOMElementPtr element = document->createElement("e");
    element->Puttext(text);
    element->setAttribute("a", text);
    root->appendChild(element);
  }
  const IXMLDOMDocumentPtr again = load(save(document));
  const MSXML::IXMLDOMNodeList elements = again->GetdocumentElement()->getElementsByTagName("e");
  ASSERT_EQ(elements.Getlength(), static_cast<long>(std::size(texts)));
  for (long i = 0; i < elements.Getlength(); ++i) {
    EXPECT_EQ(elements.Getitem(i)->Gettext().View(), texts[i]);
    EXPECT_EQ(elements.Getitem(i)->getAttribute("a").text().View(), texts[i]);
  }
}

TEST_F(Writing, WhatXmlCannotCarryIsRefused) {
  const struct {
    const char *what, *name, *text, *instruction, *saved;
  } rows[] = {
      {"a control character", "r", "\x1F", "", kRefused},
      {"no character of XML", "r", "\uFFFE", "", kRefused},
      {"no character of XML either", "r", "\uFFFF", "", kRefused},
      {"a character beside those", "r", "\uFFFD😀", "", "<?p ?>\n<r>\uFFFD😀</r>\n"},
      {"an instruction", "r", "", "a<&>\"b", "<?p a<&>\"b?>\n<r></r>\n"},
      {"an instruction with its end", "r", "", "a?>", kRefused},
      {"an instruction with a control character", "r", "", "\x1F", kRefused},
      {"a name", "_a:Z-0.9", "", "", "<?p ?>\n<_a:Z-0.9></_a:Z-0.9>\n"},
      {"a name of other letters", "Rööt", "", "", "<?p ?>\n<Rööt></Rööt>\n"},
      {"a digit at the start of a name", "0a", "", "", kRefused},
      {"a blank in a name", "a b", "", "", kRefused},
      {"a name of several letters and a sign", "ä×", "", "", kRefused},
  };
  for (const auto &row : rows) {
    const IXMLDOMDocumentPtr document = newDocument();
    document->appendChild(document->createProcessingInstruction("p", row.instruction));
    const IXMLDOMElementPtr root = document->createElement(row.name);
    document->PutdocumentElement(root);
    root->Puttext(row.text);
    EXPECT_EQ(save(document), row.saved) << row.what;
  }
}

TEST_F(Writing, TextsOfTheCodePageAreCheckedAndWrittenInUtf8) {
  const support::CodePage japanese(932);
  const IXMLDOMDocumentPtr document = newDocument();
  const IXMLDOMElementPtr root = document->createElement("r");
  document->PutdocumentElement(root);
  root->Puttext("\x83\x5C\\");
  EXPECT_EQ(save(document), "<r>ソ\\</r>\n");
  EXPECT_EQ(rootText(save(document)), "\x83\x5C\\");
  root->Puttext("\x83");
  EXPECT_EQ(save(document), kRefused);
}

} // namespace
