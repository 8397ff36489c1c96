#include "tests/dom/dom_support.h"

// Trees into files.

namespace {

class Writing : public support::Dom {};

TEST_F(Writing, EveryTextComesBack) {
  const IXMLDOMDocumentPtr document = newDocument();
  const IXMLDOMElementPtr root = document->createElement("Rööt");
  document->PutdocumentElement(root);
  const std::string texts[] = {"",    " ",        "\t", "\n",   "\r",         "\r\n", "  a  ",    "\ta",  "]]>",
                               "\"'", "<a>&amp;", "😀",  "\x7F", "Größe ソ €", "?>",   "<!-- -->", "&#10;"};
  for (const std::string &text : texts) {
    const IXMLDOMElementPtr element = document->createElement("e");
    element->Puttext(text);
    element->setAttribute("a", text);
    root->appendChild(element);
  }
  const std::string bytes = save(document);
  const IXMLDOMDocumentPtr again = load(bytes);
  const MSXML::IXMLDOMNodeList elements = again->GetdocumentElement()->getElementsByTagName("e");
  for (long i = 0; i < elements.Getlength(); ++i) {
    EXPECT_EQ(elements.Getitem(i)->Gettext().View(), texts[i]);
    EXPECT_EQ(elements.Getitem(i)->getAttribute("a").text().View(), texts[i]);
  }
  EXPECT_EQ(elements.Getlength(), static_cast<long>(std::size(texts)));
  EXPECT_EQ(save(again), bytes);
}

TEST_F(Writing, InstructionsComeBeforeTheRoot) {
  const IXMLDOMDocumentPtr document = newDocument();
  document->PutdocumentElement(document->createElement("r"));
  document->appendChild(document->createProcessingInstruction("xml", ""));
  document->appendChild(document->createProcessingInstruction("p", "a<b"));
  const std::string bytes = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<?p a<b?>\n<r></r>\n";
  EXPECT_EQ(save(document), bytes);
  document->appendChild(document->createProcessingInstruction("p", "?>"));
  EXPECT_THROW(document->save((m_folder / "b.xml").c_str()), _com_error);
  EXPECT_EQ(support::read(m_folder / "b.xml"), bytes);
}

TEST_F(Writing, TextsOfTheCodePageAreCheckedAndWrittenInUtf8) {
  const struct {
    unsigned codePage;
    const char *text, *utf8, *broken;
  } rows[] = {
      {932, "\x83\x5C\\", "ソ\\", "\x83"},
      {1252, "\x80\xF6", "€ö", "\x81"},
  };
  for (const auto &row : rows) {
    const support::CodePage codePage(row.codePage);
    const IXMLDOMDocumentPtr document = newDocument();
    const IXMLDOMElementPtr root = document->createElement("r");
    document->PutdocumentElement(root);
    root->Puttext(row.text);
    EXPECT_EQ(save(document), "<r>" + std::string(row.utf8) + "</r>\n");
    EXPECT_EQ(rootText(save(document)), row.text) << row.codePage;
    root->Puttext(row.broken);
    EXPECT_THROW(document->save((m_folder / "b.xml").c_str()), _com_error) << row.codePage;
  }
}

} // namespace
