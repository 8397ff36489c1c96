#include "tests/document_support.h"

namespace {

/// A value as somebody writes it who knows the document object of another platform.
class Stamp : public CXMLElement {
public:
  IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level) override {
    insertTabs(parent, level + 1);
    IXMLDOMElementPtr element = parent->ownerDocument->createElement(_bstr_t("Stamp"));
    element->setAttribute(_bstr_t("by"), _variant_t(*this));
    element->appendChild(parent->ownerDocument->createTextNode(L"\u00FC"));
    parent->appendChild(element);
    return element;
  }

  long Load(MSXML::IXMLDOMElement *parent) override {
    const CString tag("Stamp");
    if (parent->getElementsByTagName(_bstr_t(tag))->Getlength() == 0)
      return KRX_S_NO_ELEMENT;
    IXMLDOMElementPtr element = parent->getElementsByTagName(tag)->item[0];
    _variant_t by = element->getAttribute(_bstr_t("by"));
    if (by.vt == VT_NULL)
      return KRX_S_NO_ATTRIBUTE;
    const _bstr_t text = by;
    *this = static_cast<const char *>(text) + element->Gettext();
    return S_OK;
  }
  using CXMLElement::operator=;
};

class Document : public CXMLTopLevelFolder {
public:
  Document() {
    PutTag(CString("Root"));
    Document::pushMembers();
  }
  void pushMembers() override { m_members = {&Written}; }

  Stamp Written;
};

TEST(DomStrings, OverriddenLoadAndSaveMayUseTheStringsOfCom) {
  Document document;
  document.Written = "me";
  const std::string saved = support::save(document);
  EXPECT_NE(saved.find("\n\t<Stamp by=\"me\">\u00FC</Stamp>"), std::string::npos) << saved;
  EXPECT_EQ(support::load(document, saved), S_OK);
  EXPECT_STREQ(document.Written, "me\u00FC");
  EXPECT_EQ(support::load(document, "<Root><Stamp/></Root>"), KRX_S_NO_ATTRIBUTE);
  EXPECT_EQ(support::load(document, "<Root/>"), KRX_S_NO_ELEMENT);
}

/// What every operation gives for the name "n" and the text "t" in two forms.
template <class Name, class Text>
std::string used(const Name &name, const Text &text) {
  const support::Com com;
  IXMLDOMDocumentPtr document;
  MSXML::IXMLDOMDocument::CreateInstance(document);
  document->appendChild(document->createProcessingInstruction(name, text));
  const IXMLDOMElementPtr root = document->createElement(name);
  document->PutdocumentElement(root);
  root->setAttribute(name, text);
  const IXMLDOMElementPtr child = document->createElement(name);
  child->Puttext(root->getAttribute(name));
  root->appendChild(child);
  root->appendChild(document->createTextNode(text));
  child->Puttext(text);
  std::string saved;
  document->saveXML(saved);
  return saved + std::to_string(root->getElementsByTagName(name).Getlength());
}

TEST(DomStrings, ATextMayHaveAnyForm) {
  const std::string expected = "<?n t?>\n<n n=\"t\"><n>t</n>t</n>\n1";
  CXMLAttribute member;
  member = "t";
  EXPECT_EQ(used("n", "t"), expected);
  EXPECT_EQ(used(std::string("n"), std::string_view("t")), expected);
  EXPECT_EQ(used(_bstr_t("n"), _variant_t("t")), expected);
  EXPECT_EQ(used(CString("n"), member), expected);
  EXPECT_EQ(used(L"n", _bstr_t(L"t")), expected);
  EXPECT_EQ(used("n", CString("t")), expected);
  EXPECT_EQ(used(_variant_t("n"), "t"), expected);
  EXPECT_EQ(used("n", _variant_t()), "<?n ?>\n<n n=\"\"><n></n></n>\n1");
}

} // namespace
