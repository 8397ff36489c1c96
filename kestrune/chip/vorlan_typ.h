#pragma once

#include "kestrune/chip/clocking_schemes.h"
#include "kestrune/chip/link_compatible_models.h"
#include "kestrune/chip/vorlan_models.h"
#include "kestrune/xml/xml_document.h"

// The chip data file: chip models, the table of link compatible models, and clocking schemes. All four versions read
// the files of each other: what a file lacks keeps its default, what a version does not know is passed over, and is
// gone after saving. A document reads and writes the newest of its sets of collections; the older ones stay as they
// are.

/// The chip data document of format version 1.
class KESTRUNE_API CVorlanTyp : public CXMLTopLevelFolder {
public:
  CVorlanTyp();
  CVorlanTyp(const CVorlanTyp &rhs);
  ~CVorlanTyp() override;
  /// Copies tag, text, header and all collections, those of the older versions too; the remembered file name stays.
  CVorlanTyp &operator=(const CVorlanTyp &rhs);

  void Init() override;
  void pushMembers() override;

  /// With two arguments: loads that file and nothing else.
  using CXMLTopLevelFolder::LoadFromFile;
  /// Loads the file, and then adds the chip models of its add-on files: of x.xml these are x-1.xml, x-2.xml and so on
  /// beside it, up to the first that is not there. They may have add-ons of their own. Of an add-on nothing else is
  /// taken, and no model that Add refuses. `fileName` may be relative and may hold macros; null or empty stands for the
  /// remembered name, whose add-ons are not looked for.
  /// Returns the result of the last add-on file, or that of the file itself where there is none; a failure of the file
  /// itself at once. The codes are those of LoadFromFile with two arguments. After the failure of an add-on, the models
  /// of the file and of the other add-ons are in the document. An added model sets the modified flag. An exception of
  /// an overridden Load passes through.
  virtual long LoadFromFile(const char *fileName);

  CVorlanModels VorlanModels;

private:
  struct Members;
};

/// The chip data document of format version 2.
class KESTRUNE_API CVorlanTyp2 : public CVorlanTyp {
public:
  CVorlanTyp2();
  CVorlanTyp2(const CVorlanTyp2 &rhs);
  ~CVorlanTyp2() override;
  CVorlanTyp2 &operator=(const CVorlanTyp2 &rhs);

  void Init() override;
  void pushMembers() override;

  using CXMLTopLevelFolder::LoadFromFile;
  long LoadFromFile(const char *fileName) override;

  CVorlanModels2 VorlanModels2;
  CLinkCompatibleModels LinkCompatibleModels2;

private:
  struct Members;
};

/// The chip data document of format version 3.
class KESTRUNE_API CVorlanTyp3 : public CVorlanTyp2 {
public:
  CVorlanTyp3();
  CVorlanTyp3(const CVorlanTyp3 &rhs);
  ~CVorlanTyp3() override;
  CVorlanTyp3 &operator=(const CVorlanTyp3 &rhs);

  void Init() override;
  void pushMembers() override;

  using CXMLTopLevelFolder::LoadFromFile;
  long LoadFromFile(const char *fileName) override;

  CVorlanModels3 VorlanModels3;
  CLinkCompatibleModels LinkCompatibleModels3;

private:
  struct Members;
};

/// The chip data document of format version 4.
class KESTRUNE_API CVorlanTyp4 : public CVorlanTyp3 {
public:
  CVorlanTyp4();
  CVorlanTyp4(const CVorlanTyp4 &rhs);
  ~CVorlanTyp4() override;
  CVorlanTyp4 &operator=(const CVorlanTyp4 &rhs);

  void Init() override;
  void pushMembers() override;

  using CXMLTopLevelFolder::LoadFromFile;
  /// As in the older versions, with three differences. A file vorlan.xml in the folder $PFDT$ (a macro or an
  /// environment variable), or in the current directory where $PFDT$ has no value, takes the place of `fileName`.
  /// Add-ons have no add-ons of their own. One document reads all add-ons, so that the models of an add-on are offered
  /// again for the next one if that has no element VorlanModels.
  long LoadFromFile(const char *fileName) override;

  CVorlanModels4 VorlanModels4;
  CLinkCompatibleModels LinkCompatibleModels4;
  CClockingSchemes ClockingSchemes;

private:
  struct Members;
};
