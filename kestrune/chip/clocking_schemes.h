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
  /// A number whose meaning is up to the caller; same form and exception as Id. @{
  int Algorithm();
  int Algorithm() const { return mutableOf(*this).Algorithm(); }
  ///@}
  /// The clock rates: a member of the scheme. @{
  CClocks *Clocks();
  const CClocks *Clocks() const { return &m_clocks; }
  ///@}

  /// Looks for a clock, and then for a multiplier among those of that clock; texts and values are compared as in
  /// CClocks and CMultipliers, and clock values are in kHz. Returns whether both were found. `*clockFound` is always
  /// set, to null if there is no such clock; `*multiplierFound` is set only if the clock was found, to null if the
  /// clock has no such multiplier. Both objects still belong to their collections. FindByValue throws CKRXException*
  /// (text 101) when it reaches a "Value" that is not a number. @{
  bool FindByDisplay(const char *clock, const char *multiplier, CClock **clockFound, CMultiplier **multiplierFound);
  bool FindByEncoding(const char *clock, const char *multiplier, CClock **clockFound, CMultiplier **multiplierFound);
  bool FindByValue(double clock, double multiplier, CClock **clockFound, CMultiplier **multiplierFound);
  bool FindByDisplay(const char *clock, const char *multiplier, const CClock **clockFound,
                     const CMultiplier **multiplierFound) const {
    return mutableOf(*this).FindByDisplay(clock, multiplier, const_cast<CClock **>(clockFound),
                                          const_cast<CMultiplier **>(multiplierFound));
  }
  bool FindByEncoding(const char *clock, const char *multiplier, const CClock **clockFound,
                      const CMultiplier **multiplierFound) const {
    return mutableOf(*this).FindByEncoding(clock, multiplier, const_cast<CClock **>(clockFound),
                                           const_cast<CMultiplier **>(multiplierFound));
  }
  bool FindByValue(double clock, double multiplier, const CClock **clockFound,
                   const CMultiplier **multiplierFound) const {
    return mutableOf(*this).FindByValue(clock, multiplier, const_cast<CClock **>(clockFound),
                                        const_cast<CMultiplier **>(multiplierFound));
  }
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
  /// The item at `index`; throws kestrune::BadIndex outside the list. @{
  CClockingScheme *operator[](int index);
  const CClockingScheme *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CClockingScheme> begin();
  kestrune::ItemIterator<CClockingScheme> end();
  kestrune::ItemIterator<const CClockingScheme> begin() const;
  kestrune::ItemIterator<const CClockingScheme> end() const;
  ///@}
  /// The first scheme with that number, or null. Throws CKRXException* (text 101) when it reaches one whose "Id" is not
  /// a number. @{
  CClockingScheme *Find(int id);
  const CClockingScheme *Find(int id) const { return mutableOf(*this).Find(id); }
  ///@}

  /// The search of CClockingScheme in the scheme with that number. If there is none, returns false and writes neither
  /// output. Throws CKRXException* (text 101) also when it reaches an "Id" that is not a number. @{
  bool FindByDisplay(int id, const char *clock, const char *multiplier, CClock **clockFound,
                     CMultiplier **multiplierFound);
  bool FindByEncoding(int id, const char *clock, const char *multiplier, CClock **clockFound,
                      CMultiplier **multiplierFound);
  bool FindByValue(int id, double clock, double multiplier, CClock **clockFound, CMultiplier **multiplierFound);
  bool FindByDisplay(int id, const char *clock, const char *multiplier, const CClock **clockFound,
                     const CMultiplier **multiplierFound) const {
    return mutableOf(*this).FindByDisplay(id, clock, multiplier, const_cast<CClock **>(clockFound),
                                          const_cast<CMultiplier **>(multiplierFound));
  }
  bool FindByEncoding(int id, const char *clock, const char *multiplier, const CClock **clockFound,
                      const CMultiplier **multiplierFound) const {
    return mutableOf(*this).FindByEncoding(id, clock, multiplier, const_cast<CClock **>(clockFound),
                                           const_cast<CMultiplier **>(multiplierFound));
  }
  bool FindByValue(int id, double clock, double multiplier, const CClock **clockFound,
                   const CMultiplier **multiplierFound) const {
    return mutableOf(*this).FindByValue(id, clock, multiplier, const_cast<CClock **>(clockFound),
                                        const_cast<CMultiplier **>(multiplierFound));
  }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};
