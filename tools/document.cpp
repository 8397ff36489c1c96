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

/// Reads the file that `file` leads to, whatever its kind. Null when it cannot be read, with the reason in `opened`.
IXMLDOMDocumentPtr parse(const char *file, OpenedDocument &opened) {
  CFilename path;
  CFilename(file).GetAbsolute(path, nullptr);
  IXMLDOMDocumentPtr tree;
  if (path.IsEmpty())
    opened.result = KRX_E_LOAD_NOT_NAMED;
  else
    opened.result = IXMLDOMDocument::CreateInstance(tree) < 0 ? KRX_E_COM_CREATE : S_OK;
  if (opened.failed()) {
    opened.reason = kestrune::ResultText(opened.result);
    opened.unreadable = true;
    return nullptr;
  }
  if (tree->load(path))
    return tree;
  const MSXML::ParseError &error = tree->GetparseError();
  const bool isFile = path.FileExists() != 0 && path.IsDirectory() == 0;
  opened.result = isFile ? KRX_E_UNEXPECTED_DATA : KRX_E_FILE_NOT_FOUND;
  opened.reason = error.reason;
  opened.unreadable = error.line == 0;
  if (error.line > 0)
    opened.place = std::to_string(error.line) + ":" + std::to_string(error.column) + ":";
  return nullptr;
}

} // namespace

void explain(OpenedDocument &opened, const char *file) {
  if (!opened.failed())
    return;
  // The words of the parser and of the system, where it is the file itself that failed.
  OpenedDocument parsed;
  parse(file, parsed);
  if (parsed.result == opened.result) {
    opened.reason = parsed.reason;
    opened.place = parsed.place;
  } else {
    opened.reason = kestrune::ResultText(opened.result);
  }
  opened.unreadable = parsed.unreadable;
}

OpenedDocument openDocument(const std::string &file) {
  // The standard file itself may be missing where a replacement is read.
  const Kind *kind = findKind(file.c_str(), &Kind::macro);
  OpenedDocument opened;
  if (kind == nullptr) {
    const IXMLDOMDocumentPtr tree = parse(file.c_str(), opened);
    if (tree == nullptr)
      return opened;
    const CString root = tree->GetdocumentElement()->GettagName();
    kind = findKind(root, &Kind::root);
    if (kind == nullptr) {
      opened.result = KRX_E_WRONG_ROOT_TAG;
      opened.reason = "no kind of file has the root element '" + std::string(root) + "'";
      return opened;
    }
  }
  opened = kind->load(file.c_str());
  opened.kind = kind->name;
  explain(opened, file.c_str());
  return opened;
}

std::string failureText(const std::string &file, const OpenedDocument &opened) {
  return file + ":" + opened.place + " " + opened.reason + " (" + kestrune::ResultName(opened.result) + ")";
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
