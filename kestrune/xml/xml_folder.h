#pragma once

#include "kestrune/xml/member_list.h"
#include "kestrune/xml/xml_persistent.h"

namespace kestrune {
struct MemberView;
class Reporting;
std::vector<MemberView> MembersOf(CXMLFolder &folder);
} // namespace kestrune

/// An XML element with a list of members; each is a value or another folder. A data class derives from it, holds its
/// members as fields, gives them their tags in `Init` and lists them, in file order, in `pushMembers`. This class then
/// does the loading, the saving and the tracking of changes. The folder's own text serves as its name and is never
/// written to a file.
class KESTRUNE_API CXMLFolder : public CXMLPersistent {
public:
  CXMLFolder();                      ///< The default text and the default tag, without members.
  CXMLFolder(const CXMLFolder &rhs); ///< Copies as the assignment does.
  ~CXMLFolder() override;            ///< Does not save.

  /// Copies tag and text and rebuilds the member list. The remembered file name becomes empty.
  CXMLFolder &operator=(const CXMLFolder &rhs);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual" // each copying operator= hides it on purpose
  CXMLFolder &operator=(const char *text) override;
#pragma GCC diagnostic pop
  /// Orders by `Key`, case-sensitive.
  bool operator<(const CXMLFolder &rhs) const;
  /// Not there: each would compare nothing but the names of the two folders. Compare keys, or members. @{
  friend bool operator==(const CXMLFolder &, const CXMLFolder &) = delete;
  friend std::strong_ordering operator<=>(const CXMLFolder &, const CXMLFolder &) = delete;
  ///@}

  using CXMLPersistent::Init;
  /// Sets the tags and defaults of the members and rebuilds the list; does nothing if the folder has no members.
  void Init() override;
  /// Sets or clears the modified flag of the folder and of everything in it.
  void PutModified(unsigned char modified) override;
  bool isFolder() override;

  /// Writes the folder's element, with all members, into `parent`, which is `level` deep. Throws _com_error.
  IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level) override;
  /// Reads the members from `parent`, the folder's own element. A failure does not stop the other members: returns the
  /// first failure, or else the result of the last member that was read. Members that the file lacks keep their values.
  /// Throws _com_error if the tree fails.
  long Load(MSXML::IXMLDOMElement *parent) override;

  using CXMLPersistent::GetModified;
  /// Non-zero if the folder or anything in it has changed. Also sets the flags of the folders that contain the first
  /// change found.
  virtual unsigned char GetModified();
  /// The key of the folder in a collection: here its text.
  virtual CString Key() const;
  /// Rebuilds the member list, in file order.
  virtual void pushMembers();

  /// Writes the folder to a file. `name` may be relative and may contain macros. Null or empty means the remembered
  /// name; any other name is remembered, even if the call fails. A relative name is resolved in the folder `base`,
  /// which may be null. Missing directories are created. Without `overwrite` an existing file is left alone.
  /// Returns S_OK, or KRX_E_SAVE_NOT_NAMED, KRX_E_COM_CREATE, KRX_E_WRITE_PROTECTED or KRX_E_SAVE_FAILED. After a
  /// failure the modified flags are unchanged, what the call created is removed, and an existing file is unchanged,
  /// unless the disk failed during the write: then the old bytes are written back as far as the disk allows. The file
  /// is written in place; kestrune::SaveReplacing also survives a power cut. kestrune::ReportOf says what failed.
  virtual long SaveToFile(const char *name, const char *base, bool overwrite);
  /// Reads the folder from a file; `name` and `base` are as for SaveToFile. Returns S_OK or a positive remark, or a
  /// failure: KRX_E_LOAD_NOT_NAMED or KRX_E_FILE_NOT_FOUND (nothing has changed except the remembered name), or what
  /// LoadFromXMLFile returns; after that call the folder counts as unmodified, even if it failed. An exception thrown
  /// by an overridden Load passes through. kestrune::ReportOf says what failed, in which file and where.
  virtual long LoadFromFile(const char *name, const char *base);

  /// Reads the folder from the file at a full path. KRX_E_COM_CREATE, KRX_E_UNEXPECTED_DATA and KRX_E_WRONG_ROOT_TAG
  /// leave the members unchanged; after KRX_E_LOAD_EXCEPTION, or a failure or remark of Load, they have what was read.
  long LoadFromXMLFile(const char *path);

private:
  bool m_hasReport = false; // in the room behind the flag of the base: the members stay where they were

protected:
  /// Writes the folder to the file at a full path. The results are described at SaveToFile.
  long SaveToXMLFile(const char *path, bool overwrite);

  /// Creates the folder's element in `parent`, with all members, but without the indentation of the end tag.
  IXMLDOMElementPtr saveMembers(const IXMLDOMElementPtr &parent, int level);
  /// Sets or clears the flags of the members.
  void putMembersModified(unsigned char modified);

  /// A const object for the operations that change nothing, but are not const themselves.
  template <class Folder>
  static Folder &mutableOf(const Folder &folder) {
    return const_cast<Folder &>(folder);
  }

  /// The members, in file order. They are fields of this object; the list does not own them.
  kestrune::MemberList m_members{*this};
  /// The file name of the last load or save, as it was given.
  CString m_fileName;

private:
  template <class, class, class>
  friend struct RecordMembers;
  friend std::vector<kestrune::MemberView> kestrune::MembersOf(CXMLFolder &folder);
  friend class kestrune::Reporting; ///< Keeps the reports.
};
