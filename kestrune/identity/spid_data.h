#pragma once

#include "kestrune/identity/device_classes.h"
#include "kestrune/identity/name_number_pairs.h"
#include "kestrune/xml/xml_document.h"

/// The identity data file, root element "SPIDData": manufacturers, device classes, device subclasses and channel types,
/// each with names and numbers.
/// \members{spid_data.cpp,CSpidData}
class KESTRUNE_API CSpidData : public CXMLTopLevelFolder {
public:
  /// Starts with the header of a new file and no items; copying copies the header and all collections, those of the
  /// older versions too, but not the remembered file name. @{
  CSpidData();
  CSpidData(const CSpidData &rhs);
  ~CSpidData() override;
  CSpidData &operator=(const CSpidData &rhs);
  ///@}

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
/// \members{spid_data.cpp,CSpidData2}
class KESTRUNE_API CSpidData2 : public CSpidData {
public:
  /// Starts with the header of a new file and no items; copying copies the header and all collections, those of the
  /// older versions too, but not the remembered file name. @{
  CSpidData2();
  CSpidData2(const CSpidData2 &rhs);
  ~CSpidData2() override;
  CSpidData2 &operator=(const CSpidData2 &rhs);
  ///@}

  void pushMembers() override;

  CXMLPairCollection ManufacturerIDs2;  ///< The manufacturers.
  CTKDeviceClasses2 DeviceClasses2;     ///< The device classes, of the second version.
  CXMLPairCollection DeviceSubClasses2; ///< The device subclasses.
  CXMLPairCollection ChannelTypes2;     ///< The channel types.

private:
  struct Members;
};
