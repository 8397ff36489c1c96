#pragma once

#include "kestrune/xml/xml_collection.h"

/// A file name with option flags.
class KESTRUNE_API CXMLFileName : public CXMLFolder {
public:
  CXMLFileName();
  /// The same with another tag for the element and another for the attribute of the name.
  CXMLFileName(const char *tag, const char *keyName);
  CXMLFileName(const CXMLFileName &rhs);
  ~CXMLFileName() override;
  CXMLFileName &operator=(const CXMLFileName &rhs);

  /// The file name.
  CString Key() const override;
  void pushMembers() override;

  CXMLAttribute Name;
  /// Hexadecimal text, "0x0" at first.
  CXMLHexElement OptionFlags;

private:
  struct Members;
};

/// A list of file names.
class KESTRUNE_API CXMLFileNames : public CXMLCollectionFolder {
public:
  CXMLFileNames();
  CXMLFileNames(const CXMLFileNames &rhs);
  ~CXMLFileNames() override;
  CXMLFileNames &operator=(const CXMLFileNames &rhs);

  void Init() override;
  void pushMembers() override;

  /// Adds a file name; the item stays the collection's. Null when `key` is empty or there already.
  CXMLFileName *Add(const char *key);
  /// The first item of that name, without regard to case, or null.
  CXMLFileName *Find(const char *key);
  /// The item at `index`; throws std::out_of_range outside the list.
  CXMLFileName *operator[](int index);

protected:
  CXMLFolder *NewFolder() override;
};
