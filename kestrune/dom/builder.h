#pragma once

#include "kestrune/dom/tree.h"

#include <string>
#include <string_view>

namespace kestrune::dom {

/// Builds a tree from what a reader finds, in the order of the file. The reader answers for the form: tags match, there
/// is one root, and no element has two attributes of a name.
class Builder {
public:
  explicit Builder(Tree &tree) : m_tree(tree) {}

  /// An element begins. `name` is its number in the tree.
  void start(std::uint32_t name);
  /// An attribute of the element that has just begun.
  void attribute(std::uint32_t name, std::string_view text);
  /// A piece of the text between two tags. Throws where the text has become too long.
  void text(std::string_view piece);
  /// The whole text between two tags, which has to stay where it is until start() or end().
  void wholeText(std::string_view text) { m_text = text; }
  void end();
  /// The whole input of `inputSize` bytes has been read.
  void finish(std::size_t inputSize);

private:
  void append(Node *child);
  void addTextNode();

  Tree &m_tree;
  Element *m_open = nullptr;
  Attribute **m_attribute = nullptr; // the place of the next one
  std::string_view m_text;           // since the last tag
  std::string m_joined;              // where that came in pieces
};

} // namespace kestrune::dom
