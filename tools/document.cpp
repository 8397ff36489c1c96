#include "tools/document.h"

#include <cstdio>
#include <cstring>
#include <memory>

namespace {

struct Kind {
  const char *root;
  const char *name;
  OpenedDocument (*load)(const char *file);
};

/// A name that is a macro means what programs get: with a replacement, add-on files and the user's own file. A path
/// means that file and nothing else.
bool isMacro(const char *file) { return *file == '$' && std::strchr(file + 1, '$') == file + std::strlen(file) - 1; }

template <class Document>
OpenedDocument loadAs(const char *file) {
  OpenedDocument opened;
  auto document = std::make_unique<Document>();
  opened.result = isMacro(file) ? document->LoadFromFile(file) : document->LoadFromFile(file, nullptr);
  opened.document = std::move(document);
  return opened;
}

constexpr Kind kKinds[] = {
    {"VorlanTyp", "chip data", loadAs<CVorlanTyp4>},
    {"StdXcvr", "transceivers", loadAs<CStdXcvr3>},
    {"SPIDData", "identity data", loadAs<CSpidData2>},
    {"KestruneUI", "user-interface data", loadAs<CKestruneUI>},
};

struct Reason {
  long code;
  const char *text;
};

constexpr Reason kReasons[] = {
    {KRX_E_COM_CREATE, "no XML document can be made"},
    {KRX_E_FILE_NOT_FOUND, "no such file"},
    {KRX_E_UNEXPECTED_DATA, "a file that belongs to it is unreadable or not well-formed"},
    {KRX_E_LOAD_NOT_NAMED, "no file named"},
    {KRX_E_DUPLICATE_KEY, "a key is empty or stands twice; the later items of that key are left out"},
    {KRX_E_LOAD_EXCEPTION, "the texts of nested elements are too large"},
    {KRX_E_WRONG_ROOT_TAG, "a file that belongs to it is of another kind"},
};

} // namespace

std::string reasonOf(long code) {
  for (const Reason &reason : kReasons) {
    if (reason.code == code)
      return reason.text;
  }
  return "failed";
}

OpenedDocument openDocument(const std::string &file) {
  OpenedDocument opened;
  CFilename path;
  CFilename(file.c_str()).GetAbsolute(path, nullptr);
  if (path.FileExists() == 0 || path.IsDirectory() != 0) {
    opened.result = path.IsEmpty() ? KRX_E_LOAD_NOT_NAMED : KRX_E_FILE_NOT_FOUND;
    opened.reason = reasonOf(opened.result);
    return opened;
  }

  IXMLDOMDocumentPtr tree;
  opened.result = IXMLDOMDocument::CreateInstance(tree);
  if (opened.failed())
    return opened;
  if (!tree->load(path)) {
    const MSXML::ParseError &error = tree->GetparseError();
    opened.result = KRX_E_UNEXPECTED_DATA;
    opened.reason = error.reason;
    if (error.line > 0)
      opened.place = std::to_string(error.line) + ":" + std::to_string(error.column) + ": ";
    return opened;
  }
  const CString root = tree->GetdocumentElement()->GettagName();
  tree = nullptr;
  for (const Kind &kind : kKinds) {
    if (root.CompareNoCase(kind.root) == 0) {
      opened = kind.load(file.c_str());
      opened.kind = kind.name;
      if (opened.failed())
        opened.reason = reasonOf(opened.result);
      return opened;
    }
  }
  opened.result = KRX_E_WRONG_ROOT_TAG;
  opened.reason = "no kind of document has the root element '" + std::string(root) + "'";
  return opened;
}

std::string failureText(const std::string &file, const OpenedDocument &opened) {
  char code[16];
  std::snprintf(code, sizeof code, "0x%08X", kestrune::platform::ResultBits(opened.result));
  return file + ":" + (opened.place.empty() ? " " : opened.place) + opened.reason + " (" + code + ")";
}

std::string memberText(CXMLFolder &folder, const char *tag) {
  for (const kestrune::MemberView &member : kestrune::MembersOf(folder)) {
    if (member.value->GetTag().Compare(tag) == 0)
      return member.collection != nullptr ? std::to_string(member.collection->Count())
                                          : static_cast<const char *>(*member.value);
  }
  return {};
}
