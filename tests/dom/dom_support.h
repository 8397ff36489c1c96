#pragma once

#include "tests/test_support.h"

// Trees in and out of the bytes of real files.

namespace support {

class Dom : public testing::Test {
protected:
  static IXMLDOMDocumentPtr newDocument() {
    IXMLDOMDocumentPtr document;
    EXPECT_EQ(IXMLDOMDocument::CreateInstance(document), S_OK);
    return document;
  }

  /// The document of a file with these bytes; without a root where the file is refused.
  IXMLDOMDocumentPtr load(std::string_view bytes) {
    write(m_folder / "a.xml", bytes);
    const IXMLDOMDocumentPtr document = newDocument();
    const bool loaded = document->load((m_folder / "a.xml").c_str());
    EXPECT_EQ(document->GetdocumentElement() != nullptr, loaded);
    return document;
  }

  /// The text of the root of such a file.
  std::string rootText(std::string_view bytes) {
    const IXMLDOMElementPtr root = load(bytes)->GetdocumentElement();
    return root != nullptr ? std::string(root->Gettext()) : kRefused;
  }

  /// The bytes of the file that `document` is saved to.
  std::string save(const IXMLDOMDocumentPtr &document) {
    try {
      EXPECT_EQ(document->save((m_folder / "b.xml").c_str()), S_OK);
    } catch (const _com_error &) {
      return kRefused;
    }
    return read(m_folder / "b.xml");
  }

  static constexpr const char *kRefused = "(refused)";
  Com m_com;
  TempFolder m_folder;
};

inline std::string repeat(std::string_view text, int count) {
  std::string repeated;
  for (int i = 0; i < count; ++i)
    repeated += text;
  return repeated;
}

} // namespace support
