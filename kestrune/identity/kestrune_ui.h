#pragma once

#include "kestrune/xml/xml_document.h"

/// The values for the user interface, element "UIInfo".
/// \members{kestrune_ui.cpp,CKestruneUIInfo}
class KESTRUNE_API CKestruneUIInfo : public CXMLFolder {
public:
  /// Every member starts with its default text; copying copies all members. @{
  CKestruneUIInfo();
  CKestruneUIInfo(const CKestruneUIInfo &rhs);
  ~CKestruneUIInfo() override;
  CKestruneUIInfo &operator=(const CKestruneUIInfo &rhs);
  ///@}

  void pushMembers() override;

  /// The clock speeds: text of any form, which the library does not interpret.
  CXMLElement ClockSpeeds;

private:
  struct Members;
};

/// The user-interface data file, root element "KestruneUI".
/// \members{kestrune_ui.cpp,CKestruneUI}
class KESTRUNE_API CKestruneUI : public CXMLTopLevelFolder {
public:
  /// Starts with the header of a new file; copying copies header and values, but not the remembered file name. @{
  CKestruneUI();
  CKestruneUI(const CKestruneUI &rhs);
  ~CKestruneUI() override;
  CKestruneUI &operator=(const CKestruneUI &rhs);
  ///@}

  /// Sets the header to the values for this kind of file; `UIInfo` is unchanged.
  void Init() override;
  void pushMembers() override;

  using CXMLTopLevelFolder::LoadFromFile;
  /// Same as the two-argument form without a base folder. `name` may contain macros. Returns S_OK, a positive remark,
  /// or a failure code of that form. What the file lacks keeps its text.
  virtual long LoadFromFile(const char *name);

  CKestruneUIInfo UIInfo; ///< The values.

private:
  struct Members;
};
