#include "kestrune/dom/builder.h"

namespace kestrune::dom {

void Builder::start(std::uint32_t name) {
  if (!m_text.empty())
    addTextNode();
  Element *const element = m_tree.newElement(Node::Kind::ParsedElement, name);
  const std::uint32_t order = m_tree.elementCount();
  element->setOrder(order);
  Tree::Name &entry = m_tree.names[name];
  if (entry.last != 0)
    m_tree.element(entry.last).setBehind(order);
  else
    entry.first = entry.found = order;
  entry.last = order;
  if (m_open != nullptr)
    append(element);
  else
    m_tree.root = element;
  m_open = element;
  m_attribute = nullptr;
}

void Builder::attribute(std::uint32_t name, std::string_view text) {
  if (m_attribute == nullptr) {
    m_tree.giveMore(*m_open);
    m_attribute = &m_open->attributes();
  }
  *m_attribute = m_tree.newAttribute(name);
  (*m_attribute)->setValue(m_tree.keep(text));
  m_attribute = &(*m_attribute)->next;
}

void Builder::text(std::string_view piece) {
  if (m_text.size() > Tree::kLongestText)
    Fail(E_FAIL, kTextTooLong);
  if (m_text.data() != m_joined.data())
    m_joined = m_text;
  m_joined.append(piece);
  m_text = m_joined;
}

void Builder::end() {
  if (!m_text.empty()) {
    if (m_open->first() != nullptr)
      addTextNode();
    else
      m_open->setOwnText(m_tree.keep(m_text));
    m_text = {};
  }
  m_open->close(m_tree.elementCount());
  m_open = m_open->parent;
}

void Builder::finish(std::size_t inputSize) {
  m_tree.bound = AmplificationBound(inputSize);
  m_tree.indexed = true;
}

void Builder::append(Node *child) {
  m_tree.giveMore(*m_open);
  m_open->append(child);
}

/// Beside child elements white space alone is layout, and not kept.
void Builder::addTextNode() {
  if (m_text.find_first_not_of(" \t\r\n") != std::string_view::npos)
    append(m_tree.newNode(Node::Kind::Text, 0, m_tree.keep(m_text)));
  m_text = {};
}

} // namespace kestrune::dom
