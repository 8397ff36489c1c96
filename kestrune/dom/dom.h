#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/com.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

/// \file
/// The XML document tree. A document owns its nodes, and a node pointer keeps the document alive. Names and texts come
/// in and go out in the code page. A failing operation throws _com_error. One document belongs to one thread at a time.

namespace MSXML {

class IXMLDOMDocument;
class IXMLDOMElement;
class IXMLDOMNodeList;

} // namespace MSXML

/// The tree from inside, which is the library's own.
namespace kestrune::dom {

/// Of the library's own: see member_access.h there.
MSXML::IXMLDOMNodeList FindElements(MSXML::IXMLDOMElement *parent, const CString &tag);

/// A text that is none of the standard library: a CString or what derives from it, a _bstr_t, a _variant_t (the null
/// variant counts as empty), or wide text.
template <class Text>
concept DomString = std::derived_from<Text, CString> || std::derived_from<Text, _variant_t> ||
    std::is_convertible_v<const Text &, const wchar_t *>;

/// The bytes of a text in any form; null counts as empty. It is for the length of a call.
class DomText {
public:
  /// Refers to `text`, or converts wide text to the code page. @{
  template <class Text>
  explicit DomText(const Text &text) {
    if constexpr (std::derived_from<Text, CString>)
      m_view = static_cast<const CString &>(text).View();
    else if constexpr (std::derived_from<Text, _variant_t>)
      m_view = text.text().View();
    else if constexpr (std::is_convertible_v<const Text &, const char *>)
      refer(text);
    else if constexpr (DomString<Text>)
      m_view = (m_converted = static_cast<const wchar_t *>(text)).View();
    else
      m_view = text;
  }
  DomText(const DomText &) = delete;
  DomText &operator=(const DomText &) = delete;
  ~DomText() = default;
  ///@}
  /// The bytes, in the code page.
  std::string_view view() const noexcept { return m_view; }

private:
  void refer(const char *text) {
    if (text != nullptr)
      m_view = text;
  }

  CString m_converted;
  std::string_view m_view;
};

} // namespace kestrune::dom

namespace MSXML {

using kestrune::dom::DomString;
using kestrune::dom::DomText;

/// A node: an element, a text, or a processing instruction. Each text that an operation takes may be a string view, a
/// literal, a CString, a _bstr_t, a _variant_t, or wide.
class KESTRUNE_API IXMLDOMNode {
public:
  IXMLDOMNode(const IXMLDOMNode &) = delete;
  IXMLDOMNode &operator=(const IXMLDOMNode &) = delete;

  /// Counts the references to the document, which lives as long as there is one. @{
  void AddRef() const noexcept;
  void Release() const noexcept;
  ///@}

  /// The document that made the node.
  _com_ptr_t<IXMLDOMDocument> GetownerDocument() const;

  /// Adds `child` as the last child of this element and returns it. Throws E_INVALIDARG where this node is not an
  /// element, where `child` is of another document, has a parent, is the root, or is a processing instruction, and
  /// where this element is below `child`.
  _com_ptr_t<IXMLDOMNode> appendChild(IXMLDOMNode *child);

  /// The text of a text node; of an element all text below it. An element without child elements gives its text to the
  /// last character. The texts that elements of one parsed document join from their descendants are bounded by the size
  /// of the file; beyond the bound the call fails, and so does IXMLDOMDocument::CheckReadable.
  CString Gettext() const;

  /// Replaces what the node holds by `text`. Child nodes have no parent after that, and can be added again.
  void Puttext(std::string_view text);
  /// The same with a text in another form.
  template <DomString Text>
  void Puttext(const Text &text) {
    Puttext(DomText(text).view());
  }

  /// The document that made the node, which owns it: what GetownerDocument returns.
  IXMLDOMDocument *const ownerDocument;

protected:
  /// Nodes are made and destroyed by their document only. @{
  explicit IXMLDOMNode(IXMLDOMDocument *document) : ownerDocument(document) {}
  ~IXMLDOMNode() = default;
  ///@}
};

/// The descendants of an element that have one name, in document order. Nothing is collected beforehand. It is to be
/// used while its element lives.
class KESTRUNE_API IXMLDOMNodeList {
public:
  /// The elements, by their index from 0.
  class KESTRUNE_API Items {
  public:
    /// The one at `index`, or null. Reading in ascending order costs nothing extra.
    _com_ptr_t<IXMLDOMElement> operator[](long index) const;

  private:
    friend class IXMLDOMNodeList;
    Items(const IXMLDOMElement *root, std::uint32_t name);
    std::uint32_t indexed(long index) const;

    const IXMLDOMElement *m_root;
    std::uint32_t m_name;
    bool m_indexed;            // answers come from the index of the document
    std::uint32_t m_first = 0; // number of the first of them in that, or 0
    // The last answer, from which the next search goes on.
    mutable long m_lastIndex = -1;
    mutable const IXMLDOMElement *m_last;
  };

  /// How many there are.
  long Getlength() const;
  /// The one at `index`, from 0, or null. Reading in ascending order costs nothing extra.
  _com_ptr_t<IXMLDOMElement> Getitem(long index) const;
  /// The list itself, for programs that write `->`, as to a pointer. @{
  const IXMLDOMNodeList *operator->() const noexcept { return this; }
  Items item; ///< `list->item[0]` is `list.Getitem(0)`.
  ///@}

private:
  friend class IXMLDOMElement;
  friend IXMLDOMNodeList kestrune::dom::FindElements(MSXML::IXMLDOMElement *parent, const CString &tag);
  IXMLDOMNodeList(const IXMLDOMElement *root, std::string_view name);
  IXMLDOMNodeList(const IXMLDOMElement *root, std::uint32_t name) : item(root, name) {}
};

/// An element with its attributes, in the order of their first setting.
class KESTRUNE_API IXMLDOMElement : public IXMLDOMNode {
public:
  /// The name of the element.
  CString GettagName() const;
  /// The null variant where the element has no attribute of that name.
  _variant_t getAttribute(std::string_view name) const;
  /// Creates the attribute as the last one, or replaces its text. Takes any text: a save checks it.
  void setAttribute(std::string_view name, std::string_view text);
  /// All descendant elements of that name, at any depth.
  IXMLDOMNodeList getElementsByTagName(std::string_view name) const { return {this, name}; }

  /// The same with texts in another form. @{
  template <DomString Name>
  _variant_t getAttribute(const Name &name) const {
    return getAttribute(DomText(name).view());
  }
  template <class Name, class Text>
  requires(DomString<Name> || DomString<Text>) void setAttribute(const Name &name, const Text &text) {
    setAttribute(DomText(name).view(), DomText(text).view());
  }
  template <DomString Name>
  IXMLDOMNodeList getElementsByTagName(const Name &name) const {
    return getElementsByTagName(DomText(name).view());
  }
  ///@}

protected:
  using IXMLDOMNode::IXMLDOMNode;
  ~IXMLDOMElement() = default; ///< Done by the document.
};

/// Where and why a file is not well-formed.
struct ParseError {
  long line = 0;   ///< Counts from 1; 0 if the file could not be read.
  long column = 0; ///< Counts from 1; 0 if the file could not be read.
  CString reason;  ///< The reason in words; empty without a failure.
};

/// A document and all its nodes: loaded from a file once, or built and saved.
class KESTRUNE_API IXMLDOMDocument {
public:
  /// A new, empty document. Fails with CO_E_NOTINITIALIZED on a thread without COM.
  static HRESULT CreateInstance(_com_ptr_t<IXMLDOMDocument> &document);

  IXMLDOMDocument(const IXMLDOMDocument &) = delete;
  IXMLDOMDocument &operator=(const IXMLDOMDocument &) = delete;

  /// Counts the references; the last Release destroys the document and its nodes. @{
  void AddRef() const noexcept { ++m_references; }
  void Release() const noexcept {
    if (--m_references == 0)
      destroy();
  }
  ///@}

  /// Has no effect: documents are only parsed, never validated, and a load returns after parsing. @{
  void PutvalidateOnParse(bool) {}
  void Putasync(bool) {}
  ///@}

  /// Parses the file into this document, which must be empty. Nothing outside the file is ever opened. Returns false
  /// when it is unreadable or not well-formed, also where a reference to an undeclared entity would lose a text; the
  /// document is empty then, and GetparseError gives the reason.
  bool load(const char *path);
  /// The same with a text, which has the bytes of a file, its byte order mark and encoding included.
  bool loadXML(std::string_view text);
  /// The failure of the last load; valid as long as the document.
  const ParseError &GetparseError() const noexcept;

  /// The root element, or null.
  _com_ptr_t<IXMLDOMElement> GetdocumentElement() const noexcept;
  /// Makes `root`, an element of this document that has no parent, the root.
  void PutdocumentElement(IXMLDOMElement *root);

  /// A new node of this document that has no parent yet. Any name and any text is taken: a save checks them. @{
  _com_ptr_t<IXMLDOMElement> createElement(std::string_view name);
  _com_ptr_t<IXMLDOMNode> createTextNode(std::string_view text);
  _com_ptr_t<IXMLDOMNode> createProcessingInstruction(std::string_view target, std::string_view data);
  template <DomString Name>
  _com_ptr_t<IXMLDOMElement> createElement(const Name &name) {
    return createElement(DomText(name).view());
  }
  template <DomString Text>
  _com_ptr_t<IXMLDOMNode> createTextNode(const Text &text) {
    return createTextNode(DomText(text).view());
  }
  template <class Target, class Data>
  requires(DomString<Target> ||
           DomString<Data>) _com_ptr_t<IXMLDOMNode> createProcessingInstruction(const Target &target,
                                                                                const Data &data) {
    return createProcessingInstruction(DomText(target).view(), DomText(data).view());
  }
  ///@}

  /// Adds a processing instruction before the root, after those added earlier.
  _com_ptr_t<IXMLDOMNode> appendChild(IXMLDOMNode *instruction);

  /// Writes the document to the file, in UTF-8 and in place. The whole text is checked before the file is
  /// touched: a character that XML cannot carry, bytes that are not valid in the code page, or a bad name fail here.
  /// The file is as it was then, and after any failure before its first byte is written; after a later one the old
  /// bytes are written back, as far as the disk takes them. Returns S_OK.
  HRESULT save(const char *path) const;
  /// Puts the bytes that `save` would write into `text`. Leaves `text` alone where that would fail.
  void saveXML(std::string &text) const;

  /// Fails when some text of this document could not be read because it was too large to join.
  void CheckReadable() const;

protected:
  /// CreateInstance makes a document, and the last Release destroys it. @{
  IXMLDOMDocument() = default;
  ~IXMLDOMDocument() = default;
  ///@}

private:
  void destroy() const noexcept;

  mutable unsigned long m_references = 0;
};

inline void IXMLDOMNode::AddRef() const noexcept { ownerDocument->AddRef(); }
inline void IXMLDOMNode::Release() const noexcept { ownerDocument->Release(); }

/// A pointer that keeps the document of its node alive. @{
using IXMLDOMNodePtr = _com_ptr_t<IXMLDOMNode>;
using IXMLDOMElementPtr = _com_ptr_t<IXMLDOMElement>;
using IXMLDOMDocumentPtr = _com_ptr_t<IXMLDOMDocument>;
///@}

} // namespace MSXML

using MSXML::IXMLDOMDocument;
using MSXML::IXMLDOMDocumentPtr;
using MSXML::IXMLDOMElement;
using MSXML::IXMLDOMElementPtr;
using MSXML::IXMLDOMNode;
using MSXML::IXMLDOMNodePtr;
