#pragma once

#include "kestrune/chip/clocks.h"

/// A numbered set of clock rates.
/// \members{clocking_schemes.cpp,CClockingScheme}
/// \fields{clocking_schemes.h,CClockingScheme}
class KESTRUNE_API CClockingScheme : public CXMLFolder {
public:
  CClockingScheme();                                      ///< Every member has its default text.
  CClockingScheme(const CClockingScheme &rhs);            ///< Copies all members.
  ~CClockingScheme() override;                            ///< Does not save.
  CClockingScheme &operator=(const CClockingScheme &rhs); ///< Copies all members.

  void Init() override; ///< Sets all tags, and the texts that have a default in the table.
  /// The text of "Id".
  CString Key() const override;
  void pushMembers() override;

  /// "Id" as a number: decimal, hexadecimal with 0x, or octal with a leading 0; an empty text is 0. Throws
  /// CKRXException* (text 101) when anything is left after the number, and on the default text, "Unassigned".
  int Id() const;
  /// Text of any form; valid until the member changes.
  const char *Description() const;
  /// A number whose meaning is up to the caller; same form and exception as Id.
  int Algorithm();
  /// The clock rates: a member of the scheme.
  CClocks *Clocks();

  /// Looks for a clock, and then for a multiplier among those of that clock; texts and values are compared as in
  /// CClocks and CMultipliers, and clock values are in kHz. Returns whether both were found. `*clockFound` is always
  /// set, to null if there is no such clock; `*multiplierFound` is set only if the clock was found, to null if the
  /// clock has no such multiplier. Both objects still belong to their collections. FindByValue throws CKRXException*
  /// (text 101) when it reaches a "Value" that is not a number. @{
  bool FindByDisplay(const char *clock, const char *multiplier, CClock **clockFound, CMultiplier **multiplierFound);
  bool FindByEncoding(const char *clock, const char *multiplier, CClock **clockFound, CMultiplier **multiplierFound);
  bool FindByValue(double clock, double multiplier, CClock **clockFound, CMultiplier **multiplierFound);
  ///@}

private:
  struct Members;

  CXMLAttribute m_id;
  CXMLElement m_description;
  CXMLElement m_algorithm;
  CClocks m_clocks;
};

/// The clocking schemes of a chip data file.
class KESTRUNE_API CClockingSchemes : public CXMLCollectionFolder {
public:
  CClockingSchemes();                                       ///< Without items.
  CClockingSchemes(const CClockingSchemes &rhs);            ///< Copies all items.
  ~CClockingSchemes() override;                             ///< Destroys the items.
  CClockingSchemes &operator=(const CClockingSchemes &rhs); ///< Copies all items.

  void Init() override; ///< Sets the tags of the list and its items.
  /// \copydoc CXMLCollectionFolder::Load
  long Load(MSXML::IXMLDOMElement *parent) override;
  void pushMembers() override;

  /// Adds a scheme and returns it; the collection owns it. Its "Id" stays "Unassigned". Returns null when `key` is
  /// null, empty or already present.
  CClockingScheme *Add(const char *key);
  /// The item at `index`; throws std::out_of_range outside the list.
  CClockingScheme *operator[](int index);
  /// The first scheme with that number, or null. Throws CKRXException* (text 101) when it reaches one whose "Id" is not
  /// a number.
  CClockingScheme *Find(int id);

  /// The search of CClockingScheme in the scheme with that number. If there is none, returns false and writes neither
  /// output. Throws CKRXException* (text 101) also when it reaches an "Id" that is not a number. @{
  bool FindByDisplay(int id, const char *clock, const char *multiplier, CClock **clockFound,
                     CMultiplier **multiplierFound);
  bool FindByEncoding(int id, const char *clock, const char *multiplier, CClock **clockFound,
                      CMultiplier **multiplierFound);
  bool FindByValue(int id, double clock, double multiplier, CClock **clockFound, CMultiplier **multiplierFound);
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};
