#pragma once

#include "kestrune/xml/xml_collection.h"

/// A row with a name and a number, both of them attributes. The number is text of any form.
class KESTRUNE_API CXMLPair : public CXMLFolder {
public:
  CXMLPair();
  CXMLPair(const char *name, const char *number);
  /// A row whose element is called `tag` and whose attributes have other names than "Name" and "Number".
  CXMLPair(const char *tag, const char *nameTag, const char *numberTag);
  CXMLPair(const CXMLPair &rhs);
  ~CXMLPair() override;
  CXMLPair &operator=(const CXMLPair &rhs);

  /// Gives the members their usual tags; their texts stay.
  void Init() override;
  /// The name.
  CString Key() const override;
  void pushMembers() override;

  /// Whether name and number are the same texts, with regard to case.
  bool operator==(const CXMLPair &rhs) const;
  /// Orders by name, with regard to case.
  bool operator<(const CXMLPair &rhs) const;

  CXMLAttribute Name;
  CXMLAttribute Number;

private:
  struct Members;
};

/// A row with a name, an attribute, and a number, a child element of hexadecimal text such as "0x1F".
class KESTRUNE_API CXMLNameHexPair : public CXMLFolder {
public:
  CXMLNameHexPair();
  CXMLNameHexPair(const char *name, int number);
  /// A row whose element is called `tag` and whose members have other names than "Name" and "Number".
  CXMLNameHexPair(const char *tag, const char *nameTag, const char *numberTag);
  CXMLNameHexPair(const CXMLNameHexPair &rhs);
  ~CXMLNameHexPair() override;
  CXMLNameHexPair &operator=(const CXMLNameHexPair &rhs);

  /// Gives the members their usual tags; their texts stay.
  void Init() override;
  /// The name.
  CString Key() const override;
  void pushMembers() override;

  /// Whether name and number are the same texts, with regard to case.
  bool operator==(const CXMLNameHexPair &rhs) const;
  /// Orders by name, with regard to case.
  bool operator<(const CXMLNameHexPair &rhs) const;

  CXMLAttribute Name;
  CXMLHexElement Number;

private:
  struct Members;
};

/// A list of pairs. It has no names of its own: its owner gives them with setTags, and until then tag, item tag and key
/// attribute are "Unassigned".
class KESTRUNE_API CXMLPairCollection : public CXMLCollectionFolder {
public:
  CXMLPairCollection();
  CXMLPairCollection(const CXMLPairCollection &rhs);
  ~CXMLPairCollection() override;
  CXMLPairCollection &operator=(const CXMLPairCollection &rhs);

  void Init() override;

  /// Adds a row whose name and number are still "Unassigned"; the row stays the collection's. Null when `name` is
  /// empty or there already.
  CXMLPair *Add(const char *name);
  /// Adds a row of that name and number; a null `number` leaves it "Unassigned".
  CXMLPair *Add(const char *name, const char *number);
  /// The row at `index`; throws std::out_of_range outside the list.
  CXMLPair *operator[](int index);
  /// The first row of that name, without regard to case, or null.
  CXMLPair *Find(const char *name);
  /// The first row whose number is that very text, or null: 0x1A, 0x1a and 26 are three numbers.
  CXMLPair *FindByNumber(const char *number);

protected:
  CXMLFolder *NewFolder() override;
};

/// A list of pairs with hexadecimal numbers. Its owner gives it its names with setTags, as for CXMLPairCollection.
class KESTRUNE_API CXMLNameHexPairs : public CXMLCollectionFolder {
public:
  CXMLNameHexPairs();
  CXMLNameHexPairs(const CXMLNameHexPairs &rhs);
  ~CXMLNameHexPairs() override;
  CXMLNameHexPairs &operator=(const CXMLNameHexPairs &rhs);

  void Init() override;

  /// Adds a row of that name, with the number as "0x" and capital digits; the row stays the collection's. Null when
  /// `name` is empty or there already.
  CXMLNameHexPair *Add(const char *name, int number);
  /// The row at `index`; throws std::out_of_range outside the list.
  CXMLNameHexPair *operator[](int index);
  /// The first row of that name, without regard to case, or null.
  CXMLNameHexPair *Find(const char *name);
  /// The first row whose number is that very text, or null.
  CXMLNameHexPair *FindByNumber(const char *number);

protected:
  CXMLFolder *NewFolder() override;
};
