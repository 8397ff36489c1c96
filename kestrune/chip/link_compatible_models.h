#pragma once

#include "kestrune/xml/xml_collection.h"

/// The chip models that one chip model is link compatible with.
class KESTRUNE_API CLinkCompatibleModel : public CXMLFolder {
public:
  CLinkCompatibleModel();
  CLinkCompatibleModel(const CLinkCompatibleModel &rhs);
  ~CLinkCompatibleModel() override;
  CLinkCompatibleModel &operator=(const CLinkCompatibleModel &rhs);

  void Init() override;
  /// The text of "Name".
  CString Key() const override;
  void pushMembers() override;

  /// The number of the model, in decimal text.
  CXMLAttribute Name;
  /// The numbers of the other models, in decimal text, separated by `;`, `,` or a line feed. A blank belongs to the
  /// number that it stands beside.
  CXMLElement LinkCompatibleList;

private:
  struct Members;
};

/// The table of link compatible models in a chip data file. It is read in one direction: to be mutual, a relation has
/// to stand in the lists of both models.
class KESTRUNE_API CLinkCompatibleModels : public CXMLCollectionFolder {
public:
  CLinkCompatibleModels();
  CLinkCompatibleModels(const CLinkCompatibleModels &rhs);
  ~CLinkCompatibleModels() override;
  CLinkCompatibleModels &operator=(const CLinkCompatibleModels &rhs);

  void Init() override;
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// Adds a model; the item stays the collection's. Null when `name` is null, empty or there already.
  CLinkCompatibleModel *Add(const char *name);
  /// The item at `index`; throws std::out_of_range outside the list.
  CLinkCompatibleModel *operator[](int index);
  /// The first item of that name, without regard to case, or null.
  CLinkCompatibleModel *Find(const char *key);

protected:
  CXMLFolder *NewFolder() override;
};
