// Any bytes as a data file. The input is written to a file and loaded as each class of document; whatever comes of it
// must save, and the saved file must give the same texts again, and be written again to the same bytes. What stands
// behind the comment <!--companion--> goes into the files that a load takes in beside the first; the comment
// <!--932--> chooses that code page.

#include "fuzz/fuzz_support.h"
#include "kestrune/kestrune_xml.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <vector>

namespace {

namespace fs = std::filesystem;

using Texts = std::vector<std::string>;

class Scratch {
public:
  Scratch() {
    std::string name = (fs::temp_directory_path() / "kestrune-fuzz-XXXXXX").string();
    Require(::mkdtemp(name.data()) != nullptr, "there is room for the files");
    m_folder = name;
    // Neither the registry nor a replacement file of the machine may take part.
    ::setenv("KESTRUNE_REGISTRY", path("none.reg").c_str(), 1);
    ::setenv("PFDT", path("none").c_str(), 1);
    CoInitialize(nullptr);
  }
  ~Scratch() {
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
  }
  std::string path(const char *name) const { return (m_folder / name).string(); }

private:
  fs::path m_folder;
};

void write(const std::string &path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string read(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// All texts of a folder that reach the file, each with its tag.
void collect(CXMLFolder &folder, Texts &texts) {
  texts.emplace_back(folder.GetTag().View());
  for (const kestrune::MemberView &member : kestrune::MembersOf(folder)) {
    if (member.folder != nullptr)
      collect(*member.folder, texts);
    else
      texts.push_back(std::string(member.value->GetTag().View()) + '=' + std::string(member.value->View()));
  }
  if (auto *const list = dynamic_cast<CXMLCollectionFolder *>(&folder))
    for (int i = 0; i < list->Count(); ++i)
      collect(*(*list)[i], texts);
}

Texts textsOf(CXMLFolder &document) {
  Texts texts;
  collect(document, texts);
  return texts;
}

void requireSame(const Texts &expected, const Texts &found, const char *promise) {
  Require(expected.size() == found.size(), promise,
          std::to_string(expected.size()) + " and " + std::to_string(found.size()) + " texts");
  for (std::size_t i = 0; i < expected.size(); ++i)
    Require(expected[i] == found[i], promise, expected[i] + "\n" + found[i]);
}

/// The general-purpose data is written with its prefix and read in upper case: what no file has given yet comes back
/// changed once.
template <class Transceivers>
void settleList(Transceivers &list) {
  for (int i = 0; i < list.Count(); ++i) {
    list[i]->ModeSpec.xcvr_gp_data.MakeUpper();
    if constexpr (requires { list[i]->ModeSpec2; })
      list[i]->ModeSpec2.xcvr_gp_data.MakeUpper();
  }
}

void settle(CStdXcvr &document) { settleList(document.Transceivers); }
void settle(CStdXcvr2 &document) { settleList(document.Transceivers2); }
void settle(CStdXcvr3 &document) { settleList(document.Transceivers3); }
void settle(CXMLTopLevelFolder &) {}

/// Returns the result of the first load.
template <class Document>
long check(const Scratch &scratch, bool withCompanions) {
  const std::string input = scratch.path("input.xml");
  Document document;
  const Texts fresh = textsOf(document);
  long result = S_OK;
  try {
    result = withCompanions ? document.LoadFromFile(input.c_str())
                            : document.CXMLFolder::LoadFromFile(input.c_str(), nullptr);
  } catch (CKRXException *exception) {
    exception->Delete(); // a transceiver of the user's whose number is none
  }
  if (!withCompanions) {
    Require(document.GetModified() == 0, "a load leaves the document unmodified");
    if (result == KRX_E_UNEXPECTED_DATA || result == KRX_E_WRONG_ROOT_TAG) {
      requireSame(fresh, textsOf(document), "a file that is refused leaves the document as it was");
      return result;
    }
  }
  settle(document);
  const Texts texts = textsOf(document);

  const std::string first = scratch.path("first.xml");
  Require(document.SaveToFile(first.c_str(), nullptr, true) == S_OK, "what was loaded can be saved");
  Document again;
  Require(again.CXMLFolder::LoadFromFile(first.c_str(), nullptr) >= 0, "what was saved can be loaded", read(first));
  requireSame(texts, textsOf(again), "a save and a load give the same texts");
  const std::string second = scratch.path("second.xml");
  Require(again.SaveToFile(second.c_str(), nullptr, true) == S_OK, "it can be saved again");
  Require(read(first) == read(second), "the second save writes the same bytes", read(first) + "\n" + read(second));

  Document copy(document);
  requireSame(texts, textsOf(copy), "a copy has all texts");
  return result;
}

/// The newest class tells whether the file is of its kind; the others then read it too.
template <class Newest, class... Older>
bool checkKind(const Scratch &scratch) {
  const long result = check<Newest>(scratch, false);
  if (result == KRX_E_WRONG_ROOT_TAG || result == KRX_E_UNEXPECTED_DATA)
    return result == KRX_E_UNEXPECTED_DATA;
  check<Newest>(scratch, true);
  (check<Older>(scratch, false), ...);
  return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
  static const Scratch scratch;
  constexpr std::string_view kCompanion = "<!--companion-->";
  std::string_view input(reinterpret_cast<const char *>(data), size);
  kestrune::platform::SetCodePage(input.find("<!--932-->") != std::string_view::npos ? 932 : 65001);
  std::string_view companion;
  if (const std::size_t cut = input.find(kCompanion); cut != std::string_view::npos) {
    companion = input.substr(cut + kCompanion.size());
    input = input.substr(0, cut);
  }
  write(scratch.path("input.xml"), input);
  for (const char *name : {"input-1.xml", "UserXcvr.xml"}) {
    if (companion.empty())
      fs::remove(scratch.path(name));
    else
      write(scratch.path(name), companion);
  }
  checkKind<CVorlanTyp4, CVorlanTyp3, CVorlanTyp2, CVorlanTyp>(scratch) ||
      checkKind<CStdXcvr3, CStdXcvr2, CStdXcvr>(scratch) || checkKind<CSpidData2, CSpidData>(scratch) ||
      checkKind<CKestruneUI>(scratch);
  return 0;
}
