#pragma once

#include "kestrune/errors/result_codes.h"
#include "kestrune/export.h"
#include "kestrune/platform/c_string.h"
#include "kestrune/xml/xml_dom.h"

#include <compare>
#include <concepts>
#include <string_view>

/// \file
/// The values of a record: one text each.

class CXMLPersistent;

namespace kestrune {
/// The default text of a value, and its tag if none was given.
constexpr const char *kUnassigned = "Unassigned";
/// The default text of a hexadecimal value.
constexpr const char *kHexDefault = "0xFFFF";
/// The same as constants that need no copy of a text, and the default tag. @{
inline constexpr CString kUnassignedText = CString::OfLiteral(kUnassigned);
inline constexpr CString kHexDefaultText = CString::OfLiteral(kHexDefault);
inline constexpr CString kUndefinedTag = CString::OfLiteral("Undefined");
///@}

/// A number that a value does not keep as it is.
template <class Number>
concept OtherThanInt = std::floating_point<Number> || std::same_as<Number, char>;

/// A text of the standard library, or a value that is no `Value`.
template <class Text, class Value>
concept TextFor = StandardText<Text> ||(std::derived_from<Text, CXMLPersistent> && !std::derived_from<Text, Value>);

struct ValueAccess;

// A value as a number, for sums and comparisons. A value by itself is a text: `a - b` of two values does not compile,
// and `a + 1` is ambiguous.

/// The text as a number: decimal, hexadecimal with 0x, or octal with a leading 0. An empty text is 0, and a number
/// outside the range of int becomes its limit. Throws CKRXException* (text 101) when anything is left after the number.
int Number(const CXMLPersistent &value);
/// The text as a hexadecimal number, with 0x or without. An empty text is 0, a negative number wraps, and one past 32
/// bits becomes 0xFFFFFFFF. Same exception as Number.
KESTRUNE_API unsigned int Hex(const CXMLPersistent &value);
/// The text as a number with a fraction, such as "0.5", whatever the locale. An empty text is 0. Same exception as
/// Number.
KESTRUNE_API double Real(const CXMLPersistent &value);
} // namespace kestrune

/// One named text that reads itself from an XML element and writes itself to one: the base of all persistent classes.
/// The CString base is the value's text, the tag its name in the file. Numbers and truth values keep the text of the
/// file and are converted on request, so that a value nobody converts is written back unchanged. The default text is
/// "Unassigned", the default tag "Undefined". CXMLPersistent itself is stored as an attribute.
class KESTRUNE_API CXMLPersistent : public CString {
public:
  /// The default text and the default tag.
  CXMLPersistent() noexcept : CString(kestrune::kUnassignedText), m_tag(kestrune::kUndefinedTag) {}
  /// The default text with that tag.
  explicit CXMLPersistent(CString &tag);
  /// Starts empty and takes tag and text of `rhs`, as the assignment does.
  CXMLPersistent(const CXMLPersistent &rhs);

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual" // every record's Init() hides them, as intended
  /// Sets the tag and the default text; null means "Unassigned" for either. A `value` of 0 also means "Unassigned", not
  /// "0"; any other number is assigned in decimal. @{
  virtual void Init(const char *tag, int value);
  virtual void Init(const char *tag, const char *value);
  ///@}
#pragma GCC diagnostic pop

protected:
  /// Sets tag and text to their defaults. A record sets the tags of all members, and the texts that have a default in
  /// its table, and rebuilds its member list.
  virtual void Init();

public:
  /// Non-zero if an assignment has changed the text since the flag was last cleared.
  virtual unsigned char GetModified() const;
  /// Sets or clears the modified flag.
  virtual void PutModified(unsigned char modified);
  /// A copy of the tag.
  virtual CString GetTag() const;
  /// Replaces the tag.
  virtual void PutTag(const CString &tag);
  /// Whether this is a folder, with members of its own.
  virtual bool isFolder();
  virtual ~CXMLPersistent() = default; ///< Does not save.

  /// Writes the value into `parent`, which is at depth `level`, and returns the element that contains it. Throws
  /// _com_error.
  virtual IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level);
  /// Reads the value from `parent`, the element of the enclosing folder. Returns S_OK, or a positive remark if the file
  /// lacks the value, which then keeps its text. The text is not checked, and the flag is not changed.
  virtual long Load(MSXML::IXMLDOMElement *parent);

  /// Assigns a text, and sets the flag if it differs from the current one; null counts as empty.
  virtual CXMLPersistent &operator=(const char *text);
  /// Assigns the number in decimal.
  CXMLPersistent &operator=(int value);
  template <kestrune::OtherThanInt Number>
  CXMLPersistent &operator=(Number) = delete; // it would lose its fraction, or become the code of a character
  /// Assigns a text of the standard library, as the assignment of a `const char *` does.
  template <kestrune::StandardText Text>
  CXMLPersistent &operator=(const Text &text) {
    return *this = static_cast<const char *>(CString(std::string_view(text)));
  }
  /// Copies the text, and the tag unless that of `rhs` is empty. Sets the flag if the texts differ.
  CXMLPersistent &operator=(const CXMLPersistent &rhs);

  /// The text as a number: decimal, hexadecimal with 0x, or octal with a leading 0. An empty text is 0, and a number
  /// outside the range of int becomes its limit. Throws CKRXException* (text 101) when anything is left after the
  /// number. The second is only for where an int is wanted: a constant value stays a text everywhere else. @{
  operator int();
  template <std::same_as<int> Int>
  operator Int() const {
    return toInt();
  }
  ///@}
  /// Compares as numbers, also with 0, which would otherwise be taken for a null text. Throws as the conversion of the
  /// value's class. @{
  template <std::derived_from<CXMLPersistent> Value, std::same_as<int> Int>
  friend bool operator==(const Value &value, Int number) {
    return static_cast<int>(value) == number;
  }
  template <std::derived_from<CXMLPersistent> Value, std::same_as<int> Int>
  friend bool operator==(Int number, const Value &value) {
    return number == static_cast<int>(value);
  }
  template <std::derived_from<CXMLPersistent> Value, std::same_as<int> Int>
  friend std::strong_ordering operator<=>(const Value &value, Int number) {
    return static_cast<int>(value) <=> number;
  }
  template <std::derived_from<CXMLPersistent> Value, std::same_as<int> Int>
  friend std::strong_ordering operator<=>(Int number, const Value &value) {
    return number <=> static_cast<int>(value);
  }
  ///@}

#pragma GCC diagnostic push
#ifdef __clang__
#pragma GCC diagnostic ignored "-Wdeprecated-volatile"
#else
#pragma GCC diagnostic ignored "-Wvolatile"
#endif
  /// The text, valid until it changes, where a std::string_view is initialised or passed by value. `volatile` keeps it
  /// away from the constructors of std::string_view, which takes a `const char *` too. A CString has View() instead:
  /// many are returned by value, and a view of one would outlive it.
  operator const volatile std::string_view() const noexcept { return View(); }
#pragma GCC diagnostic pop

protected:
  /// Sets the tag; null means "Unassigned".
  void setTag(const char *tag);
  /// Throws the CKRXException* (text 101) for a text that does not convert, with tag and text in its message.
  [[noreturn]] void throwBadValue() const;
  /// What the conversion to int returns.
  int toInt() const;

  CString m_tag;                ///< The name in the file.
  unsigned char m_modified = 0; ///< The modified flag.

private:
  friend struct kestrune::ValueAccess; ///< For records, which know the classes of their fields.
  friend unsigned int kestrune::Hex(const CXMLPersistent &value);
  friend double kestrune::Real(const CXMLPersistent &value);
};

/// A value stored as an attribute of its folder's element.
class KESTRUNE_API CXMLAttribute : public CXMLPersistent {
public:
  CXMLAttribute() = default;               ///< The default text.
  CXMLAttribute(const CXMLAttribute &rhs); ///< Copies tag and text.
  /// Copies the text, and the tag unless that of `rhs` is empty.
  CXMLAttribute &operator=(const CXMLAttribute &rhs);
  CXMLAttribute &operator=(const char *text) override;
  /// Assigns the number in decimal.
  CXMLAttribute &operator=(int value);
  template <kestrune::OtherThanInt Number>
  CXMLAttribute &operator=(Number) = delete; // it would lose its fraction, or become the code of a character
  /// Assigns a text of the standard library, or that of another kind of value, as the assignment of a `const char *`
  /// does.
  template <kestrune::TextFor<CXMLAttribute> Text>
  CXMLAttribute &operator=(const Text &text) {
    return *this = static_cast<const char *>(CString(std::string_view(text)));
  }
};

/// A truth value, "TRUE" or "FALSE", stored as an attribute. A wrong text is only detected when it is converted.
class KESTRUNE_API CXMLBoolAttribute : public CXMLAttribute {
public:
  CXMLBoolAttribute() = default;                   ///< The default text.
  CXMLBoolAttribute(const CXMLBoolAttribute &rhs); ///< Copies tag and text.
  /// Copies the text, and the tag unless that of `rhs` is empty.
  CXMLBoolAttribute &operator=(const CXMLBoolAttribute &rhs);

  using CXMLAttribute::Init;
  /// Sets the tag, null meaning "Unassigned", and assigns "TRUE" or "FALSE".
  virtual void Init(const char *tag, bool value);

  using CXMLAttribute::operator=;
  /// Assigns "TRUE" or "FALSE".
  CXMLBoolAttribute &operator=(bool value);
  /// The platform's TRUE and FALSE are numbers: 0 becomes "FALSE", anything else "TRUE".
  CXMLBoolAttribute &operator=(int value) { return *this = value != 0; }

  /// 1 for TRUE and 0 for FALSE, ignoring case. Throws CKRXException* (text 101) for any other text. @{
  operator int();
  operator int() const;
  ///@}
  /// True if the text is TRUE: despite its name it returns the value itself, not the opposite. Throws like the
  /// conversion to int. @{
  bool operator!();
  bool operator!() const;
  ///@}

protected:
  void Init() override;
};

/// A value stored as a child element of its folder's element.
class KESTRUNE_API CXMLElement : public CXMLPersistent {
public:
  CXMLElement() = default;             ///< The default text.
  CXMLElement(const CXMLElement &rhs); ///< Copies tag and text.
  /// Copies the text, and the tag unless that of `rhs` is empty.
  CXMLElement &operator=(const CXMLElement &rhs);
  IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level) override;
  long Load(MSXML::IXMLDOMElement *parent) override;
  CXMLElement &operator=(const char *text) override;
  /// Assigns the number in decimal.
  CXMLElement &operator=(int value);
  template <kestrune::OtherThanInt Number>
  CXMLElement &operator=(Number) = delete; // it would lose its fraction, or become the code of a character
  /// Assigns a text of the standard library, or that of another kind of value, as the assignment of a `const char *`
  /// does.
  template <kestrune::TextFor<CXMLElement> Text>
  CXMLElement &operator=(const Text &text) {
    return *this = static_cast<const char *>(CString(std::string_view(text)));
  }
};

/// A hexadecimal number, such as "0x1F", stored as a child element. The default text is "0xFFFF".
class KESTRUNE_API CXMLHexElement : public CXMLElement {
public:
  /// The default text.
  CXMLHexElement() noexcept { CString::operator=(kestrune::kHexDefaultText); }
  CXMLHexElement(const CXMLHexElement &rhs); ///< Copies tag and text.
  /// Copies the text, and the tag unless that of `rhs` is empty.
  CXMLHexElement &operator=(const CXMLHexElement &rhs);
  using CXMLElement::Init;
  /// As the base, but numbers are assigned in hexadecimal, and 0 as "0x0". @{
  void Init(const char *tag, int value) override;
  void Init(const char *tag, const char *value) override;
  ///@}
  /// Unlike the base, sets the flag if the text differs.
  long Load(MSXML::IXMLDOMElement *parent) override;
  /// As the base, but "0" becomes "0x0", and a text without "0x" is reported to the debug channel.
  CXMLHexElement &operator=(const char *text) override;
  /// Assigns the number as "0x" and capital hexadecimal digits.
  CXMLHexElement &operator=(int value);
  template <kestrune::OtherThanInt Number>
  CXMLHexElement &operator=(Number) = delete; // it would lose its fraction, or become the code of a character
  /// Assigns a text of the standard library, or that of another kind of value, as the assignment of a `const char *`
  /// does.
  template <kestrune::TextFor<CXMLHexElement> Text>
  CXMLHexElement &operator=(const Text &text) {
    return *this = static_cast<const char *>(CString(std::string_view(text)));
  }

protected:
  void Init() override;
};

namespace kestrune {

inline int Number(const CXMLPersistent &value) { return value; }

/// The truth value: true for TRUE and false for FALSE, ignoring case. Throws CKRXException* (text 101) for any other
/// text. Unlike `!` its opposite can be asked for: `!IsTrue(flag)`.
inline bool IsTrue(const CXMLBoolAttribute &flag) { return flag.operator int() != 0; }

} // namespace kestrune
