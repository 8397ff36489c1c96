#pragma once

#include "kestrune/chip/clocking_schemes.h"
#include "kestrune/chip/link_compatible_models.h"
#include "kestrune/chip/vorlan_models.h"
#include "kestrune/xml/xml_document.h"

/// \file
/// The chip data file: chip models, the table of link compatible models, and clocking schemes. All four versions read
/// each other's files: what a file lacks keeps its default, and what a version does not know is ignored and lost on
/// saving. A document reads and writes the newest of its sets of collections; the older sets stay as they are.

/// The chip data document of format version 1.
/// \sections{vorlan_typ.cpp,CVorlanTyp}
class KESTRUNE_API CVorlanTyp : public CXMLTopLevelFolder {
public:
  CVorlanTyp();                                 ///< With the header of a new file and no items.
  CVorlanTyp(const CVorlanTyp &rhs);            ///< Copies header and all lists, not the file name.
  ~CVorlanTyp() override;                       ///< Does not save.
  CVorlanTyp &operator=(const CVorlanTyp &rhs); ///< Copies header and all lists, not the file name.

  void Init() override; ///< Sets the header of a new file; the items stay.
  void pushMembers() override;

  /// With two arguments: loads only that file.
  using CXMLTopLevelFolder::LoadFromFile;
  /// Loads the file, then adds the chip models of its add-on files: for x.xml these are x-1.xml, x-2.xml and so on in
  /// the same folder, up to the first that does not exist. Add-ons may have add-ons of their own. Only the models of an
  /// add-on are used, and only those that Add accepts. `fileName` may be relative and may contain macros; null or empty
  /// means the remembered name, and then no add-ons are loaded.
  /// Returns the result of the last add-on file, or that of the file itself if there is none; a failure of the file
  /// itself is returned at once. The codes are those of LoadFromFile with two arguments. If an add-on fails, the
  /// document still has the models of the file and of the other add-ons. An added model sets the modified flag. An
  /// exception thrown by an overridden Load passes through.
  virtual long LoadFromFile(const char *fileName);

  CVorlanModels VorlanModels; ///< The chip models.

private:
  struct Members;
};

/// The chip data document of format version 2.
/// \sections{vorlan_typ.cpp,CVorlanTyp2}
class KESTRUNE_API CVorlanTyp2 : public CVorlanTyp {
public:
  CVorlanTyp2();                                  ///< With the header of a new file and no items.
  CVorlanTyp2(const CVorlanTyp2 &rhs);            ///< Copies header and all lists, not the file name.
  ~CVorlanTyp2() override;                        ///< Does not save.
  CVorlanTyp2 &operator=(const CVorlanTyp2 &rhs); ///< Copies header and all lists, not the file name.

  void Init() override; ///< Sets the header of a new file; the items stay.
  void pushMembers() override;

  using CXMLTopLevelFolder::LoadFromFile;
  long LoadFromFile(const char *fileName) override;

  CVorlanModels2 VorlanModels2;                ///< The chip models.
  CLinkCompatibleModels LinkCompatibleModels2; ///< The table of link compatible models.

private:
  struct Members;
};

/// The chip data document of format version 3.
/// \sections{vorlan_typ.cpp,CVorlanTyp3}
class KESTRUNE_API CVorlanTyp3 : public CVorlanTyp2 {
public:
  CVorlanTyp3();                                  ///< With the header of a new file and no items.
  CVorlanTyp3(const CVorlanTyp3 &rhs);            ///< Copies header and all lists, not the file name.
  ~CVorlanTyp3() override;                        ///< Does not save.
  CVorlanTyp3 &operator=(const CVorlanTyp3 &rhs); ///< Copies header and all lists, not the file name.

  void Init() override; ///< Sets the header of a new file; the items stay.
  void pushMembers() override;

  using CXMLTopLevelFolder::LoadFromFile;
  long LoadFromFile(const char *fileName) override;

  CVorlanModels3 VorlanModels3;                ///< The chip models.
  CLinkCompatibleModels LinkCompatibleModels3; ///< The table of link compatible models.

private:
  struct Members;
};

/// The chip data document of format version 4.
/// \sections{vorlan_typ.cpp,CVorlanTyp4}
class KESTRUNE_API CVorlanTyp4 : public CVorlanTyp3 {
public:
  CVorlanTyp4();                                  ///< With the header of a new file and no items.
  CVorlanTyp4(const CVorlanTyp4 &rhs);            ///< Copies header and all lists, not the file name.
  ~CVorlanTyp4() override;                        ///< Does not save.
  CVorlanTyp4 &operator=(const CVorlanTyp4 &rhs); ///< Copies header and all lists, not the file name.

  void Init() override; ///< Sets the header of a new file; the items stay.
  void pushMembers() override;

  using CXMLTopLevelFolder::LoadFromFile;
  /// As in the older versions, with three differences. A file vorlan.xml in the folder $PFDT$ (a macro or an
  /// environment variable), or in the current directory if $PFDT$ has no value, is loaded instead of `fileName`.
  /// Add-ons do not have add-ons of their own. One document reads all add-ons, so the models of an add-on are offered
  /// again for the next one if that has no element VorlanModels.
  long LoadFromFile(const char *fileName) override;

  CVorlanModels4 VorlanModels4;                ///< The chip models.
  CLinkCompatibleModels LinkCompatibleModels4; ///< The table of link compatible models.
  CClockingSchemes ClockingSchemes;            ///< The clocking schemes that the models name.

private:
  struct Members;
};

namespace kestrune {

/// The files that `LoadFromFile(name)` of a CVorlanTyp4 reads, in this order: the file of that name, or the one that
/// takes its place, followed by its add-ons. Full paths in drive form; the first may not exist, and is empty if the
/// name leads to nothing.
KESTRUNE_API std::vector<CString> FilesOfChipData(const char *name);

} // namespace kestrune
