#pragma once

#include "kestrune/dom/tree.h"

#include <string>
#include <string_view>

namespace kestrune::dom {

/// A piece of text, and whether the reader knows that it is only white space.
struct TextPiece {
  std::string_view text;
  bool isBlank = false;
};

/// Builds a tree from what a reader finds, in the order of the file. The reader answers for the form: tags match, there
/// is one root, and no element has two attributes of a name.
class Builder {
public:
  explicit Builder(Tree &tree) : m_tree(tree) {}

  /// An element begins. `name` is its number in the tree, `before` the last piece of the text in front of it.
  void start(std::uint32_t name, const TextPiece &before = {});
  /// An attribute of the element that has just begun.
  void attribute(std::uint32_t name, std::string_view text);
  /// A piece of the text between two tags. Throws where the text has become too long.
  void text(std::string_view piece);
  /// The open element ends. `before` is the last piece of the text in front of its end.
  void end(const TextPiece &before = {});
  /// The whole input of `inputSize` bytes has been read.
  void finish(std::size_t inputSize);
  /// The innermost element that has not ended, or null.
  const Element *open() const { return m_open; }

private:
  void append(Node *child);
  /// Ends a text that stands beside child elements, where white space alone is layout and not kept.
  void endText(const TextPiece &last) {
    if (!m_text.empty() || !last.isBlank)
      endUnusualText(last.text);
  }
  void endUnusualText(std::string_view last);

  Tree &m_tree;
  Element *m_open = nullptr;
  Attribute **m_attribute = nullptr; // the place of the next one
  std::string m_text;                // since the last tag, but for the last piece
};

} // namespace kestrune::dom
