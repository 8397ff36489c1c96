#include "kestrune/dom/tree.h"

#include "kestrune/dom/layout.h"

#include <cstring>

namespace kestrune::dom {

void Fail(HRESULT error, const std::string &description) { throw _com_error(error, description.c_str()); }

std::uint32_t Tree::intern(std::string_view name) {
  const auto found = m_numbers.find(name);
  if (found != m_numbers.end())
    return found->second;
  const auto number = static_cast<std::uint32_t>(names.size());
  if (number >= kNoName)
    Fail(E_FAIL, "too many names");
  std::string padded(name);
  padded.append(kNamePadding, '\0');
  names.push_back({keep(padded).substr(0, name.size()), {}, 0});
  m_numbers.emplace(names.back().text, number);
  return number;
}

std::uint32_t Tree::find(std::string_view name) const {
  const auto found = m_numbers.find(name);
  return found != m_numbers.end() ? found->second : kNoName;
}

void *Tree::allocateBlock(std::size_t size) {
  const bool large = size > kBlockSize / 4;
  m_blocks.push_back(std::make_unique_for_overwrite<std::byte[]>(large ? size : kBlockSize));
  std::byte *const room = m_blocks.back().get();
  if (!large) { // else the block before goes on
    m_free = room + size;
    m_freeSize = kBlockSize - size;
  }
  return room;
}

std::string_view Tree::keep(std::string_view text) {
  if (text.size() > kLongestText)
    Fail(E_INVALIDARG, kTextTooLong);
  if (text.empty())
    return std::string_view("");
  if (text.front() == '\n') {
    if (const std::string_view shared = SharedLayout(text); !shared.empty())
      return shared;
  }
  char *const copy = static_cast<char *>(allocate(text.size(), 1));
  std::memcpy(copy, text.data(), text.size());
  return {copy, text.size()};
}

std::string_view Tree::convert(std::string_view text, std::string &buffer) {
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
