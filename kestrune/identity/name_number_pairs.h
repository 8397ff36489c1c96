#pragma once

#include "kestrune/xml/xml_collection.h"

/// A row with a name and a number, both attributes. The number is text of any form.
/// \members{name_number_pairs.cpp,CXMLPair}
class KESTRUNE_API CXMLPair : public CXMLFolder {
public:
  CXMLPair(); ///< Every member has its default text.
  /// With that name and number; null counts as empty.
  CXMLPair(const char *name, const char *number);
  /// Sets the tag of the element, and the tags that replace "Name" and "Number" for its attributes.
  CXMLPair(const char *tag, const char *nameTag, const char *numberTag);
  CXMLPair(const CXMLPair &rhs);            ///< Copies all members.
  ~CXMLPair() override;                     ///< Does not save.
  CXMLPair &operator=(const CXMLPair &rhs); ///< Copies all members.

  /// Sets the members' usual tags and keeps their texts.
  void Init() override;
  /// The name.
  CString Key() const override;
  void pushMembers() override;

  /// Compares name and number, case-sensitive.
  bool operator==(const CXMLPair &rhs) const;
  /// Orders by name, case-sensitive.
  bool operator<(const CXMLPair &rhs) const;

  CXMLAttribute Name;   ///< The name, by which a collection finds the row.
  CXMLAttribute Number; ///< The number, as text.

private:
  struct Members;
};

/// A row with a name, which is an attribute, and a number, which is a child element with hexadecimal text such as
/// "0x1F".
/// \members{name_number_pairs.cpp,CXMLNameHexPair}
class KESTRUNE_API CXMLNameHexPair : public CXMLFolder {
public:
  CXMLNameHexPair(); ///< Every member has its default text.
  /// With that name, and the number as "0x" and capital digits.
  CXMLNameHexPair(const char *name, int number);
  /// Sets the tag of the element, and the tags that replace "Name" and "Number" for its members.
  CXMLNameHexPair(const char *tag, const char *nameTag, const char *numberTag);
  CXMLNameHexPair(const CXMLNameHexPair &rhs);            ///< Copies all members.
  ~CXMLNameHexPair() override;                            ///< Does not save.
  CXMLNameHexPair &operator=(const CXMLNameHexPair &rhs); ///< Copies all members.

  /// Sets the members' usual tags and keeps their texts.
  void Init() override;
  /// The name.
  CString Key() const override;
  void pushMembers() override;

  /// Compares name and number, case-sensitive.
  bool operator==(const CXMLNameHexPair &rhs) const;
  /// Orders by name, case-sensitive.
  bool operator<(const CXMLNameHexPair &rhs) const;

  CXMLAttribute Name;    ///< The name, by which a collection finds the row.
  CXMLHexElement Number; ///< The number, as hexadecimal text.

private:
  struct Members;
};

/// A list of pairs. Its owner names it with setTags; until then the tag, the item tag and the key attribute are
/// "Unassigned".
class KESTRUNE_API CXMLPairCollection : public CXMLCollectionFolder {
public:
  CXMLPairCollection();                                         ///< Without items.
  CXMLPairCollection(const CXMLPairCollection &rhs);            ///< Copies all items.
  ~CXMLPairCollection() override;                               ///< Destroys the items.
  CXMLPairCollection &operator=(const CXMLPairCollection &rhs); ///< Copies all items.

  void Init() override; ///< Sets all three tags to "Unassigned".

  /// Adds a row and returns it; the collection owns it. `name` is only checked for duplicates: the row's name and
  /// number stay "Unassigned". Returns null when `name` is null, empty or already present.
  CXMLPair *Add(const char *name);
  /// Adds a row with that name and, unless `number` is null, that number, and returns it; the collection owns it.
  /// Returns null when `name` is null, empty or already present.
  CXMLPair *Add(const char *name, const char *number);
  /// The row at `index`; throws kestrune::BadIndex outside the list. @{
  CXMLPair *operator[](int index);
  const CXMLPair *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CXMLPair> begin();
  kestrune::ItemIterator<CXMLPair> end();
  kestrune::ItemIterator<const CXMLPair> begin() const;
  kestrune::ItemIterator<const CXMLPair> end() const;
  ///@}
  /// The first row with that name, case-insensitive, or null. @{
  CXMLPair *Find(const char *name);
  const CXMLPair *Find(const char *name) const { return mutableOf(*this).Find(name); }
  ///@}
  /// The first row whose number is exactly that text, or null: 0x1A, 0x1a and 26 all differ. @{
  CXMLPair *FindByNumber(const char *number);
  const CXMLPair *FindByNumber(const char *number) const { return mutableOf(*this).FindByNumber(number); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};

/// A list of pairs with hexadecimal numbers. Its owner names it with setTags, as for CXMLPairCollection.
class KESTRUNE_API CXMLNameHexPairs : public CXMLCollectionFolder {
public:
  CXMLNameHexPairs();                                       ///< Without items.
  CXMLNameHexPairs(const CXMLNameHexPairs &rhs);            ///< Copies all items.
  ~CXMLNameHexPairs() override;                             ///< Destroys the items.
  CXMLNameHexPairs &operator=(const CXMLNameHexPairs &rhs); ///< Copies all items.

  void Init() override; ///< Sets all three tags to "Unassigned".

  /// Adds a row with that name and number, and returns it; the collection owns it. The number is stored as "0x" and
  /// capital digits. Returns null when `name` is null, empty or already present.
  CXMLNameHexPair *Add(const char *name, int number);
  /// The row at `index`; throws kestrune::BadIndex outside the list. @{
  CXMLNameHexPair *operator[](int index);
  const CXMLNameHexPair *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CXMLNameHexPair> begin();
  kestrune::ItemIterator<CXMLNameHexPair> end();
  kestrune::ItemIterator<const CXMLNameHexPair> begin() const;
  kestrune::ItemIterator<const CXMLNameHexPair> end() const;
  ///@}
  /// The first row with that name, case-insensitive, or null. @{
  CXMLNameHexPair *Find(const char *name);
  const CXMLNameHexPair *Find(const char *name) const { return mutableOf(*this).Find(name); }
  ///@}
  /// The first row whose number is exactly that text, or null. @{
  CXMLNameHexPair *FindByNumber(const char *number);
  const CXMLNameHexPair *FindByNumber(const char *number) const { return mutableOf(*this).FindByNumber(number); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};
