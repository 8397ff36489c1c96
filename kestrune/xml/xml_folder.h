#pragma once

#include "kestrune/xml/xml_persistent.h"

#include <span>
#include <vector>

class CXMLFolder;

namespace kestrune {
struct MemberRow;
struct MemberView;
/// What the table of a record says of its members.
using MemberTable = std::span<const MemberRow>;
std::vector<MemberView> MembersOf(CXMLFolder &folder);
} // namespace kestrune

/// An XML element with a list of members, each a value or a further folder. A data class derives from it, holds its
/// members as fields, names them in `Init` and lists them, in the order of the file, in `pushMembers`; loading, saving
/// and the tracking of changes are then done here. The folder's own text serves as its name and is written to no file.
class KESTRUNE_API CXMLFolder : public CXMLPersistent {
public:
  CXMLFolder();
  CXMLFolder(const CXMLFolder &rhs);
  ~CXMLFolder() override;

  /// Copies tag and text and rebuilds the member list. The remembered file name becomes empty.
  CXMLFolder &operator=(const CXMLFolder &rhs);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual" // hidden by each copying operator=, as is meant
  CXMLFolder &operator=(const char *text) override;
#pragma GCC diagnostic pop
  /// Orders by `Key`, with regard to case.
  bool operator<(const CXMLFolder &rhs) const;

  using CXMLPersistent::Init;
  /// Gives the members their tags and defaults and rebuilds the list; a folder without members does nothing.
  void Init() override;
  /// Sets or clears the flag of the folder and of everything below it.
  void PutModified(unsigned char modified) override;
  bool isFolder() override;

  /// Writes the folder's element, with all members, into `parent`, which lies `level` deep. Throws _com_error.
  IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level) override;
  /// Reads the members from `parent`, the folder's own element. Every member gets its chance: the first failure is
  /// returned, or else the result of the last member that was read. Members that the file lacks keep what they held.
  /// Throws _com_error when the tree fails.
  long Load(MSXML::IXMLDOMElement *parent) override;

  using CXMLPersistent::GetModified;
  /// Non-zero when the folder or anything below it has changed; the flags of the folders on the way are then set too.
  virtual unsigned char GetModified();
  /// The key of the folder inside a collection: here its text.
  virtual CString Key() const;
  /// Rebuilds the member list, in the order of the file.
  virtual void pushMembers();

  /// Writes the folder to a file. `name` may be relative and may hold macros; null or empty stands for the remembered
  /// name, and any other is remembered, also when the call fails. `base` is the folder in which a relative name is
  /// looked for, or null. Missing directories are made. Without `overwrite` an existing file is left alone. Returns
  /// S_OK, or KRX_E_SAVE_NOT_NAMED, KRX_E_COM_CREATE, KRX_E_WRITE_PROTECTED or KRX_E_SAVE_FAILED: then the modified
  /// flags stay, what the call made is gone, and an old file is as it was, unless the disk failed while it was written:
  /// then the old bytes are written back, as far as the disk takes them. It is written in place;
  /// kestrune::SaveReplacing also outlasts a power cut.
  virtual long SaveToFile(const char *name, const char *base, bool overwrite);
  /// Reads the folder from a file, named as for SaveToFile. Returns S_OK or a positive remark, or a failure:
  /// KRX_E_LOAD_NOT_NAMED or KRX_E_FILE_NOT_FOUND (nothing has changed but the remembered name), or what
  /// LoadFromXMLFile returns, after which the folder counts as unmodified. An exception of an overridden Load passes
  /// through.
  virtual long LoadFromFile(const char *name, const char *base);

  /// Reads the folder from the file at a full path. KRX_E_COM_CREATE, KRX_E_UNEXPECTED_DATA and KRX_E_WRONG_ROOT_TAG
  /// leave the members as they were; KRX_E_LOAD_EXCEPTION, and the failures and remarks of Load, leave what was read.
  long LoadFromXMLFile(const char *path);

protected:
  /// Writes the folder to the file at a full path; its results are told at SaveToFile.
  long SaveToXMLFile(const char *path, bool overwrite);

  /// Makes the folder's element in `parent`, with all members but not yet the place of the end tag.
  IXMLDOMElementPtr saveMembers(const IXMLDOMElementPtr &parent, int level);

  /// The members, in file order: fields of this object, which the list does not own.
  std::vector<CXMLPersistent *> m_members;
  /// The name under which the folder was last loaded or saved, as it was given.
  CString m_fileName;

private:
  template <class, class, class>
  friend struct RecordMembers;
  friend std::vector<kestrune::MemberView> kestrune::MembersOf(CXMLFolder &folder);

  /// The table that the list was last built from; null for a class that has none.
  const kestrune::MemberTable *m_table = nullptr;
};
