#pragma once

#include "kestrune/xml/xml_collection.h"

/// A class of devices: a name, and a number of the form major.minor.
/// \members{device_classes.cpp,CTKDeviceClass}
class KESTRUNE_API CTKDeviceClass : public CXMLFolder {
public:
  CTKDeviceClass(); ///< Every member has its default text.
  /// Stores `number` as decimal text. NumberMajor and NumberMinor stay 0.
  CTKDeviceClass(const char *name, int number);
  /// Sets the tag of the element, and the tags that replace "Name" and "Number" for its attributes.
  CTKDeviceClass(const char *tag, const char *nameTag, const char *numberTag);
  CTKDeviceClass(const CTKDeviceClass &rhs);            ///< Copies all members.
  ~CTKDeviceClass() override;                           ///< Does not save.
  CTKDeviceClass &operator=(const CTKDeviceClass &rhs); ///< Copies all members.

  /// Sets the members' usual tags and keeps their texts.
  void Init() override;
  /// As the base, and then derives NumberMajor and NumberMinor from `Number`. After a failure both are 0.
  long Load(MSXML::IXMLDOMElement *parent) override;
  /// The name.
  CString Key() const override;
  void pushMembers() override;

  /// Compares name and number, case-sensitive; other members are ignored.
  bool operator==(const CTKDeviceClass &rhs) const;
  /// Orders by name, case-sensitive.
  bool operator<(const CTKDeviceClass &rhs) const;

  /// The part of `Number` before its first dot, as a decimal number; 0 if it is missing or not a number. Only `Load`
  /// works it out, and a copy takes it over: changing `Number` does not change it.
  int NumberMajor = 0;
  /// The part of `Number` after its first dot; otherwise like NumberMajor.
  int NumberMinor = 0;
  CXMLAttribute Name;   ///< The name, by which a collection finds the class.
  CXMLAttribute Number; ///< The number as text: major.minor, or major alone.

private:
  struct Members;
  template <class, class, class>
  friend struct RecordMembers; // for the next version
};

/// A device class in the second version of the record.
/// \members{device_classes.cpp,CTKDeviceClass2}
class KESTRUNE_API CTKDeviceClass2 : public CTKDeviceClass {
public:
  CTKDeviceClass2(); ///< Every member has its default text.
  /// \copydoc CTKDeviceClass::CTKDeviceClass(const char *name, int number)
  CTKDeviceClass2(const char *name, int number);
  /// \copydoc CTKDeviceClass::CTKDeviceClass(const char *tag, const char *nameTag, const char *numberTag)
  CTKDeviceClass2(const char *tag, const char *nameTag, const char *numberTag);
  CTKDeviceClass2(const CTKDeviceClass2 &rhs);            ///< Copies all members.
  ~CTKDeviceClass2() override;                            ///< Does not save.
  CTKDeviceClass2 &operator=(const CTKDeviceClass2 &rhs); ///< Copies all members.

  /// Sets the members' usual tags and keeps their texts.
  void Init() override;
  void pushMembers() override;

  CXMLAttribute Category; ///< The category, a text of any form.
  CXMLAttribute Profile;  ///< The profile, a text of any form.
  /// Whether the class is obsolete. The default is "Unassigned", so converting it throws if the file lacks the
  /// attribute.
  CXMLBoolAttribute Obsolete;

private:
  struct Members;
};

/// A list of device classes. Its owner names it with setTags; until then the tag, the item tag and the key attribute
/// are "Unassigned".
class KESTRUNE_API CTKDeviceClasses : public CXMLCollectionFolder {
public:
  CTKDeviceClasses();                                       ///< Without items.
  CTKDeviceClasses(const CTKDeviceClasses &rhs);            ///< Copies all items.
  ~CTKDeviceClasses() override;                             ///< Destroys the items.
  CTKDeviceClasses &operator=(const CTKDeviceClasses &rhs); ///< Copies all items.

  void Init() override; ///< Sets all three tags to "Unassigned".

  /// Adds a class with that name and number, and returns it; the collection owns it. Returns null when `name` is null,
  /// empty or already present.
  CTKDeviceClass *Add(const char *name, int number);
  /// The item at `index`; throws kestrune::BadIndex outside the list. @{
  CTKDeviceClass *operator[](int index);
  const CTKDeviceClass *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CTKDeviceClass> begin();
  kestrune::ItemIterator<CTKDeviceClass> end();
  kestrune::ItemIterator<const CTKDeviceClass> begin() const;
  kestrune::ItemIterator<const CTKDeviceClass> end() const;
  ///@}
  /// The first item with that name, case-insensitive, or null. @{
  CTKDeviceClass *Find(const char *name);
  const CTKDeviceClass *Find(const char *name) const { return mutableOf(*this).Find(name); }
  ///@}
  /// The first item with that NumberMajor and NumberMinor, or null. An item that was never loaded counts as 0.0. @{
  CTKDeviceClass *FindByNumber(int major, int minor);
  const CTKDeviceClass *FindByNumber(int major, int minor) const { return mutableOf(*this).FindByNumber(major, minor); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};

/// A list of device classes of the second version, with the same operations.
class KESTRUNE_API CTKDeviceClasses2 : public CTKDeviceClasses {
public:
  CTKDeviceClasses2();                                        ///< Without items.
  CTKDeviceClasses2(const CTKDeviceClasses2 &rhs);            ///< Copies all items.
  ~CTKDeviceClasses2() override;                              ///< Destroys the items.
  CTKDeviceClasses2 &operator=(const CTKDeviceClasses2 &rhs); ///< Copies all items.

  /// \copydoc CTKDeviceClasses::Add
  CTKDeviceClass2 *Add(const char *name, int number);
  /// \copydoc CTKDeviceClasses::operator[]
  /// @{
  CTKDeviceClass2 *operator[](int index);
  const CTKDeviceClass2 *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CTKDeviceClass2> begin();
  kestrune::ItemIterator<CTKDeviceClass2> end();
  kestrune::ItemIterator<const CTKDeviceClass2> begin() const;
  kestrune::ItemIterator<const CTKDeviceClass2> end() const;
  ///@}
  /// \copydoc CTKDeviceClasses::Find
  /// @{
  CTKDeviceClass2 *Find(const char *name);
  const CTKDeviceClass2 *Find(const char *name) const { return mutableOf(*this).Find(name); }
  ///@}
  /// \copydoc CTKDeviceClasses::FindByNumber
  /// @{
  CTKDeviceClass2 *FindByNumber(int major, int minor);
  const CTKDeviceClass2 *FindByNumber(int major, int minor) const {
    return mutableOf(*this).FindByNumber(major, minor);
  }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};
