#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/com.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

// The XML document tree. A document owns its nodes, and a node pointer keeps the document alive. Names and texts come
// in and go out in the code page. A failing operation throws _com_error. One document belongs to one thread at a time.

namespace kestrune::dom {
class Tree;
class Reader;
class Writer;
} // namespace kestrune::dom

namespace MSXML {

class IXMLDOMDocument;
class IXMLDOMElement;

/// A node: an element, a text, or a processing instruction.
class KESTRUNE_API IXMLDOMNode {
public:
  IXMLDOMNode(const IXMLDOMNode &) = delete;
  IXMLDOMNode &operator=(const IXMLDOMNode &) = delete;

  void AddRef() const noexcept;
  void Release() const noexcept;

  /// The document that made the node.
  _com_ptr_t<IXMLDOMDocument> GetownerDocument() const;

  /// Adds `child`, a node of the same document that stands nowhere yet, as the last child, and returns it. Anything
  /// else is E_INVALIDARG, and so is any child of a node that is no element.
  _com_ptr_t<IXMLDOMNode> appendChild(IXMLDOMNode *child);

  /// The text of a text node; of an element all text below it. An element without child elements gives its text to the
  /// last character. The texts that elements of one parsed document join from their descendants are bounded by the size
  /// of the file; beyond the bound the call fails, and so does IXMLDOMDocument::CheckReadable.
  CString Gettext() const;

  /// Replaces what the node holds by `text`.
  void Puttext(std::string_view text);

protected:
  enum class Kind : std::uint32_t { Element, Text, Instruction };

  IXMLDOMNode(IXMLDOMDocument *document, Kind kind, std::uint32_t name)
      : m_document(document), m_kind(static_cast<std::uint32_t>(kind) & 3U), m_name(name & ((1U << 30U) - 1)) {}
  ~IXMLDOMNode() = default;

  friend class IXMLDOMDocument;
  friend class IXMLDOMNodeList;
  friend class kestrune::dom::Tree;
  friend class kestrune::dom::Reader;
  friend class kestrune::dom::Writer;

  bool is(Kind kind) const { return m_kind == static_cast<std::uint32_t>(kind); }
  std::string_view ownText() const { return {m_text, m_length}; }

  IXMLDOMDocument *m_document;
  IXMLDOMElement *m_parent = nullptr;
  IXMLDOMNode *m_next = nullptr;
  const char *m_text = nullptr; // of an element only while it has no children
  std::uint32_t m_length = 0;
  std::uint32_t m_kind : 2;
  std::uint32_t m_name : 30; // tag or target, by its number in the document
};

/// The descendants of an element that have one name, in document order. Nothing is collected beforehand. It is to be
/// used while its element lives.
class KESTRUNE_API IXMLDOMNodeList {
public:
  /// How many there are.
  long Getlength() const;
  /// The one at `index`, from 0, or null. Reading in ascending order costs nothing extra.
  _com_ptr_t<IXMLDOMElement> Getitem(long index) const;

private:
  friend class IXMLDOMElement;
  IXMLDOMNodeList(const IXMLDOMElement *root, std::string_view name);

  IXMLDOMElement *next(IXMLDOMElement *after) const;

  const IXMLDOMElement *m_root;
  std::uint32_t m_name;
  // In a parsed document that nobody has changed: where the descendants begin in the name's list of elements.
  bool m_indexed = false;
  std::size_t m_begin = 0;
  // Elsewhere: the last answer, from which the walk goes on.
  mutable long m_lastIndex = -1;
  mutable IXMLDOMElement *m_last = nullptr;
};

/// An element with its attributes, which stand in the order of their first setting.
class KESTRUNE_API IXMLDOMElement : public IXMLDOMNode {
public:
  CString GettagName() const;
  /// The null variant where the element has no attribute of that name.
  _variant_t getAttribute(std::string_view name) const;
  /// Creates the attribute, behind those that are there, or replaces its text. Takes any text: a save checks it.
  void setAttribute(std::string_view name, std::string_view text);
  /// All descendant elements of that name, at any depth.
  IXMLDOMNodeList getElementsByTagName(std::string_view name) const { return {this, name}; }

private:
  friend class kestrune::dom::Tree;
  friend class kestrune::dom::Reader;
  friend class kestrune::dom::Writer;
  friend class IXMLDOMNode;
  friend class IXMLDOMNodeList;

  struct Attribute {
    Attribute *next;
    const char *text;
    std::uint32_t length;
    std::uint32_t name;
  };

  IXMLDOMElement(IXMLDOMDocument *document, std::uint32_t name) : IXMLDOMNode(document, Kind::Element, name) {}

  IXMLDOMNode *m_first = nullptr;
  IXMLDOMNode *m_last = nullptr;
  Attribute *m_attributes = nullptr;
  // Of a parsed element: its number in document order, and that of its last descendant.
  std::uint32_t m_order = 0;
  std::uint32_t m_lastOrder = 0;
};

/// Where and why a file is not well-formed. `line` and `column` count from 1, and are 0 where the file could not be
/// read.
struct ParseError {
  long line = 0;
  long column = 0;
  CString reason;
};

/// A document and all its nodes: loaded from a file once, or built and saved.
class KESTRUNE_API IXMLDOMDocument {
public:
  /// A new, empty document. Fails with CO_E_NOTINITIALIZED on a thread without COM.
  static HRESULT CreateInstance(_com_ptr_t<IXMLDOMDocument> &document);

  IXMLDOMDocument(const IXMLDOMDocument &) = delete;
  IXMLDOMDocument &operator=(const IXMLDOMDocument &) = delete;

  void AddRef() const noexcept { ++m_references; }
  void Release() const noexcept;

  /// Documents are only parsed, never validated, and a load returns when parsing is over: nothing else is to be had.
  void PutvalidateOnParse(bool) {}
  void Putasync(bool) {}

  /// Parses the file into this document, which must be empty. Nothing outside the file is ever opened. Returns false
  /// when it is unreadable or not well-formed, also where a reference to an undeclared entity would lose a text; the
  /// document is empty then, and GetparseError tells why.
  bool load(const char *path);
  const ParseError &GetparseError() const noexcept { return m_parseError; }

  /// The root element, or null.
  _com_ptr_t<IXMLDOMElement> GetdocumentElement() const noexcept { return m_root; }
  /// Makes `root`, a new element of this document, the root.
  void PutdocumentElement(IXMLDOMElement *root);

  /// New nodes that stand nowhere yet. Any name and any text is taken: a save checks them.
  _com_ptr_t<IXMLDOMElement> createElement(std::string_view name);
  _com_ptr_t<IXMLDOMNode> createTextNode(std::string_view text);
  _com_ptr_t<IXMLDOMNode> createProcessingInstruction(std::string_view target, std::string_view data);

  /// Adds a processing instruction in front of the root.
  _com_ptr_t<IXMLDOMNode> appendChild(IXMLDOMNode *instruction);

  /// Writes the document to the file, in UTF-8 and in place. The whole text is made and checked before the file is
  /// touched: a character that XML cannot carry, bytes that are not valid in the code page, or a bad name fail here.
  /// The file is as it was then, and after any failure before its first byte is written; after a later one the old
  /// bytes are written back, as far as the disk takes them. Returns S_OK.
  HRESULT save(const char *path) const;

  /// Fails when some text of this document could not be read because it was too large to join.
  void CheckReadable() const;

private:
  friend class kestrune::dom::Tree;
  friend class kestrune::dom::Reader;
  friend class kestrune::dom::Writer;
  friend class IXMLDOMNode;
  friend class IXMLDOMElement;
  friend class IXMLDOMNodeList;

  IXMLDOMDocument();
  ~IXMLDOMDocument();

  std::unique_ptr<kestrune::dom::Tree> m_tree;
  IXMLDOMElement *m_root = nullptr;
  ParseError m_parseError;
  mutable unsigned long m_references = 0;
};

inline void IXMLDOMNode::AddRef() const noexcept { m_document->AddRef(); }
inline void IXMLDOMNode::Release() const noexcept { m_document->Release(); }

using IXMLDOMNodePtr = _com_ptr_t<IXMLDOMNode>;
using IXMLDOMElementPtr = _com_ptr_t<IXMLDOMElement>;
using IXMLDOMDocumentPtr = _com_ptr_t<IXMLDOMDocument>;

} // namespace MSXML

using MSXML::IXMLDOMDocument;
using MSXML::IXMLDOMDocumentPtr;
using MSXML::IXMLDOMElement;
using MSXML::IXMLDOMElementPtr;
using MSXML::IXMLDOMNode;
using MSXML::IXMLDOMNodePtr;

namespace kestrune::dom {

/// A line feed and `count` tabs, the layout between elements. `buffer` takes a text of unusual length.
std::string_view LayoutText(std::size_t count, std::string &buffer);

} // namespace kestrune::dom
