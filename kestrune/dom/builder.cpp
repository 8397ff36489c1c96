#include "kestrune/dom/builder.h"

#include <algorithm>

namespace kestrune::dom {

void Builder::start(std::uint32_t name, std::string_view before) {
  if (const std::string_view text = textWith(before); !text.empty())
    addTextNode(text);
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
  m_text.append(piece);
}

void Builder::end(std::string_view before) {
  if (const std::string_view text = textWith(before); !text.empty()) {
    if (m_open->first() != nullptr) {
      addTextNode(text);
    } else {
      m_open->setOwnText(m_tree.keep(text));
      m_text.clear();
    }
  }
  m_open->close(m_tree.elementCount());
  m_open = m_open->parent;
}

void Builder::finish(std::size_t inputSize) {
  m_tree.bound = AmplificationBound(inputSize);
  m_tree.indexed = true;
}

/// The whole text between two tags. Mostly it is one piece, which is kept without a copy in between.
std::string_view Builder::textWith(std::string_view last) {
  if (m_text.empty())
    return last;
  text(last);
  return m_text;
}

void Builder::append(Node *child) {
  m_tree.giveMore(*m_open);
  m_open->append(child);
}

/// Beside child elements white space alone is layout, and not kept.
void Builder::addTextNode(std::string_view text) {
  const auto isLayout = [](char c) { return c == '\t' || c == '\n' || c == ' ' || c == '\r'; };
  if (!std::all_of(text.begin(), text.end(), isLayout))
    append(m_tree.newNode(Node::Kind::Text, 0, m_tree.keep(text)));
  m_text.clear();
}

} // namespace kestrune::dom
