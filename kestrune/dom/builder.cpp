#include "kestrune/dom/builder.h"

namespace kestrune::dom {

void Builder::start(std::uint32_t name) {
  if (!m_text.empty())
    addTextNode();
  Element *const element = m_tree.newElement(name);
  element->order = ++m_elementCount;
  m_tree.names[name].elements.push_back(element);
  if (m_open != nullptr)
    m_open->append(element);
  else
    m_tree.root = element;
  m_open = element;
  m_attribute = &element->attributes;
}

void Builder::attribute(std::uint32_t name, std::string_view text) {
  *m_attribute = m_tree.newAttribute(name);
  (*m_attribute)->setValue(m_tree.keep(text));
  m_attribute = &(*m_attribute)->next;
}

void Builder::text(std::string_view piece) {
  if (m_text.size() > Tree::kLongestText)
    Fail(E_FAIL, kTextTooLong);
  m_text.append(piece);
}

void Builder::end() {
  if (!m_text.empty() && m_open->first != nullptr) {
    addTextNode();
  } else if (!m_text.empty()) {
    m_open->setOwnText(m_tree.keep(m_text));
    m_text.clear();
  }
  m_open->lastOrder = m_elementCount;
  m_open = m_open->parent;
}

void Builder::finish(std::size_t inputSize) {
  m_tree.bound = AmplificationBound(inputSize);
  m_tree.indexed = true;
}

/// Beside child elements white space alone is layout, and not kept.
void Builder::addTextNode() {
  if (m_text.find_first_not_of(" \t\r\n") != std::string::npos)
    m_open->append(m_tree.newNode(Node::Kind::Text, 0, m_tree.keep(m_text)));
  m_text.clear();
}

} // namespace kestrune::dom
