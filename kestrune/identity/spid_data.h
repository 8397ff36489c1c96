#pragma once

#include "kestrune/identity/device_classes.h"
#include "kestrune/identity/name_number_pairs.h"
#include "kestrune/xml/xml_document.h"

/// The identity data file, root element "SPIDData": manufacturers, device classes, device subclasses and channel types,
/// each with names and numbers.
/// \sections{spid_data.cpp,CSpidData}
class KESTRUNE_API CSpidData : public CXMLTopLevelFolder {
public:
  CSpidData();                                ///< With the header of a new file and no items.
  CSpidData(const CSpidData &rhs);            ///< Copies header and all lists, not the file name.
  ~CSpidData() override;                      ///< Does not save.
  CSpidData &operator=(const CSpidData &rhs); ///< Copies header and all lists, not the file name.

  void pushMembers() override;

  using CXMLTopLevelFolder::LoadFromFile;
  /// Same as the two-argument form without a base folder. `name` may contain macros. Returns S_OK, a positive remark,
  /// or a failure code of that form. KRX_E_DUPLICATE_KEY means that a list contains a name twice; everything else was
  /// read. A list that the file lacks keeps its items.
  virtual long LoadFromFile(const char *name);

  CXMLPairCollection ManufacturerIDs;  ///< The manufacturers.
  CTKDeviceClasses DeviceClasses;      ///< The device classes.
  CXMLPairCollection DeviceSubClasses; ///< The device subclasses.
  CXMLPairCollection ChannelTypes;     ///< The channel types.

private:
  struct Members;
};

/// The identity data file with device classes of the second version. It reads and writes its own four lists; the
/// inherited ones stay empty.
/// \sections{spid_data.cpp,CSpidData2}
class KESTRUNE_API CSpidData2 : public CSpidData {
public:
  CSpidData2();                                 ///< With the header of a new file and no items.
  CSpidData2(const CSpidData2 &rhs);            ///< Copies header and all lists, not the file name.
  ~CSpidData2() override;                       ///< Does not save.
  CSpidData2 &operator=(const CSpidData2 &rhs); ///< Copies header and all lists, not the file name.

  void pushMembers() override;

  CXMLPairCollection ManufacturerIDs2;  ///< The manufacturers.
  CTKDeviceClasses2 DeviceClasses2;     ///< The device classes, of the second version.
  CXMLPairCollection DeviceSubClasses2; ///< The device subclasses.
  CXMLPairCollection ChannelTypes2;     ///< The channel types.

private:
  struct Members;
};
