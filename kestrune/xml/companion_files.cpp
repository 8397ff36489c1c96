#include "kestrune/xml/companion_files.h"

#include "kestrune/platform/drives.h"
#include "kestrune/platform/file.h"
#include "kestrune/xml/xml_dom.h"

namespace {

CFilename ifThere(const CFilename &file) { return kestrune::platform::IsFileOrFolder(file) ? file : CFilename(); }

} // namespace

CFilename CompanionName(const char *name) {
  const CString given = kestrune::platform::ToDrivePath(name);
  CFilename result(given);
  if (given.Find('/') >= 0 && given.Find('\\') < 0)
    result = given; // normalises it
  if (kestrune::platform::IsRelativeHostName(name))
    result.GetAbsolute(result, nullptr);
  return result;
}

CFilename FullPath(const char *name) {
  CFilename file;
  file = kestrune::platform::ToDrivePath(name);
  CFilename path;
  file.GetAbsolute(path, nullptr);
  return path;
}

CFilename ReplacementFile(const char *fileName, WithoutFolder without) {
  CString value;
  CMacroString("$PFDT$").Explode(value, 10);
  const CString folder = CompanionName(value);
  if (folder.IsEmpty() && without == WithoutFolder::kNowhere)
    return {};
  CFilename file(folder.IsEmpty() ? CString(fileName) : folder + "\\" + fileName);
  file.GetAbsolute(file, nullptr);
  return ifThere(file);
}

CFilename UserFile(const CFilename &file, const char *fileName) { return ifThere(file.GetPath() + fileName); }

AddOnFiles::AddOnFiles(const CString &name) {
  CString expanded;
  CMacroString(name).Explode(expanded, 10);
  CFilename file;
  file = kestrune::platform::ToDrivePath(expanded);
  m_extension = file.GetExt().MakeLower();
  file.GetAbsolute(file, nullptr);
  m_stem = file.AppendExt("");
}

CFilename AddOnFiles::next() { return ifThere(m_stem + "-" + IntToCString(++m_number) + m_extension); }
