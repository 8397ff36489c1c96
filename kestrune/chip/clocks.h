#pragma once

#include "kestrune/xml/xml_collection.h"

/// \file
/// The clock rates of a clocking scheme, each with its multipliers and oscillators.
///
/// An accessor for a number converts the member's text at each call: leading white space is allowed, an empty text is
/// 0, and anything left after the number throws CKRXException* (text 101). An accessor for a text returns the member's
/// own text, valid until the member changes. A search returns the first item that matches, which the collection still
/// owns, or null; a null text matches nothing. A search by number throws when it reaches an item whose text is not a
/// number.

/// The factor from the crystal's rate to the rate of the core.
/// \members{clocks.cpp,CMultiplier}
/// \fields{clocks.h,CMultiplier}
class KESTRUNE_API CMultiplier : public CXMLFolder {
public:
  CMultiplier();                                  ///< Every member has its default text.
  CMultiplier(const CMultiplier &rhs);            ///< Copies all members.
  ~CMultiplier() override;                        ///< Does not save.
  CMultiplier &operator=(const CMultiplier &rhs); ///< Copies all members.

  void Init() override; ///< Sets all tags, and the texts that have a default in the table.
  /// The text of "Value".
  CString Key() const override;
  void pushMembers() override;

  /// The factor, such as 0.5. Throws CKRXException* (text 101) if the text is not a number.
  double Value() const;
  /// The text to show to users, such as "1/2"; valid until the member changes.
  const char *Display() const;
  /// Text of any form; valid until the member changes.
  const char *Description() const;
  /// The code of the multiplier, a text of any form; valid until the member changes.
  const char *Encoding() const;
  /// A stored number: decimal, hexadecimal with 0x, or octal with a leading 0. Throws CKRXException* (text 101) if the
  /// text is not a number, as the default, "Unassigned", is not.
  int Cpu() const;
  /// A stored number. Same form and exception as Cpu.
  int Mac() const;

private:
  struct Members;

  CXMLAttribute m_value;
  CXMLElement m_display;
  CXMLElement m_description;
  CXMLElement m_encoding;
  CXMLElement m_cpu;
  CXMLElement m_mac;
};

/// The multipliers of one clock rate.
class KESTRUNE_API CMultipliers : public CXMLCollectionFolder2 {
public:
  CMultipliers();                                   ///< Without items.
  CMultipliers(const CMultipliers &rhs);            ///< Copies all items.
  ~CMultipliers() override;                         ///< Destroys the items.
  CMultipliers &operator=(const CMultipliers &rhs); ///< Copies all items.

  void Init() override; ///< Sets the tags of the list and its items.
  /// \copydoc CXMLCollectionFolder::Load
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// The item at `index`; throws kestrune::BadIndex outside the list. @{
  CMultiplier *operator[](int index);
  const CMultiplier *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CMultiplier> begin();
  kestrune::ItemIterator<CMultiplier> end();
  kestrune::ItemIterator<const CMultiplier> begin() const;
  kestrune::ItemIterator<const CMultiplier> end() const;
  ///@}
  /// The first item with that "Value", or null; values that differ by no more than DBL_EPSILON count as equal. Throws
  /// CKRXException* (text 101) when it reaches an item whose "Value" is not a number. @{
  CMultiplier *Find(double value);
  const CMultiplier *Find(double value) const { return mutableOf(*this).Find(value); }
  ///@}
  /// The first item with that "Display", case-sensitive, ignoring white space; null if there is none or for null. @{
  CMultiplier *FindByDisplay(const char *display);
  const CMultiplier *FindByDisplay(const char *display) const { return mutableOf(*this).FindByDisplay(display); }
  ///@}
  /// The first item with that "Encoding", case-sensitive, ignoring white space; null if there is none or for null. @{
  CMultiplier *FindByEncoding(const char *encoding);
  const CMultiplier *FindByEncoding(const char *encoding) const { return mutableOf(*this).FindByEncoding(encoding); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};

/// An oscillator of a clock rate.
/// \members{clocks.cpp,COscillator}
/// \fields{clocks.h,COscillator}
class KESTRUNE_API COscillator : public CXMLFolder {
public:
  COscillator();                                  ///< Every member has its default text.
  COscillator(const COscillator &rhs);            ///< Copies all members.
  ~COscillator() override;                        ///< Does not save.
  COscillator &operator=(const COscillator &rhs); ///< Copies all members.

  void Init() override; ///< Sets all tags, and the texts that have a default in the table.
  /// The text of "Value".
  CString Key() const override;
  void pushMembers() override;

  /// The number of the oscillator, in decimal. Throws CKRXException* (text 101) if the text is not one.
  int Value() const;
  /// The code of the oscillator, a decimal number. Same exception as Value.
  int Encoding() const;
  /// The text to show to users; valid until the member changes.
  const char *Display() const;

private:
  struct Members;

  CXMLAttribute m_value;
  CXMLElement m_encoding;
  CXMLElement m_display;
};

/// The oscillators of one clock rate. Every search of an empty collection returns a default oscillator with value 1,
/// encoding 1 and display text "OSC1". It is not an item; the collection owns it until its own destruction and resets
/// it to these values at each such search.
class KESTRUNE_API COscillators : public CXMLCollectionFolder2 {
public:
  COscillators();                                   ///< Without items.
  COscillators(const COscillators &rhs);            ///< Copies all items.
  ~COscillators() override;                         ///< Destroys the items.
  COscillators &operator=(const COscillators &rhs); ///< Copies all items.

  void Init() override; ///< Sets the tags of the list and its items.
  /// \copydoc CXMLCollectionFolder::Load
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// The item at `index`; throws kestrune::BadIndex outside the list. @{
  COscillator *operator[](int index);
  const COscillator *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<COscillator> begin();
  kestrune::ItemIterator<COscillator> end();
  kestrune::ItemIterator<const COscillator> begin() const;
  kestrune::ItemIterator<const COscillator> end() const;
  ///@}
  /// The first item with that "Value", or null; the default oscillator if the collection is empty. Throws
  /// CKRXException* (text 101) when it reaches an item whose "Value" is not a number. @{
  COscillator *Find(int value);
  const COscillator *Find(int value) const { return mutableOf(*this).Find(value); }
  ///@}
  /// The first item with that "Display", ignoring case and white space, or null; the default oscillator if the
  /// collection is empty. @{
  COscillator *Find(const char *display);
  const COscillator *Find(const char *display) const { return mutableOf(*this).Find(display); }
  ///@}
  /// The first item with that "Encoding". Same result and exception as the search by "Value". @{
  COscillator *FindByEncoding(int encoding);
  const COscillator *FindByEncoding(int encoding) const { return mutableOf(*this).FindByEncoding(encoding); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;

private:
  template <class Matches>
  COscillator *findOrDefault(Matches matches);

  mutable kestrune::ItemPointer m_default; // created at the first search that needs it
};

/// A clock rate with its multipliers and oscillators.
/// \members{clocks.cpp,CClock}
/// \fields{clocks.h,CClock}
class KESTRUNE_API CClock : public CXMLFolder {
public:
  CClock();                             ///< Every member has its default text.
  CClock(const CClock &rhs);            ///< Copies all members.
  ~CClock() override;                   ///< Does not save.
  CClock &operator=(const CClock &rhs); ///< Copies all members.

  void Init() override; ///< Sets all tags, and the texts that have a default in the table.
  /// The text of "Value".
  CString Key() const override;
  void pushMembers() override;

  /// The rate in kHz. Throws CKRXException* (text 101) if the text is not a number.
  double Value() const;
  /// The text to show to users, such as "10 MHz"; valid until the member changes.
  const char *Display() const;
  /// Text of any form; valid until the member changes.
  const char *Description() const;
  /// The divider from clock to cycle. Throws CKRXException* (text 101) if the text is not a number.
  double CycleDivider() const;
  /// The code of the clock rate, a text of any form; valid until the member changes.
  const char *Encoding() const;
  /// The multipliers of this rate: a member of the clock. @{
  CMultipliers *Multipliers();
  const CMultipliers *Multipliers() const { return &m_multipliers; }
  ///@}
  /// True for 1, TRUE and YES, false for 0, FALSE and NO, ignoring case and white space. Throws CKRXException* (text
  /// 132) for any other text, including an empty one.
  bool Uart() const;
  /// The oscillators of this rate: a member of the clock. @{
  COscillators *Oscillators();
  const COscillators *Oscillators() const { return &m_oscillators; }
  ///@}

private:
  struct Members;

  CXMLAttribute m_value;
  CXMLElement m_display;
  CXMLElement m_description;
  CXMLElement m_cycleDivider;
  CXMLElement m_encoding;
  CMultipliers m_multipliers;
  CXMLElement m_uart;
  COscillators m_oscillators;
};

/// The clock rates of one scheme.
class KESTRUNE_API CClocks : public CXMLCollectionFolder {
public:
  CClocks();                              ///< Without items.
  CClocks(const CClocks &rhs);            ///< Copies all items.
  ~CClocks() override;                    ///< Destroys the items.
  CClocks &operator=(const CClocks &rhs); ///< Copies all items.

  void Init() override; ///< Sets the tags of the list and its items.
  /// \copydoc CXMLCollectionFolder::Load
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// The item at `index`; throws kestrune::BadIndex outside the list. @{
  CClock *operator[](int index);
  const CClock *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// The items in their order, for loops and algorithms: as pointers. @{
  kestrune::ItemIterator<CClock> begin();
  kestrune::ItemIterator<CClock> end();
  kestrune::ItemIterator<const CClock> begin() const;
  kestrune::ItemIterator<const CClock> end() const;
  ///@}
  /// The first item with that "Value", in kHz, or null; values that differ by no more than DBL_EPSILON count as equal.
  /// Throws CKRXException* (text 101) when it reaches an item whose "Value" is not a number. @{
  CClock *Find(double value);
  const CClock *Find(double value) const { return mutableOf(*this).Find(value); }
  ///@}
  /// The first item with that "Display", case-sensitive, ignoring white space; null if there is none or for null. @{
  CClock *FindByDisplay(const char *display);
  const CClock *FindByDisplay(const char *display) const { return mutableOf(*this).FindByDisplay(display); }
  ///@}
  /// The first item with that "Encoding", case-sensitive, ignoring white space; null if there is none or for null. @{
  CClock *FindByEncoding(const char *encoding);
  const CClock *FindByEncoding(const char *encoding) const { return mutableOf(*this).FindByEncoding(encoding); }
  ///@}

protected:
  CXMLFolder *NewFolder() override;
};
