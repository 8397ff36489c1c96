#include "tools/document.h"

#include "tools/table.h"

#include <algorithm>
#include <cstring>
#include <iostream>
#include <iterator>
#include <memory>

namespace {

struct Kind {
  const char *root;
  const char *macro;
  const char *name;
  OpenedDocument (*load)(const char *file);
};

bool isMacro(const char *file) { return *file == '$' && std::strchr(file + 1, '$') == file + std::strlen(file) - 1; }

template <class Document>
OpenedDocument loadAs(const char *file) {
  OpenedDocument opened;
  auto document = std::make_unique<Document>();
  // Only the documents' own operation looks for a replacement and companions.
  opened.result = isMacro(file) ? document->LoadFromFile(file) : document->LoadFromFile(file, nullptr);
  opened.document = std::move(document);
  return opened;
}

constexpr Kind kKinds[] = {
    {"VorlanTyp", "$StdVorlanTyp$", "chip data", loadAs<CVorlanTyp4>},
    {"StdXcvr", "$StdXcvrTyp$", "transceivers", loadAs<CStdXcvr3>},
    {"SPIDData", "$StdSpidData$", "identity data", loadAs<CSpidData2>},
    {"KestruneUI", "$StdKestruneUI$", "user-interface data", loadAs<CKestruneUI>},
};

const Kind *findKind(const CString &text, const char *Kind::*column) {
  const auto *const found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                         [&](const Kind &kind) { return text.CompareNoCase(kind.*column) == 0; });
  return found != std::end(kKinds) ? found : nullptr;
}

/// Where `file` leads to.
CFilename pathOf(const char *file) {
  CFilename name;
  name = CString(file);
  CFilename path;
  name.GetAbsolute(path, nullptr);
  return path;
}

} // namespace

void OpenedDocument::takeReport(const CXMLFolder &folder) {
  findings = kestrune::ReportOf(folder);
  unreadable = !findings.empty() && findings[0].line == 0 &&
               (findings[0].result == KRX_E_FILE_NOT_FOUND || findings[0].result == KRX_E_LOAD_NOT_NAMED ||
                findings[0].result == KRX_E_UNEXPECTED_DATA || findings[0].result == KRX_E_COM_CREATE);
}

OpenedDocument openDocument(const std::string &file) {
  // The standard file itself may be missing where a replacement is read.
  const Kind *kind = findKind(file.c_str(), &Kind::macro);
  OpenedDocument opened;
  if (kind == nullptr) {
    const CFilename path = pathOf(file.c_str());
    IXMLDOMDocumentPtr tree;
    if (IXMLDOMDocument::CreateInstance(tree) < 0 || !tree->load(path)) {
      CXMLTopLevelFolder ofAnyKind; // says why
      opened.result = ofAnyKind.LoadFromFile(file.c_str(), nullptr);
      opened.takeReport(ofAnyKind);
      return opened;
    }
    const CString root = tree->GetdocumentElement()->GettagName();
    kind = findKind(root, &Kind::root);
    if (kind == nullptr) {
      opened.result = KRX_E_WRONG_ROOT_TAG;
      opened.findings.push_back({.result = KRX_E_WRONG_ROOT_TAG,
                                 .file = std::string(path),
                                 .reason = "no kind of file has the root element '" + std::string(root) + "'"});
      return opened;
    }
  }
  opened = kind->load(file.c_str());
  opened.kind = kind->name;
  opened.takeReport(*opened.document);
  return opened;
}

std::vector<std::string> failureTexts(const std::string &file, const OpenedDocument &opened) {
  const CFilename path = pathOf(file.c_str());
  std::vector<std::string> texts;
  for (kestrune::Finding finding : opened.findings) {
    if (finding.file.empty() || path.CompareNoCase(finding.file.c_str()) == 0)
      finding.file = file;
    texts.push_back(finding.text());
  }
  return texts;
}

int couldNotWork(const std::string &file, const OpenedDocument &opened) {
  for (const std::string &text : failureTexts(file, opened))
    couldNotWork(text);
  return 2;
}

int couldNotWork(const std::string &message) {
  std::cerr << "kestrune-data: " << shown(message) << '\n';
  return 2;
}

std::string memberText(CXMLFolder &folder, const char *tag) {
  for (const kestrune::MemberView &member : kestrune::MembersOf(folder)) {
    if (member.value->GetTag().Compare(tag) == 0)
      return member.collection != nullptr ? std::to_string(member.collection->Count())
                                          : static_cast<const char *>(*member.value);
  }
  return {};
}
