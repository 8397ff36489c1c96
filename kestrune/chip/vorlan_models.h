#pragma once

#include "kestrune/chip/vorlan_model.h"

/// The chip models of a file in format version 1. Adding compares the new item's name with the keys (KeyText) of the
/// items before it, not with their names, so several models may have the same name or the same key.
class KESTRUNE_API CVorlanModels : public CXMLCollectionFolder {
public:
  CVorlanModels();                                    ///< Without items.
  CVorlanModels(const CVorlanModels &rhs);            ///< Copies all items.
  ~CVorlanModels() override;                          ///< Destroys the items.
  CVorlanModels &operator=(const CVorlanModels &rhs); ///< Copies all items.

  void Init() override; ///< Sets the tags of the list and its items.
  /// \copydoc CXMLCollectionFolder::Load
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// Adds a model with that name and returns it; the collection owns it. Returns null when `name` is null, empty or the
  /// key of an item, case-insensitive.
  CVorlanModel *Add(const char *name);
  /// The item at `index`; throws kestrune::BadIndex outside the list. @{
  CVorlanModel *operator[](int index);
  const CVorlanModel *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CVorlanModel> begin();
  kestrune::ItemIterator<CVorlanModel> end();
  kestrune::ItemIterator<const CVorlanModel> begin() const;
  kestrune::ItemIterator<const CVorlanModel> end() const;
  ///@}
  /// The first item with that key, case-insensitive, or null. @{
  CVorlanModel *Find(const char *key);
  const CVorlanModel *Find(const char *key) const { return mutableOf(*this).Find(key); }
  ///@}
  /// The first item with that name, case-insensitive, or null. @{
  CVorlanModel *FindByName(const char *name);
  const CVorlanModel *FindByName(const char *name) const { return mutableOf(*this).FindByName(name); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};

/// The chip models of a file in format version 2.
class KESTRUNE_API CVorlanModels2 : public CVorlanModels {
public:
  CVorlanModels2();                                     ///< Without items.
  CVorlanModels2(const CVorlanModels2 &rhs);            ///< Copies all items.
  ~CVorlanModels2() override;                           ///< Destroys the items.
  CVorlanModels2 &operator=(const CVorlanModels2 &rhs); ///< Copies all items.

  void Init() override; ///< Sets the tags of the list and its items.
  /// \copydoc CXMLCollectionFolder::Load
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// \copydoc CVorlanModels::Add
  CVorlanModel2 *Add(const char *name);
  /// \copydoc CVorlanModels::operator[]
  /// @{
  CVorlanModel2 *operator[](int index);
  const CVorlanModel2 *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CVorlanModel2> begin();
  kestrune::ItemIterator<CVorlanModel2> end();
  kestrune::ItemIterator<const CVorlanModel2> begin() const;
  kestrune::ItemIterator<const CVorlanModel2> end() const;
  ///@}
  /// \copydoc CVorlanModels::Find
  /// @{
  CVorlanModel2 *Find(const char *key);
  const CVorlanModel2 *Find(const char *key) const { return mutableOf(*this).Find(key); }
  ///@}
  /// \copydoc CVorlanModels::FindByName
  /// @{
  CVorlanModel2 *FindByName(const char *name);
  const CVorlanModel2 *FindByName(const char *name) const { return mutableOf(*this).FindByName(name); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};

/// The chip models of a file in format version 3.
class KESTRUNE_API CVorlanModels3 : public CVorlanModels2 {
public:
  CVorlanModels3();                                     ///< Without items.
  CVorlanModels3(const CVorlanModels3 &rhs);            ///< Copies all items.
  ~CVorlanModels3() override;                           ///< Destroys the items.
  CVorlanModels3 &operator=(const CVorlanModels3 &rhs); ///< Copies all items.

  void Init() override; ///< Sets the tags of the list and its items.
  /// \copydoc CXMLCollectionFolder::Load
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// \copydoc CVorlanModels::Add
  CVorlanModel3 *Add(const char *name);
  /// \copydoc CVorlanModels::operator[]
  /// @{
  CVorlanModel3 *operator[](int index);
  const CVorlanModel3 *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CVorlanModel3> begin();
  kestrune::ItemIterator<CVorlanModel3> end();
  kestrune::ItemIterator<const CVorlanModel3> begin() const;
  kestrune::ItemIterator<const CVorlanModel3> end() const;
  ///@}
  /// \copydoc CVorlanModels::Find
  /// @{
  CVorlanModel3 *Find(const char *key);
  const CVorlanModel3 *Find(const char *key) const { return mutableOf(*this).Find(key); }
  ///@}
  /// \copydoc CVorlanModels::FindByName
  /// @{
  CVorlanModel3 *FindByName(const char *name);
  const CVorlanModel3 *FindByName(const char *name) const { return mutableOf(*this).FindByName(name); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};

/// The chip models of a file in format version 4.
class KESTRUNE_API CVorlanModels4 : public CVorlanModels3 {
public:
  CVorlanModels4();                                     ///< Without items.
  CVorlanModels4(const CVorlanModels4 &rhs);            ///< Copies all items.
  ~CVorlanModels4() override;                           ///< Destroys the items.
  CVorlanModels4 &operator=(const CVorlanModels4 &rhs); ///< Copies all items.

  void Init() override; ///< Sets the tags of the list and its items.
  /// \copydoc CXMLCollectionFolder::Load
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// \copydoc CVorlanModels::Add
  CVorlanModel4 *Add(const char *name);
  /// \copydoc CVorlanModels::operator[]
  /// @{
  CVorlanModel4 *operator[](int index);
  const CVorlanModel4 *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CVorlanModel4> begin();
  kestrune::ItemIterator<CVorlanModel4> end();
  kestrune::ItemIterator<const CVorlanModel4> begin() const;
  kestrune::ItemIterator<const CVorlanModel4> end() const;
  ///@}
  /// \copydoc CVorlanModels::Find
  /// @{
  CVorlanModel4 *Find(const char *key);
  const CVorlanModel4 *Find(const char *key) const { return mutableOf(*this).Find(key); }
  ///@}
  /// \copydoc CVorlanModels::FindByName
  /// @{
  CVorlanModel4 *FindByName(const char *name);
  const CVorlanModel4 *FindByName(const char *name) const { return mutableOf(*this).FindByName(name); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};
