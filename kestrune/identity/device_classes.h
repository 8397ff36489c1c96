#pragma once

#include "kestrune/xml/xml_collection.h"

/// A class of devices: its name, and its number of the form major.minor.
class KESTRUNE_API CTKDeviceClass : public CXMLFolder {
public:
  CTKDeviceClass();
  /// A class with that number in decimal text. NumberMajor and NumberMinor stay 0.
  CTKDeviceClass(const char *name, int number);
  /// A class whose element is called `tag` and whose attributes have other names than "Name" and "Number".
  CTKDeviceClass(const char *tag, const char *nameTag, const char *numberTag);
  CTKDeviceClass(const CTKDeviceClass &rhs);
  ~CTKDeviceClass() override;
  CTKDeviceClass &operator=(const CTKDeviceClass &rhs);

  /// Gives the members their usual tags; their texts stay.
  void Init() override;
  /// As the base; then works out NumberMajor and NumberMinor, which are both 0 after a failure.
  long Load(MSXML::IXMLDOMElement *parent) override;
  /// The name.
  CString Key() const override;
  void pushMembers() override;

  /// Whether name and number are the same texts, with regard to case; nothing else plays a part.
  bool operator==(const CTKDeviceClass &rhs) const;
  /// Orders by name, with regard to case.
  bool operator<(const CTKDeviceClass &rhs) const;

  /// The parts of `Number` before and behind its first dot, as the last `Load` found them: decimal numbers, 0 where
  /// there is none. No other operation sets them, but a copy takes them over.
  int NumberMajor = 0;
  int NumberMinor = 0;
  CXMLAttribute Name;
  CXMLAttribute Number;

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // of the next version
};

/// The second version of the record.
class KESTRUNE_API CTKDeviceClass2 : public CTKDeviceClass {
public:
  CTKDeviceClass2();
  CTKDeviceClass2(const char *name, int number);
  CTKDeviceClass2(const char *tag, const char *nameTag, const char *numberTag);
  CTKDeviceClass2(const CTKDeviceClass2 &rhs);
  ~CTKDeviceClass2() override;
  CTKDeviceClass2 &operator=(const CTKDeviceClass2 &rhs);

  void Init() override;
  void pushMembers() override;

  CXMLAttribute Category;
  CXMLAttribute Profile;
  /// "Unassigned", which is no truth value, where the file has none.
  CXMLBoolAttribute Obsolete;

private:
  struct Members;
};

/// A list of device classes. It has no names of its own: its owner gives them with setTags, and until then tag, item
/// tag and key attribute are "Unassigned".
class KESTRUNE_API CTKDeviceClasses : public CXMLCollectionFolder {
public:
  CTKDeviceClasses();
  CTKDeviceClasses(const CTKDeviceClasses &rhs);
  ~CTKDeviceClasses() override;
  CTKDeviceClasses &operator=(const CTKDeviceClasses &rhs);

  void Init() override;

  /// Adds a class of that name and number; the item stays the collection's. Null when `name` is empty or there already.
  CTKDeviceClass *Add(const char *name, int number);
  /// The item at `index`; throws std::out_of_range outside the list.
  CTKDeviceClass *operator[](int index);
  /// The first item of that name, without regard to case, or null.
  CTKDeviceClass *Find(const char *name);
  /// The first item with that NumberMajor and NumberMinor, or null. An item that was never loaded counts as 0.0.
  CTKDeviceClass *FindByNumber(int major, int minor);

protected:
  CXMLFolder *NewFolder() override;
};

/// The list of the second version; its operations are those of the first.
class KESTRUNE_API CTKDeviceClasses2 : public CTKDeviceClasses {
public:
  CTKDeviceClasses2();
  CTKDeviceClasses2(const CTKDeviceClasses2 &rhs);
  ~CTKDeviceClasses2() override;
  CTKDeviceClasses2 &operator=(const CTKDeviceClasses2 &rhs);

  CTKDeviceClass2 *Add(const char *name, int number);
  CTKDeviceClass2 *operator[](int index);
  CTKDeviceClass2 *Find(const char *name);
  CTKDeviceClass2 *FindByNumber(int major, int minor);

protected:
  CXMLFolder *NewFolder() override;
};
