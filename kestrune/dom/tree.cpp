#include "kestrune/dom/tree.h"

#include "kestrune/dom/layout.h"
#include "kestrune/platform/code_page.h"

#include <cstring>
#include <new>

namespace kestrune::dom {

void Fail(HRESULT error, const std::string &description) { throw _com_error(error, description.c_str()); }

std::uint32_t Tree::intern(std::string_view name) {
  const auto found = m_numbers.find(name);
  if (found != m_numbers.end())
    return found->second;
  const auto number = static_cast<std::uint32_t>(names.size());
  if (number >= kNoName)
    Fail(E_FAIL, "too many names");
  names.push_back({keep(name), {}, 0});
  m_numbers.emplace(names.back().text, number);
  return number;
}

std::uint32_t Tree::find(std::string_view name) const {
  const auto found = m_numbers.find(name);
  return found != m_numbers.end() ? found->second : kNoName;
}

template <class Type, class... Arguments>
Type *Tree::make(Arguments... arguments) {
  return new (allocate(sizeof(Type), alignof(Type))) Type(arguments...);
}

Element *Tree::newElement(std::uint32_t name) { return make<Element>(m_document, name); }

Node *Tree::newNode(Node::Kind kind, std::uint32_t name, std::string_view kept) {
  Node *const node = make<Node>(m_document, kind, name);
  node->setOwnText(kept);
  return node;
}

Attribute *Tree::newAttribute(std::uint32_t name) { return make<Attribute>(name); }

void *Tree::allocate(std::size_t size, std::size_t alignment) {
  if (std::align(alignment, size, m_free, m_freeSize) == nullptr) {
    const bool large = size > kBlockSize / 4;
    m_blocks.push_back(std::make_unique_for_overwrite<std::byte[]>(large ? size : kBlockSize));
    if (large)
      return m_blocks.back().get(); // the block before goes on
    m_free = m_blocks.back().get();
    m_freeSize = kBlockSize;
  }
  void *const room = m_free;
  m_free = static_cast<std::byte *>(m_free) + size;
  m_freeSize -= size;
  return room;
}

std::string_view Tree::keep(std::string_view text) {
  if (text.size() > kLongestText)
    Fail(E_INVALIDARG, kTextTooLong);
  if (text.empty())
    return std::string_view("");
  if (const std::string_view shared = SharedLayout(text); !shared.empty())
    return shared;
  char *const copy = static_cast<char *>(allocate(text.size(), 1));
  std::memcpy(copy, text.data(), text.size());
  return {copy, text.size()};
}

std::string_view Tree::fromCodePage(std::string_view text, std::string &buffer) {
  if (platform::GetCodePage() == platform::kUtf8)
    return text;
  unsavable |= !platform::TextToUtf8(text, buffer);
  return buffer;
}

std::size_t Tree::firstAfter(std::uint32_t name, std::uint32_t order) {
  Name &entry = names[name];
  const std::vector<Element *> &elements = entry.elements;
  const auto isFirstAfter = [&](std::size_t i) {
    return (i == 0 || elements[i - 1]->order <= order) && (i == elements.size() || elements[i]->order > order);
  };
  // Records are read in the order of the file, so that the answer is mostly the last one or the next.
  std::size_t first = entry.cursor;
  if (!isFirstAfter(first) && (first == elements.size() || !isFirstAfter(++first))) {
    const auto isBefore = [](std::uint32_t number, const Element *element) { return number < element->order; };
    first = static_cast<std::size_t>(std::upper_bound(elements.begin(), elements.end(), order, isBefore) -
                                     elements.begin());
  }
  entry.cursor = first;
  return first;
}

CString Tree::toCodePage(std::string_view utf8) {
  std::string converted;
  if (platform::GetCodePage() != platform::kUtf8)
    utf8 = converted = platform::Utf8ToText(utf8);
  m_unreadable = m_unreadable || utf8.size() > kLongestText;
  checkReadable();
  return CString(utf8);
}

void Tree::charge(std::size_t amount) {
  if (bound == 0)
    return; // not parsed: a program has made it
  m_charged += amount;
  m_unreadable = m_unreadable || m_charged > bound;
  checkReadable();
}

void Tree::checkReadable() const {
  if (m_unreadable)
    Fail(E_FAIL, "a text, or the texts of nested elements together, are too large");
}

} // namespace kestrune::dom
