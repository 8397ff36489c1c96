#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A text from a file as a page may hold it: characters that HTML does not allow, and bytes that are not UTF-8, become
/// U+FFFD, and of a text with more than `most` bytes only the beginning is there, with a word about the rest.
std::string readable(std::string_view text, std::size_t most = 2000);
/// A text with a capital letter at its beginning.
std::string capitalised(std::string text);

/// Writes HTML or SVG. Every text and every value of an attribute is escaped here, so that nothing from a file is ever
/// read as a tag.
class Html {
public:
  /// An attribute; one without a value, which is a null view, is left out.
  using Attribute = std::pair<const char *, std::string_view>;
  using Attributes = std::initializer_list<Attribute>;

  /// Closes an element at the end of a block.
  class Element {
  public:
    explicit Element(Html &html) : m_html(html) {}
    Element(const Element &) = delete;
    Element &operator=(const Element &) = delete;
    ~Element() { m_html.close(); }

  private:
    Html &m_html;
  };

  /// An element around what is written until the result goes.
  [[nodiscard]] Element in(const char *tag, Attributes attributes = {}) {
    open(tag, attributes);
    return Element(*this);
  }
  /// An element that holds a text.
  Html &element(const char *tag, std::string_view text) { return element(tag, {}, text); }
  Html &element(const char *tag, Attributes attributes, std::string_view text);
  /// An element that holds nothing and has no end tag: of HTML, or of SVG. @{
  Html &empty(const char *tag, Attributes attributes);
  Html &shape(const char *tag, Attributes attributes);
  ///@}
  Html &text(std::string_view text);
  Html &line();
  /// An element that ends with a later close(). @{
  void open(const char *tag, Attributes attributes);
  void close();
  ///@}
  /// What this program itself wrote: another piece of HTML, or its own style and script.
  Html &own(std::string_view html);

  const std::string &str() const { return m_text; }
  std::string take() { return std::move(m_text); }

private:
  void begin(const char *tag, Attributes attributes);
  void escape(std::string_view text);

  std::string m_text;
  std::vector<const char *> m_open;
};
