#pragma once

#include "kestrune/xml/xml_document.h"

/// The values for the user interface, element "UIInfo".
/// \members{kestrune_ui.cpp,CKestruneUIInfo}
class KESTRUNE_API CKestruneUIInfo : public CXMLFolder {
public:
  CKestruneUIInfo();                                      ///< Every member has its default text.
  CKestruneUIInfo(const CKestruneUIInfo &rhs);            ///< Copies all members.
  ~CKestruneUIInfo() override;                            ///< Does not save.
  CKestruneUIInfo &operator=(const CKestruneUIInfo &rhs); ///< Copies all members.

  void pushMembers() override;

  /// The clock speeds: text of any form, which the library does not interpret.
  CXMLElement ClockSpeeds;

private:
  struct Members;
};

/// The user-interface data file, root element "KestruneUI".
/// \sections{kestrune_ui.cpp,CKestruneUI}
class KESTRUNE_API CKestruneUI : public CXMLTopLevelFolder {
public:
  CKestruneUI();                                  ///< With the header of a new file.
  CKestruneUI(const CKestruneUI &rhs);            ///< Copies header and values, not the file name.
  ~CKestruneUI() override;                        ///< Does not save.
  CKestruneUI &operator=(const CKestruneUI &rhs); ///< Copies header and values, not the file name.

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
