#pragma once

#include "kestrune/xml/xml_folder.h"

/// The header of every data file, element "Contents". Numbers are decimal text.
/// \members{xml_document.cpp,CXMLContents}
class KESTRUNE_API CXMLContents : public CXMLFolder {
public:
  CXMLContents();                                   ///< With the defaults and the current time.
  CXMLContents(const CXMLContents &rhs);            ///< Copies all members, the creation date too.
  ~CXMLContents() override;                         ///< Does not save.
  CXMLContents &operator=(const CXMLContents &rhs); ///< Copies all members, the creation date too.

  /// Sets all members to their defaults: the numbers to "0", the creation date to the current time.
  void Init() override;
  void pushMembers() override;

  /// "UpgradeStatus" as a number: decimal, hexadecimal with 0x, or octal with a leading 0; an empty text is 0. Throws
  /// CKRXException* (text 101) when anything is left after the number.
  unsigned int getUpgradeStatus();
  /// Sets "UpgradeStatus". A value above 2147483647 is stored as a negative number, which getUpgradeStatus converts
  /// back.
  void setUpgradeStatus(unsigned int status);

  CXMLAttribute MajorVersion; ///< The major version of the file; the document class sets it.
  CXMLAttribute MinorVersion; ///< The minor version of the file; the document class sets it.
  /// Seconds since 1970, UTC: the low 32 bits, signed. Set on construction, not on saving.
  CXMLAttribute CreationDate;
  CXMLAttribute Format;        ///< The number of the format; the document class sets it.
  CXMLAttribute Content;       ///< The number of the kind of content; the document class sets it.
  CXMLElement FileDescription; ///< What the file is, a text of any form.
  CXMLElement UpgradeStatus;   ///< A number, see getUpgradeStatus.

private:
  struct Members;
};

/// Base of every document: a root element with the header as its first child. A document class has its sections as
/// fields, lists them after `Contents` in `pushMembers`, and has its own `LoadFromFile`.
class KESTRUNE_API CXMLTopLevelFolder : public CXMLFolder {
public:
  CXMLTopLevelFolder();                              ///< With the header of a new file and no sections.
  CXMLTopLevelFolder(const CXMLTopLevelFolder &rhs); ///< Copies tag, text and header.
  ~CXMLTopLevelFolder() override;                    ///< Does not save.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual" // every copying operator= hides it, as intended
  CXMLTopLevelFolder &operator=(const char *text) override;
#pragma GCC diagnostic pop

  void pushMembers() override;
  /// Writes the members directly into `parent`, the root element, and returns it. Throws _com_error.
  IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level) override;
  /// \copydoc CXMLFolder::Load
  long Load(MSXML::IXMLDOMElement *parent) override;
  /// Copies tag, text and header; keeps the remembered file name.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual" // every copying operator= hides it, as intended
  virtual CXMLTopLevelFolder &operator=(const CXMLTopLevelFolder &rhs);
#pragma GCC diagnostic pop

  CXMLContents Contents; ///< The header.
};
