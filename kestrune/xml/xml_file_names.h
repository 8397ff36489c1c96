#pragma once

#include "kestrune/xml/xml_collection.h"

/// A file name with option flags.
/// \members{xml_file_names.cpp,CXMLFileName}
class KESTRUNE_API CXMLFileName : public CXMLFolder {
public:
  CXMLFileName(); ///< Every member has its default text.
  /// Sets the tag of the element, and the tag that replaces "Name" for the attribute.
  CXMLFileName(const char *tag, const char *keyName);
  CXMLFileName(const CXMLFileName &rhs);            ///< Copies all members.
  ~CXMLFileName() override;                         ///< Does not save.
  CXMLFileName &operator=(const CXMLFileName &rhs); ///< Copies all members.

  /// The file name.
  CString Key() const override;
  void pushMembers() override;

  CXMLAttribute Name; ///< The file name, by which a list finds it.
  /// The option flags: hexadecimal text, "0x0" by default. Their meaning is up to the caller.
  CXMLHexElement OptionFlags;

private:
  struct Members;
};

/// A list of file names.
class KESTRUNE_API CXMLFileNames : public CXMLCollectionFolder {
public:
  CXMLFileNames();                                    ///< Without items.
  CXMLFileNames(const CXMLFileNames &rhs);            ///< Copies all items.
  ~CXMLFileNames() override;                          ///< Destroys the items.
  CXMLFileNames &operator=(const CXMLFileNames &rhs); ///< Copies all items.

  void Init() override; ///< Sets the tags of the list and its items.
  void pushMembers() override;

  /// Adds a file name and returns it; the collection owns it. Returns null when `key` is null, empty or already
  /// present.
  CXMLFileName *Add(const char *key);
  /// The first item with that name, case-insensitive, or null. @{
  CXMLFileName *Find(const char *key);
  const CXMLFileName *Find(const char *key) const { return mutableOf(*this).Find(key); }
  ///@}
  /// The item at `index`; throws kestrune::BadIndex outside the list. @{
  CXMLFileName *operator[](int index);
  const CXMLFileName *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CXMLFileName> begin();
  kestrune::ItemIterator<CXMLFileName> end();
  kestrune::ItemIterator<const CXMLFileName> begin() const;
  kestrune::ItemIterator<const CXMLFileName> end() const;
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};
