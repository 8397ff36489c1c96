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
  void end();
  /// The whole input of `inputSize` bytes has been read.
  void finish(std::size_t inputSize);

private:
  void addTextNode();

  Tree &m_tree;
  Element *m_open = nullptr;
  Attribute **m_attribute = nullptr; // the place of the next one
  std::uint32_t m_elementCount = 0;
  std::string m_text; // since the last tag
};

} // namespace kestrune::dom
