#pragma once

#include "kestrune/chip/clocks.h"

/// A numbered set of clock rates. The searches look for a clock and, among the multipliers of that clock alone, for a
/// multiplier; the rules of comparison, and what throws, are those of CClocks and CMultipliers. `*clockFound` tells how
/// far a search got: it takes the clock, or null, and only with a clock does `*multiplierFound` take the multiplier, or
/// null. True when both were found; both stay their collections'.
class KESTRUNE_API CClockingScheme : public CXMLFolder {
public:
  CClockingScheme();
  CClockingScheme(const CClockingScheme &rhs);
  ~CClockingScheme() override;
  CClockingScheme &operator=(const CClockingScheme &rhs);

  void Init() override;
  /// The text of "Id".
  CString Key() const override;
  void pushMembers() override;

  /// "Id" as a number by the rules of C for its base; an empty text is 0. Throws CKRXException* (text 101) when
  /// anything is left behind the number, and on the default, "Unassigned".
  int Id() const;
  /// Valid until the member changes.
  const char *Description() const;
  /// A number that only callers know the meaning of; read and throws as Id.
  int Algorithm();
  /// The clock rates: a member of the scheme.
  CClocks *Clocks();

  bool FindByDisplay(const char *clock, const char *multiplier, CClock **clockFound, CMultiplier **multiplierFound);
  bool FindByEncoding(const char *clock, const char *multiplier, CClock **clockFound, CMultiplier **multiplierFound);
  bool FindByValue(double clock, double multiplier, CClock **clockFound, CMultiplier **multiplierFound);

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
  CClockingSchemes();
  CClockingSchemes(const CClockingSchemes &rhs);
  ~CClockingSchemes() override;
  CClockingSchemes &operator=(const CClockingSchemes &rhs);

  void Init() override;
  long Load(MSXML::IXMLDOMElement *parent) override;
  void pushMembers() override;

  /// Adds a scheme, whose "Id" stays "Unassigned"; the item stays the collection's. Null when `key` is empty or there
  /// already.
  CClockingScheme *Add(const char *key);
  /// The item at `index`; throws std::out_of_range outside the list.
  CClockingScheme *operator[](int index);
  /// The first scheme with that number, or null. Throws when it reaches one whose "Id" is no number.
  CClockingScheme *Find(int id);

  /// Search the scheme with that number. Without one the result is false, and neither output is written.
  bool FindByDisplay(int id, const char *clock, const char *multiplier, CClock **clockFound,
                     CMultiplier **multiplierFound);
  bool FindByEncoding(int id, const char *clock, const char *multiplier, CClock **clockFound,
                      CMultiplier **multiplierFound);
  bool FindByValue(int id, double clock, double multiplier, CClock **clockFound, CMultiplier **multiplierFound);

protected:
  CXMLFolder *NewFolder() override;
};
