#include "kestrune/names/filename.h"
#include "kestrune/platform/debug_output.h"
#include "kestrune/platform/drives.h"
#include "kestrune/platform/file.h"
#include "kestrune/platform/made_folders.h"
#include "kestrune/platform/system_text.h"
#include "kestrune/xml/reporting.h"
#include "kestrune/xml/text_compare.h"
#include "kestrune/xml/xml_folder.h"
#include "kestrune/xml/xml_text.h"

namespace {

/// The full path of a remembered name. A host path is put in drive form first. The result of GetAbsolute is ignored: a
/// name that cannot be resolved shows as an empty path.
CFilename resolve(const CString &name, const char *base) {
  CFilename file;
  file = kestrune::platform::ToDrivePath(name);
  CFilename resolved;
  file.GetAbsolute(resolved, base);
  return resolved;
}

/// Reports a COM failure, with its code and description, on the debug channel.
void reportFailure(const char *format, const char *subject, const _com_error &error, const char *end) {
  if (!kestrune::platform::DebugOutputWanted())
    return;
  CString text;
  text.Format(format, subject, kestrune::platform::ResultBits(error.Error()));
  OutputDebugStringA(text + error.Description() + end);
}

/// Loads `folder` from what `read` makes of an empty document. `read` returns false where it is not well-formed.
template <class Read>
long loadTree(CXMLFolder &folder, const CString &tag, kestrune::Reporting &report, Read read) {
  IXMLDOMDocumentPtr document;
  if (IXMLDOMDocument::CreateInstance(document) < 0)
    return KRX_E_COM_CREATE;
  try {
    document->PutvalidateOnParse(false);
    document->Putasync(false);
    if (!read(*document)) {
      const MSXML::ParseError &error = document->GetparseError();
      return report.add(KRX_E_UNEXPECTED_DATA, error.reason, error.line, error.column);
    }
    const IXMLDOMElementPtr root = document->GetdocumentElement();
    if (root == nullptr)
      return KRX_E_UNEXPECTED_DATA;
    const CString found = root->GettagName();
    if (found.CompareNoCase(tag) != 0) {
      traceMessage("non-S_OK HRESULT =  0x%X while loading.  Expected tag: %s , found tag: %s ",
                   kestrune::platform::ResultBits(KRX_E_WRONG_ROOT_TAG), static_cast<const char *>(tag),
                   static_cast<const char *>(found));
      return report.addWrongRoot(found, tag);
    }
    const long result = folder.Load(root);
    // Without this, a member whose text could not be read would only look missing.
    document->CheckReadable();
    return result;
  } catch (const _com_error &error) {
    reportFailure("CXMLFolder::Load.  Warning: HRESULT not S_OK found while loading XML: %s\t: HRESULT: 0x%X, ", tag,
                  error, "");
    return report.add(KRX_E_LOAD_EXCEPTION, error.Description());
  }
}

/// Saves `folder` through the empty `document` with `write`. `target` is where to, for the report of a failure.
template <class Write>
long saveTree(CXMLFolder &folder, const CString &tag, const IXMLDOMDocumentPtr &document, const char *target,
              kestrune::Reporting &report, Write write) {
  try {
    document->appendChild(document->createProcessingInstruction("xml", "version='1.0' encoding='UTF-8' "));
    const IXMLDOMElementPtr root = document->createElement(tag.View());
    document->PutdocumentElement(root);
    folder.Save(root, 0);
    return write();
  } catch (const _com_error &error) {
    reportFailure(
        "CXMLFolder::Save.  Error(s) found while saving: %s\tUnexpected COM exception caught: HRESULT: 0x%X, ", target,
        error, "\n");
    return report.addUnsaved(error);
  }
}

std::string emptyNameText(const CString &name) {
  return "nothing is left of the name '" + std::string(name) + "' when its macros are replaced";
}

} // namespace

long CXMLFolder::LoadFromFile(const char *name, const char *base) {
  kestrune::Reporting report(*this);
  if (name != nullptr && *name != '\0')
    m_fileName = name;
  const CFilename resolved = resolve(m_fileName, base);
  if (resolved.IsEmpty())
    return report.add(KRX_E_LOAD_NOT_NAMED, m_fileName.IsEmpty() ? "" : emptyNameText(m_fileName).c_str());
  if ((GetFileAttributesA(resolved) & FILE_ATTRIBUTE_DIRECTORY) != 0) // INVALID_FILE_ATTRIBUTES has the bit too
    return report.addUnreadable(KRX_E_FILE_NOT_FOUND, resolved);
  const long result = LoadFromXMLFile(resolved);
  m_modified = 0;
  PutModified(0);
  return result;
}

long CXMLFolder::SaveToFile(const char *name, const char *base, bool overwrite) {
  kestrune::Reporting report(*this);
  if (name != nullptr && *name != '\0')
    m_fileName = name;
  if (m_fileName.IsEmpty())
    return report.add(KRX_E_SAVE_NOT_NAMED);
  const CFilename resolved = resolve(m_fileName, base);
  CFilename folder(resolved);
  --folder;
  kestrune::platform::MadeFolders made;
  if (folder.IsDirectory() == 0) {
    const int count = folder.GetSegmentCount();
    for (int i = 0; i < count; ++i)
      made.make(folder.GetPathSegment(i));
  }
  const long result = SaveToXMLFile(resolved, overwrite);
  if (result >= 0) {
    made.keep();
    PutModified(0);
  } else if (resolved.IsEmpty()) {
    report.explain(emptyNameText(m_fileName));
  } else if (result == KRX_E_SAVE_FAILED && made.error() != 0 && folder.IsDirectory() == 0) {
    report.explain("its folder cannot be made: " + kestrune::platform::SystemText(made.error()));
  }
  return result;
}

long CXMLFolder::LoadFromXMLFile(const char *path) {
  kestrune::Reporting report(*this, path);
  const long result = loadTree(*this, m_tag, report, [&](IXMLDOMDocument &document) { return document.load(path); });
  report.findPlacesInFile();
  return report.complete(result);
}

long CXMLFolder::SaveToXMLFile(const char *path, bool overwrite) {
  kestrune::Reporting report(*this, path);
  IXMLDOMDocumentPtr document;
  if (IXMLDOMDocument::CreateInstance(document) < 0)
    return report.add(KRX_E_COM_CREATE);
  if (!overwrite && GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES)
    return report.add(KRX_E_WRITE_PROTECTED);
  return saveTree(*this, m_tag, document, path, report, [&] { return document->save(path); });
}

long kestrune::LoadFromText(CXMLFolder &folder, std::string_view text) {
  Reporting report(folder);
  const long result =
      loadTree(folder, folder.GetTag(), report, [&](IXMLDOMDocument &document) { return document.loadXML(text); });
  report.findPlacesInText(text);
  folder.PutModified(0);
  return report.complete(result);
}

long kestrune::SaveToText(CXMLFolder &folder, std::string &text) {
  Reporting report(folder);
  IXMLDOMDocumentPtr document;
  if (IXMLDOMDocument::CreateInstance(document) < 0)
    return report.add(KRX_E_COM_CREATE);
  const CString tag = folder.GetTag();
  return saveTree(folder, tag, document, tag, report, [&] {
    document->saveXML(text);
    return S_OK;
  });
}
