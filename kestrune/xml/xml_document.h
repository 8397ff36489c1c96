#pragma once

#include "kestrune/xml/xml_folder.h"

/// The header of every data file: element "Contents". Numbers are decimal text.
class KESTRUNE_API CXMLContents : public CXMLFolder {
public:
  CXMLContents();
  CXMLContents(const CXMLContents &rhs);
  ~CXMLContents() override;
  CXMLContents &operator=(const CXMLContents &rhs);

  /// Gives the members their defaults: the numbers "0", the creation date the present time.
  void Init() override;
  void pushMembers() override;

  /// "UpgradeStatus" as a number, by the rules of C for its base; an empty text is 0. Throws CKRXException* (text 101)
  /// when anything is left behind the number.
  unsigned int getUpgradeStatus();
  /// Sets "UpgradeStatus". A value above 2147483647 is written as a negative number, which getUpgradeStatus turns back.
  void setUpgradeStatus(unsigned int status);

  CXMLAttribute MajorVersion;
  CXMLAttribute MinorVersion;
  /// Seconds since 1970, UTC: the low 32 bits, signed. Set on construction, not on saving.
  CXMLAttribute CreationDate;
  CXMLAttribute Format;
  CXMLAttribute Content;
  CXMLElement FileDescription;
  CXMLElement UpgradeStatus;

private:
  struct Members;
};

/// Base of every document: a root element with the header as its first child. A document class adds its sections as
/// fields, lists them behind `Contents` in `pushMembers`, and offers a `LoadFromFile` of its own.
class KESTRUNE_API CXMLTopLevelFolder : public CXMLFolder {
public:
  CXMLTopLevelFolder();
  CXMLTopLevelFolder(const CXMLTopLevelFolder &rhs);
  ~CXMLTopLevelFolder() override;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual" // hidden by each copying operator=, as is meant
  CXMLTopLevelFolder &operator=(const char *text) override;
#pragma GCC diagnostic pop

  void pushMembers() override;
  /// Writes the members straight into `parent`, the root element, and returns it. Throws _com_error.
  IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level) override;
  long Load(MSXML::IXMLDOMElement *parent) override;
  /// Copies tag, text and header; the remembered file name stays.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual" // hidden by each copying operator=, as is meant
  virtual CXMLTopLevelFolder &operator=(const CXMLTopLevelFolder &rhs);
#pragma GCC diagnostic pop

  CXMLContents Contents;
};
