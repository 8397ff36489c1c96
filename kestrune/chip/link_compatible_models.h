#pragma once

#include "kestrune/xml/xml_collection.h"

/// The chip models that one chip model is link compatible with.
/// \members{link_compatible_models.cpp,CLinkCompatibleModel}
class KESTRUNE_API CLinkCompatibleModel : public CXMLFolder {
public:
  /// Every member starts with its default text; copying copies all members. @{
  CLinkCompatibleModel();
  CLinkCompatibleModel(const CLinkCompatibleModel &rhs);
  ~CLinkCompatibleModel() override;
  CLinkCompatibleModel &operator=(const CLinkCompatibleModel &rhs);
  ///@}

  void Init() override;
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
  /// Starts empty; copying copies all items, and the copy owns its own. @{
  CLinkCompatibleModels();
  CLinkCompatibleModels(const CLinkCompatibleModels &rhs);
  ~CLinkCompatibleModels() override;
  CLinkCompatibleModels &operator=(const CLinkCompatibleModels &rhs);
  ///@}

  void Init() override;
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// Adds a model and returns it; the collection owns it. Returns null when `name` is null, empty or already present.
  CLinkCompatibleModel *Add(const char *name);
  /// The item at `index`; throws std::out_of_range outside the list.
  CLinkCompatibleModel *operator[](int index);
  /// The first item with that name, case-insensitive, or null.
  CLinkCompatibleModel *Find(const char *key);

protected:
  CXMLFolder *NewFolder() override;
};
