// Any bytes as a data file and its companions, loaded as programs load them. What follows the companion mark goes into
// the files that a load reads together with the first; the code page mark chooses code page 932. The result must be
// copied completely, and be the same after a save and a load.

#include "fuzz/document_support.h"
#include "fuzz/xml_mutator.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
  static const Scratch scratch;
  PrepareForDocuments(scratch);
  std::string_view input(reinterpret_cast<const char *>(data), size);
  kestrune::platform::SetCodePage(input.find(kPage932Mark) != std::string_view::npos ? 932 : 65001);
  std::string_view companion;
  if (const std::size_t cut = input.find(kCompanionMark); cut != std::string_view::npos) {
    companion = input.substr(cut + kCompanionMark.size());
    input = input.substr(0, cut);
  }
  scratch.write("input.xml", input);
  for (const char *name : {"input-1.xml", "UserXcvr.xml"}) {
    std::filesystem::remove(scratch.path(name));
    if (!companion.empty())
      scratch.write(name, companion);
  }
  ForEachDocument([]<class Document>(Document &document) {
    try {
      const long result = document.LoadFromFile(scratch.path("input.xml").c_str());
      if (result == KRX_E_UNEXPECTED_DATA || result == KRX_E_WRONG_ROOT_TAG)
        return;
    } catch (CKRXException *exception) {
      exception->Delete(); // a `std_id` that had to be compared is not a number
    }
    Document copy(document);
    RequireSame(TextsOf(document), TextsOf(copy), "a copy has all texts");
    RequireRoundTrip(document, scratch);
  });
  return 0;
}
