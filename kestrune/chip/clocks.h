#pragma once

#include "kestrune/xml/xml_collection.h"

#include <memory>

// The clock rates of a clocking scheme, and what belongs to each rate. The accessors of numbers read the member's text
// at each call: white space may stand in front, an empty text is 0, and anything behind the number throws
// CKRXException* (text 101). The accessors of texts give the member's own text, valid until the member changes. The
// searches give the first item that matches, which stays the collection's, or null; a null text matches nothing. A
// search by number throws when it reaches an item whose text is no number.

/// A factor between the crystal's rate and the rate of the core.
class KESTRUNE_API CMultiplier : public CXMLFolder {
public:
  CMultiplier();
  CMultiplier(const CMultiplier &rhs);
  ~CMultiplier() override;
  CMultiplier &operator=(const CMultiplier &rhs);

  void Init() override;
  /// The text of "Value".
  CString Key() const override;
  void pushMembers() override;

  double Value() const;
  /// The text for people, such as "1/2".
  const char *Display() const;
  const char *Description() const;
  const char *Encoding() const;
  /// A number by the rules of C for its base. Throws on the default, "Unassigned".
  int Cpu() const;
  /// As Cpu.
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
  CMultipliers();
  CMultipliers(const CMultipliers &rhs);
  ~CMultipliers() override;
  CMultipliers &operator=(const CMultipliers &rhs);

  void Init() override;
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// The item at `index`; throws std::out_of_range outside the list.
  CMultiplier *operator[](int index);
  /// By "Value", to the last bits of a number below 1.
  CMultiplier *Find(double value);
  /// By "Display"; white space does not count, case does.
  CMultiplier *FindByDisplay(const char *display);
  /// By "Encoding", in the same way.
  CMultiplier *FindByEncoding(const char *encoding);

protected:
  CXMLFolder *NewFolder() override;
};

/// An oscillator of a clock rate.
class KESTRUNE_API COscillator : public CXMLFolder {
public:
  COscillator();
  COscillator(const COscillator &rhs);
  ~COscillator() override;
  COscillator &operator=(const COscillator &rhs);

  void Init() override;
  /// The text of "Value".
  CString Key() const override;
  void pushMembers() override;

  /// A decimal number.
  int Value() const;
  /// A decimal number.
  int Encoding() const;
  /// The text for people.
  const char *Display() const;

private:
  struct Members;

  CXMLAttribute m_value;
  CXMLElement m_encoding;
  CXMLElement m_display;
};

/// The oscillators of one clock rate. A collection without items behaves as if it had one of value 1, encoding 1 and
/// display text "OSC1", whatever is searched for. That object is no item; the collection owns it, gives it these three
/// values again at each search, and keeps it to its own end.
class KESTRUNE_API COscillators : public CXMLCollectionFolder2 {
public:
  COscillators();
  COscillators(const COscillators &rhs);
  ~COscillators() override;
  COscillators &operator=(const COscillators &rhs);

  void Init() override;
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// The item at `index`; throws std::out_of_range outside the list.
  COscillator *operator[](int index);
  /// By "Value".
  COscillator *Find(int value);
  /// By "Display", without regard to white space and case.
  COscillator *Find(const char *display);
  /// By "Encoding".
  COscillator *FindByEncoding(int encoding);

protected:
  CXMLFolder *NewFolder() override;

private:
  template <class Matches>
  COscillator *findOrDefault(Matches matches);

  std::unique_ptr<COscillator> m_default; // made when it is first asked for
};

/// A clock rate with its multipliers and oscillators.
class KESTRUNE_API CClock : public CXMLFolder {
public:
  CClock();
  CClock(const CClock &rhs);
  ~CClock() override;
  CClock &operator=(const CClock &rhs);

  void Init() override;
  /// The text of "Value".
  CString Key() const override;
  void pushMembers() override;

  /// The rate in kHz.
  double Value() const;
  /// The text for people, such as "10 MHz".
  const char *Display() const;
  const char *Description() const;
  double CycleDivider() const;
  const char *Encoding() const;
  /// The multipliers of this rate: a member of the clock.
  CMultipliers *Multipliers();
  /// True for 1, TRUE and YES, false for 0, FALSE and NO, without regard to case and white space. Throws CKRXException*
  /// (text 132) for any other text, the empty one too.
  bool Uart() const;
  /// The oscillators of this rate: a member of the clock.
  COscillators *Oscillators();

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
  CClocks();
  CClocks(const CClocks &rhs);
  ~CClocks() override;
  CClocks &operator=(const CClocks &rhs);

  void Init() override;
  long Load(MSXML::IXMLDOMElement *parent) override;

  /// The item at `index`; throws std::out_of_range outside the list.
  CClock *operator[](int index);
  /// By "Value", in kHz; a value of 1 kHz and more has to be equal.
  CClock *Find(double value);
  /// By "Display"; white space does not count, case does.
  CClock *FindByDisplay(const char *display);
  /// By "Encoding", in the same way.
  CClock *FindByEncoding(const char *encoding);

protected:
  CXMLFolder *NewFolder() override;
};
