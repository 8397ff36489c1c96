#pragma once

#include "kestrune/xml/xml_collection.h"

/// The chip models that one chip model is link compatible with.
/// \members{link_compatible_models.cpp,CLinkCompatibleModel}
class KESTRUNE_API CLinkCompatibleModel : public CXMLFolder {
public:
  CLinkCompatibleModel();                                           ///< Every member has its default text.
  CLinkCompatibleModel(const CLinkCompatibleModel &rhs);            ///< Copies all members.
  ~CLinkCompatibleModel() override;                                 ///< Does not save.
  CLinkCompatibleModel &operator=(const CLinkCompatibleModel &rhs); ///< Copies all members.

  void Init() override; ///< Sets all tags, and the texts that have a default in the table.
  /// The text of "Name".
  CString Key() const override;
  void pushMembers() override;

  /// The number of the model, in decimal text.
  CXMLAttribute Name;
  /// The numbers of the other models, in decimal text, separated by `;`, `,` or a line feed. Blanks are not trimmed, so
  /// a number with a blank next to it matches no model.
  CXMLElement LinkCompatibleList;

private:
  struct Members;
};

/// The table of link compatible models in a chip data file. The relation has a direction: it is mutual only if each of
/// two models lists the other.
class KESTRUNE_API CLinkCompatibleModels : public CXMLCollectionFolder {
public:
  CLinkCompatibleModels();                                            ///< Without items.
  CLinkCompatibleModels(const CLinkCompatibleModels &rhs);            ///< Copies all items.
  ~CLinkCompatibleModels() override;                                  ///< Destroys the items.
  CLinkCompatibleModels &operator=(const CLinkCompatibleModels &rhs); ///< Copies all items.

  void Init() override; ///< Sets the tags of the list and its items.
  /// \copydoc CXMLCollectionFolder::Load
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// Adds a model and returns it; the collection owns it. Returns null when `name` is null, empty or already present.
  CLinkCompatibleModel *Add(const char *name);
  /// The item at `index`; throws kestrune::BadIndex outside the list. @{
  CLinkCompatibleModel *operator[](int index);
  const CLinkCompatibleModel *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CLinkCompatibleModel> begin();
  kestrune::ItemIterator<CLinkCompatibleModel> end();
  kestrune::ItemIterator<const CLinkCompatibleModel> begin() const;
  kestrune::ItemIterator<const CLinkCompatibleModel> end() const;
  ///@}
  /// The first item with that name, case-insensitive, or null. @{
  CLinkCompatibleModel *Find(const char *key);
  const CLinkCompatibleModel *Find(const char *key) const { return mutableOf(*this).Find(key); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};
