#pragma once

#include "kestrune/errors/result_codes.h"
#include "kestrune/export.h"
#include "kestrune/platform/c_string.h"
#include "kestrune/xml/xml_dom.h"

namespace kestrune {
/// The text of a value to begin with, and its tag where none was given.
constexpr const char *kUnassigned = "Unassigned";
/// The text of a hexadecimal value to begin with.
constexpr const char *kHexDefault = "0xFFFF";
} // namespace kestrune

/// One named piece of text that reads itself from an XML element and writes itself to one: the root of all persistent
/// classes. The CString base is the value's text, the tag its name in the file. Numbers and truth values are kept as
/// the text of the file and converted when somebody asks, so that what nobody reads is written back as it was. The text
/// starts as "Unassigned", the tag as "Undefined". As a value of its own it is stored as an attribute.
class KESTRUNE_API CXMLPersistent : public CString {
public:
  CXMLPersistent();
  /// As the default, with that tag.
  explicit CXMLPersistent(CString &tag);
  CXMLPersistent(const CXMLPersistent &rhs);

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual" // hidden by each record's Init(), as is meant
  /// Sets tag and default text; null gives "Unassigned" for either. A `value` of 0 gives "Unassigned", not "0"; any
  /// other number is assigned in decimal.
  virtual void Init(const char *tag, int value);
  virtual void Init(const char *tag, const char *value);
#pragma GCC diagnostic pop

protected:
  virtual void Init();

public:
  /// Non-zero when an assignment has changed the text since the flag was last cleared.
  virtual unsigned char GetModified() const;
  virtual void PutModified(unsigned char modified);
  virtual CString GetTag() const;
  virtual void PutTag(const CString &tag);
  /// Whether the value is a folder with members of its own.
  virtual bool isFolder();
  virtual ~CXMLPersistent();

  /// Writes the value into `parent`, and returns the element that holds it. `level` is the depth of `parent`. Throws
  /// _com_error.
  virtual IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level);
  /// Reads the value from `parent`, the element of the enclosing folder. Returns S_OK, or a remark when the file lacks
  /// the value, which then keeps its text. The text is taken unchecked and the flag is not touched.
  virtual long Load(MSXML::IXMLDOMElement *parent);

  /// Assigns a text, and sets the flag when it differs from the present one; null counts as empty.
  virtual CXMLPersistent &operator=(const char *text);
  /// Assigns the number in decimal.
  CXMLPersistent &operator=(int value);
  /// Copies the text, and the tag unless that of `rhs` is empty. Sets the flag when the texts differ.
  CXMLPersistent &operator=(const CXMLPersistent &rhs);

  /// The text as a number: decimal, hexadecimal with 0x, octal with a leading 0; an empty text is 0, and past the range
  /// the limit of int is given. Throws CKRXException* (text 101) when anything is left behind the number.
  operator int();

protected:
  /// Replaces the tag, by "Unassigned" where `tag` is null.
  void setTag(const char *tag);
  /// Throws the exception of a text that is no number or truth value, with tag and text in its message.
  [[noreturn]] void throwBadValue() const;

  CString m_tag;
  unsigned char m_modified = 0;
};

/// A value that is stored as an attribute of its folder's element.
class KESTRUNE_API CXMLAttribute : public CXMLPersistent {
public:
  CXMLAttribute() = default;
  CXMLAttribute(const CXMLAttribute &rhs);
  CXMLAttribute &operator=(const CXMLAttribute &rhs);
  CXMLAttribute &operator=(const char *text) override;
  CXMLAttribute &operator=(int value);
};

/// A truth value, "TRUE" or "FALSE", that is stored as an attribute. A wrong text only shows when it is converted.
class KESTRUNE_API CXMLBoolAttribute : public CXMLAttribute {
public:
  CXMLBoolAttribute() = default;
  CXMLBoolAttribute(const CXMLBoolAttribute &rhs);
  CXMLBoolAttribute &operator=(const CXMLBoolAttribute &rhs);

  using CXMLAttribute::Init;
  virtual void Init(const char *tag, bool value);

  using CXMLAttribute::operator=;
  CXMLBoolAttribute &operator=(bool value);
  /// A number as a truth value, as the platform's TRUE and FALSE are numbers: "FALSE" for 0, else "TRUE".
  CXMLBoolAttribute &operator=(int value) { return *this = value != 0; }

  /// 1 for TRUE and 0 for FALSE, without regard to case. Throws CKRXException* (text 101) for any other text.
  operator int();
  operator int() const;
  /// True when the text is TRUE: the value itself, not its opposite. Throws as the conversion to int.
  bool operator!();
  bool operator!() const;

protected:
  void Init() override;
};

/// A value that is stored as a child element of its folder's element.
class KESTRUNE_API CXMLElement : public CXMLPersistent {
public:
  CXMLElement() = default;
  CXMLElement(const CXMLElement &rhs);
  CXMLElement &operator=(const CXMLElement &rhs);
  IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level) override;
  long Load(MSXML::IXMLDOMElement *parent) override;
  CXMLElement &operator=(const char *text) override;
  CXMLElement &operator=(int value);
};

/// A hexadecimal number, such as "0x1F", that is stored as a child element. The text starts as "0xFFFF".
class KESTRUNE_API CXMLHexElement : public CXMLElement {
public:
  CXMLHexElement();
  CXMLHexElement(const CXMLHexElement &rhs);
  CXMLHexElement &operator=(const CXMLHexElement &rhs);
  using CXMLElement::Init;
  /// As the base, but the number is written in hexadecimal, and 0 gives "0x0".
  void Init(const char *tag, int value) override;
  void Init(const char *tag, const char *value) override;
  /// The only Load that sets the flag when the text differs.
  long Load(MSXML::IXMLDOMElement *parent) override;
  /// As the base, but "0" becomes "0x0", and a text without "0x" is told to the debug channel.
  CXMLHexElement &operator=(const char *text) override;
  /// Assigns the number as "0x" and capital hexadecimal digits.
  CXMLHexElement &operator=(int value);

protected:
  void Init() override;
};
