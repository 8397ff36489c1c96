#pragma once

#include "kestrune/xml/xml_document.h"

/// The values for the user interface: element "UIInfo".
class KESTRUNE_API CKestruneUIInfo : public CXMLFolder {
public:
  CKestruneUIInfo();
  CKestruneUIInfo(const CKestruneUIInfo &rhs);
  ~CKestruneUIInfo() override;
  CKestruneUIInfo &operator=(const CKestruneUIInfo &rhs);

  void pushMembers() override;

  /// One text of any form, which the library does not look into.
  CXMLElement ClockSpeeds;

private:
  struct Members;
};

/// The user-interface data file, root "KestruneUI".
class KESTRUNE_API CKestruneUI : public CXMLTopLevelFolder {
public:
  CKestruneUI();
  CKestruneUI(const CKestruneUI &rhs);
  ~CKestruneUI() override;
  CKestruneUI &operator=(const CKestruneUI &rhs);

  /// Gives the header the values of this kind of file; `UIInfo` stays as it is.
  void Init() override;
  void pushMembers() override;

  using CXMLTopLevelFolder::LoadFromFile;
  /// Reads the document from the file `name`, which may hold macros, as the two-argument form without a base folder:
  /// S_OK or a positive remark, or its failures. What the file lacks keeps its text.
  virtual long LoadFromFile(const char *name);

  CKestruneUIInfo UIInfo;

private:
  struct Members;
};
