#pragma once

#include "kestrune/transceiver/transceivers.h"
#include "kestrune/xml/xml_document.h"

/// The transceiver file, root "StdXcvr". Each version reads the files of the others: what the file lacks keeps its
/// default, what the class does not know is left out.
class KESTRUNE_API CStdXcvr : public CXMLTopLevelFolder {
public:
  CStdXcvr();
  CStdXcvr(const CStdXcvr &rhs);
  ~CStdXcvr() override;
  CStdXcvr &operator=(const CStdXcvr &rhs);

  /// Gives the header the values of this kind of file.
  void Init() override;
  void pushMembers() override;

  using CXMLTopLevelFolder::LoadFromFile;
  /// Reads the document from the file `name`, which may hold macros, as the two-argument form without a base folder:
  /// S_OK or a positive remark, or its failures. KRX_E_DUPLICATE_KEY means that the list names something twice; all
  /// else was read.
  virtual long LoadFromFile(const char *name);

  CTransceivers Transceivers;

private:
  struct Members;
};

/// The file with transceivers of the second version. It reads and writes its own list; that of the first stays empty.
class KESTRUNE_API CStdXcvr2 : public CStdXcvr {
public:
  CStdXcvr2();
  CStdXcvr2(const CStdXcvr2 &rhs);
  ~CStdXcvr2() override;
  CStdXcvr2 &operator=(const CStdXcvr2 &rhs);

  void pushMembers() override;

  CTransceivers2 Transceivers2;

private:
  struct Members;
};

/// The file with transceivers of the third version, into whose list a load merges the user's own file. It reads and
/// writes its own list; those of the older versions stay empty.
class KESTRUNE_API CStdXcvr3 : public CStdXcvr2 {
public:
  CStdXcvr3();
  CStdXcvr3(const CStdXcvr3 &rhs);
  ~CStdXcvr3() override;
  CStdXcvr3 &operator=(const CStdXcvr3 &rhs);

  void Init() override;
  void pushMembers() override;

  using CStdXcvr2::LoadFromFile;
  /// Reads the document from the file `name`, or from stdxcvr.xml in the folder that $PFDT$ names, if there is one.
  /// Then, unless the file is called "UserXcvr" itself, adds to the end of the list those items of the UserXcvr.xml
  /// beside it whose name and `std_id` are both new. The document then counts as modified if items were added, and is
  /// saved, all in one, under the name of the first file.
  /// Returns the result of the user's file where there is one: a failure means that no item was added, a success does
  /// not tell whether the first file was read. Without one, the result of the first. Throws CKRXException* (text 101)
  /// when a `std_id` that has to be compared is no number; the items added before it stay.
  long LoadFromFile(const char *name) override;

  CTransceivers3 Transceivers3;

private:
  struct Members;
};
