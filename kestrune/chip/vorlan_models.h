#pragma once

#include "kestrune/chip/vorlan_model.h"

/// The chip models of a file, as of format version 1. A new item's name is compared with the keys (KeyText) of the
/// items before it, not with their names: models of one name, or of one key, may stand side by side.
class KESTRUNE_API CVorlanModels : public CXMLCollectionFolder {
public:
  CVorlanModels();
  CVorlanModels(const CVorlanModels &rhs);
  ~CVorlanModels() override;
  CVorlanModels &operator=(const CVorlanModels &rhs);

  void Init() override;
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// Adds a model of that name; the item stays the collection's. Null when `name` is null, empty or the key of an item.
  CVorlanModel *Add(const char *name);
  /// The item at `index`; throws std::out_of_range outside the list.
  CVorlanModel *operator[](int index);
  /// The first item of that key, without regard to case, or null.
  CVorlanModel *Find(const char *key);
  /// The first item of that name, without regard to case, or null.
  CVorlanModel *FindByName(const char *name);

protected:
  CXMLFolder *NewFolder() override;
};

/// The same as of format version 2.
class KESTRUNE_API CVorlanModels2 : public CVorlanModels {
public:
  CVorlanModels2();
  CVorlanModels2(const CVorlanModels2 &rhs);
  ~CVorlanModels2() override;
  CVorlanModels2 &operator=(const CVorlanModels2 &rhs);

  void Init() override;
  long Load(MSXML::IXMLDOMElement *parent) override;

  CVorlanModel2 *Add(const char *name);
  CVorlanModel2 *operator[](int index);
  CVorlanModel2 *Find(const char *key);
  CVorlanModel2 *FindByName(const char *name);

protected:
  CXMLFolder *NewFolder() override;
};

/// The same as of format version 3.
class KESTRUNE_API CVorlanModels3 : public CVorlanModels2 {
public:
  CVorlanModels3();
  CVorlanModels3(const CVorlanModels3 &rhs);
  ~CVorlanModels3() override;
  CVorlanModels3 &operator=(const CVorlanModels3 &rhs);

  void Init() override;
  long Load(MSXML::IXMLDOMElement *parent) override;

  CVorlanModel3 *Add(const char *name);
  CVorlanModel3 *operator[](int index);
  CVorlanModel3 *Find(const char *key);
  CVorlanModel3 *FindByName(const char *name);

protected:
  CXMLFolder *NewFolder() override;
};

/// The same as of format version 4.
class KESTRUNE_API CVorlanModels4 : public CVorlanModels3 {
public:
  CVorlanModels4();
  CVorlanModels4(const CVorlanModels4 &rhs);
  ~CVorlanModels4() override;
  CVorlanModels4 &operator=(const CVorlanModels4 &rhs);

  void Init() override;
  long Load(MSXML::IXMLDOMElement *parent) override;

  CVorlanModel4 *Add(const char *name);
  CVorlanModel4 *operator[](int index);
  CVorlanModel4 *Find(const char *key);
  CVorlanModel4 *FindByName(const char *name);

protected:
  CXMLFolder *NewFolder() override;
};
