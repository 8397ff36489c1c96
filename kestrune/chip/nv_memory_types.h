#pragma once

#include "kestrune/xml/xml_collection.h"

/// A non-volatile memory that a chip model can work with. An accessor for a text returns the member's own text, valid
/// until the member changes.
/// \members{nv_memory_types.cpp,CNVMemoryType}
/// \fields{nv_memory_types.h,CNVMemoryType}
class KESTRUNE_API CNVMemoryType : public CXMLFolder {
public:
  CNVMemoryType(); ///< Every member has its default text.
  /// Sector sizes are "0", the write time flag is "FALSE", and description, symbol and driver id are empty. A null
  /// `key` or `name` counts as empty.
  CNVMemoryType(const char *key, const char *name);
  CNVMemoryType(const CNVMemoryType &rhs);            ///< Copies all members.
  ~CNVMemoryType() override;                          ///< Does not save.
  CNVMemoryType &operator=(const CNVMemoryType &rhs); ///< Copies all members.

  void Init() override; ///< Sets all tags, and the texts that have a default in the table.
  /// The text of "Key".
  CString Key() const override;
  void pushMembers() override;

  /// "Key" as a number: decimal, hexadecimal with 0x, or octal with a leading 0; an empty text is 0. Throws
  /// CKRXException* (text 101) when anything is left after the number, and on "Unassigned".
  int DriverKey() const;
  /// The name to show to users; valid until the member changes.
  const char *Name() const;
  /// Text of any form; valid until the member changes.
  const char *Description() const;
  /// The symbolic name, a text of any form; valid until the member changes.
  const char *Symbol() const;
  /// The number of the flash driver; same form and exception as DriverKey.
  int FlashDriverID() const;

  /// The sizes of the flash sectors in one text, which the library does not split.
  CXMLElement FlashSectorSizes;
  /// Whether a write takes time that has to be waited for. The default is "Unassigned", so converting it throws until a
  /// truth value is set or loaded.
  CXMLBoolAttribute EEWriteTimeRequired;

private:
  friend class CNVMemoryTypes;
  struct Members;

  CXMLAttribute m_key;
  CXMLElement m_name;
  CXMLElement m_description;
  CXMLElement m_symbol;
  CXMLElement m_flashDriverID;
};

/// The non-volatile memories of one chip model.
class KESTRUNE_API CNVMemoryTypes : public CXMLCollectionFolder {
public:
  CNVMemoryTypes();                                     ///< Without items.
  CNVMemoryTypes(const CNVMemoryTypes &rhs);            ///< Copies all items.
  ~CNVMemoryTypes() override;                           ///< Destroys the items.
  CNVMemoryTypes &operator=(const CNVMemoryTypes &rhs); ///< Copies all items.

  void Init() override; ///< Sets the tags of the list and its items.
  /// \copydoc CXMLCollectionFolder::Load
  long Load(MSXML::IXMLDOMElement *parent) override;
  void pushMembers() override;

  /// Adds a memory with that key and, unless it is null, that name, and returns it; the collection owns it. Returns
  /// null when `key` is null, empty or already present.
  CNVMemoryType *Add(const char *key, const char *name);
  /// The item at `index`; throws kestrune::BadIndex outside the list. @{
  CNVMemoryType *operator[](int index);
  const CNVMemoryType *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CNVMemoryType> begin();
  kestrune::ItemIterator<CNVMemoryType> end();
  kestrune::ItemIterator<const CNVMemoryType> begin() const;
  kestrune::ItemIterator<const CNVMemoryType> end() const;
  ///@}
  /// The first item with that key, case-insensitive, or null. @{
  CNVMemoryType *Find(const char *key);
  const CNVMemoryType *Find(const char *key) const { return mutableOf(*this).Find(key); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};
