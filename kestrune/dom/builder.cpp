#include "kestrune/dom/builder.h"

#include <algorithm>

namespace kestrune::dom {

void Builder::start(std::uint32_t name, const TextPiece &before) {
  endText(before);
  Element *const element = m_tree.newElement(Node::Kind::ParsedElement, name);
  const std::uint32_t order = m_tree.elementCount();
  element->setOrder(order);
  Tree::Name &entry = m_tree.names[name];
  if (entry.last != nullptr)
    entry.last->setBehind(order);
  else
    entry.first = entry.found = order;
  entry.last = element;
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
  m_text.append(piece);
}

void Builder::end(const TextPiece &before) {
  if (m_open->first() != nullptr) {
    endText(before);
  } else if (m_text.empty()) {
    m_open->setOwnText(m_tree.keep(before.text));
  } else {
    text(before.text);
    m_open->setOwnText(m_tree.keep(m_text));
    m_text.clear();
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

void Builder::endUnusualText(std::string_view last) {
  std::string_view whole = last;
  if (!m_text.empty()) {
    text(last);
    whole = m_text;
  }
  const auto isLayout = [](char c) { return c == '\t' || c == '\n' || c == ' ' || c == '\r'; };
  if (!std::all_of(whole.begin(), whole.end(), isLayout))
    append(m_tree.newNode(Node::Kind::Text, 0, m_tree.keep(whole)));
  m_text.clear();
}

} // namespace kestrune::dom
