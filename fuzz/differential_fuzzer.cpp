// Any bytes as a data file, loaded as each document class and also parsed by Expat alone. A file that Expat refuses is
// refused by all classes; one that it accepts is read by the classes that have its root, and by no others. A document
// that refuses a file stays as it was, and one that has read it gives the same bytes each time it is saved.

#include "fuzz/document_support.h"

#include <expat.h>

namespace {

struct Verdict {
  bool accepted = false;
  /// Expat alone cannot decide: the file has an encoding that it does not know, external declarations, or a document
  /// type, with which Expat silently drops undeclared entities from attributes.
  bool open = false;
  /// A text refers to an entity that is not declared.
  bool losesText = false;
  std::string root;
};

Verdict verdictOf(std::string_view input) {
  Verdict verdict;
  const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> owner(XML_ParserCreate(nullptr), XML_ParserFree);
  const XML_Parser parser = owner.get();
  XML_SetUserData(parser, &verdict);
  XML_SetStartElementHandler(parser, [](void *self, const char *name, const char **) {
    if (std::string &root = static_cast<Verdict *>(self)->root; root.empty())
      root = name;
  });
  XML_SetParamEntityParsing(parser, XML_PARAM_ENTITY_PARSING_ALWAYS);
  XML_SetExternalEntityRefHandler(
      parser, [](XML_Parser self, const char *context, const char *, const char *, const char *) -> int {
        static_cast<Verdict *>(XML_GetUserData(self))->open |= context == nullptr;
        return context == nullptr ? XML_STATUS_OK : XML_STATUS_ERROR;
      });
  XML_SetSkippedEntityHandler(parser, [](void *self, const char *, int isParameter) {
    static_cast<Verdict *>(self)->losesText |= isParameter == 0;
  });
  verdict.accepted =
      XML_Parse(parser, input.data(), static_cast<int>(input.size()), 1) == XML_STATUS_OK && !verdict.losesText;
  verdict.open |= input.find("<!DOCTYPE") != std::string_view::npos && input.find('%') != std::string_view::npos;
  verdict.open |= XML_GetErrorCode(parser) == XML_ERROR_UNKNOWN_ENCODING;
  return verdict;
}

/// Whether the library refuses a well-formed file because it would expand too much.
bool isTooLarge(const char *path) {
  IXMLDOMDocumentPtr document;
  Require(IXMLDOMDocument::CreateInstance(document) == S_OK, "a tree can be made");
  if (document->load(path))
    return false;
  const std::string_view reason = document->GetparseError().reason.View();
  return reason == "the default attributes are too large" || reason == "too many entities that refer to others";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
  static const Scratch scratch;
  PrepareForDocuments(scratch);
  const std::string_view input(reinterpret_cast<const char *>(data), size);
  scratch.write("input.xml", input);
  const std::string path = scratch.path("input.xml");
  const Verdict verdict = verdictOf(input);

  ForEachDocument([&]<class Document>(Document &document) {
    const Texts fresh = TextsOf(document);
    const long result = document.CXMLFolder::LoadFromFile(path.c_str(), nullptr);
    Require(document.GetModified() == 0, "a load leaves the document unmodified");
    const bool malformed = result == KRX_E_UNEXPECTED_DATA;
    const bool refused = malformed || result == KRX_E_WRONG_ROOT_TAG;
    if (!verdict.open) {
      Require(malformed != verdict.accepted || (malformed && isTooLarge(path.c_str())),
              verdict.accepted ? "what Expat accepts is accepted" : "what Expat refuses is refused");
      Require(malformed || refused == (document.GetTag().CompareNoCase(verdict.root.c_str()) != 0),
              "a document reads the files that have its root", verdict.root);
    }
    if (refused) {
      RequireSame(fresh, TextsOf(document), "a file that is refused leaves the document as it was");
      return;
    }
    // KRX_E_LOAD_EXCEPTION is for texts that are too large to join.
    Require(result >= 0 || result == KRX_E_DUPLICATE_KEY || result == KRX_E_LOAD_EXCEPTION,
            "a document reads what it can");
    RequireRoundTrip(document, scratch);
  });
  return 0;
}
