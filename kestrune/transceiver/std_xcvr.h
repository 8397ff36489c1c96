#pragma once

#include "kestrune/transceiver/transceivers.h"
#include "kestrune/xml/xml_document.h"

/// The transceiver file, root "StdXcvr". Each version reads the files of the others: what the file lacks keeps its
/// default, what the class does not know is ignored.
/// \sections{std_xcvr.cpp,CStdXcvr}
class KESTRUNE_API CStdXcvr : public CXMLTopLevelFolder {
public:
  CStdXcvr();                               ///< With the header of a new file and no items.
  CStdXcvr(const CStdXcvr &rhs);            ///< Copies header and all lists, not the file name.
  ~CStdXcvr() override;                     ///< Does not save.
  CStdXcvr &operator=(const CStdXcvr &rhs); ///< Copies header and all lists, not the file name.

  /// Sets the header values for this kind of file.
  void Init() override;
  void pushMembers() override;

  using CXMLTopLevelFolder::LoadFromFile;
  /// Reads the document from the file `name`, which may contain macros, like the two-argument form without a base
  /// folder. Returns S_OK or a positive remark, or its failures. KRX_E_DUPLICATE_KEY means that a name is in the list
  /// twice; everything else was read.
  virtual long LoadFromFile(const char *name);

  CTransceivers Transceivers; ///< The list.

private:
  struct Members;
};

/// The transceiver file of the second version. It reads and writes its own list; the first version's list stays empty.
/// \sections{std_xcvr.cpp,CStdXcvr2}
class KESTRUNE_API CStdXcvr2 : public CStdXcvr {
public:
  CStdXcvr2();                                ///< With the header of a new file and no items.
  CStdXcvr2(const CStdXcvr2 &rhs);            ///< Copies header and all lists, not the file name.
  ~CStdXcvr2() override;                      ///< Does not save.
  CStdXcvr2 &operator=(const CStdXcvr2 &rhs); ///< Copies header and all lists, not the file name.

  void pushMembers() override;

  CTransceivers2 Transceivers2; ///< The list.

private:
  struct Members;
};

/// The transceiver file of the third version; a load merges the user's own file into its list. It reads and writes its
/// own list; the lists of the older versions stay empty.
/// \sections{std_xcvr.cpp,CStdXcvr3}
class KESTRUNE_API CStdXcvr3 : public CStdXcvr2 {
public:
  CStdXcvr3();                                ///< With the header of a new file and no items.
  CStdXcvr3(const CStdXcvr3 &rhs);            ///< Copies header and all lists, not the file name.
  ~CStdXcvr3() override;                      ///< Does not save.
  CStdXcvr3 &operator=(const CStdXcvr3 &rhs); ///< Copies header and all lists, not the file name.

  void Init() override; ///< Sets the header of a new file; the items stay.
  void pushMembers() override;

  using CStdXcvr2::LoadFromFile;
  /// Reads the document from the file `name`. If that is called "UserXcvr", nothing else happens. Otherwise stdxcvr.xml
  /// in the folder that $PFDT$ names is read instead, if it exists; then the items of the UserXcvr.xml in the same
  /// folder whose name and `std_id` are both new are added to the end of the list. If items were added, the document
  /// counts as modified, and a save writes them all under the name of the first file.
  /// Returns the result of the user's file if there is one: a failure means that no item was added, and a success does
  /// not show whether the first file was read. Without one, returns the result of the first. Throws CKRXException*
  /// (text 101) if a `std_id` that has to be compared is not a number; the items added before it stay.
  long LoadFromFile(const char *name) override;

  CTransceivers3 Transceivers3; ///< The list.

private:
  struct Members;
};

namespace kestrune {

/// The files that `LoadFromFile(name)` of a CStdXcvr3 reads, in this order: the file of that name, or the one that
/// takes its place, followed by the user's own. Full paths in drive form; the first may not exist, and is empty if the
/// name leads to nothing.
KESTRUNE_API std::vector<CString> FilesOfTransceivers(const char *name);

} // namespace kestrune
