#include "kestrune/dom/tree.h"

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
  const std::string_view kept = keep(padded).substr(0, name.size());
  names.emplace_back().text = kept;
  m_numbers.emplace(names.back().text, number);
  return number;
}

std::uint32_t Tree::find(std::string_view name) const {
  const auto found = m_numbers.find(name);
  return found != m_numbers.end() ? found->second : kNoName;
}

std::uint32_t Tree::learnNumber(const CString &tag) {
  std::string buffer;
  const std::uint32_t number = intern(fromCodePage(tag.View(), buffer));
  CString::LastingKey key{};
  if (!tag.GetLastingKey(key))
    return number;
  if (m_knownTags.empty())
    m_knownTags.resize(2 * (std::size_t{1} << kTagHashBits));
  KnownTag *const place = placeOf(key);
  place[1] = place[0];
  place[0] = {key, number};
  return number;
}

void Tree::addElements() {
  if (m_elementCount > std::numeric_limits<std::uint32_t>::max() - kElementsPerBlock)
    Fail(E_FAIL, "too many elements");
  m_elements.push_back(std::make_unique_for_overwrite<Slot[]>(kElementsPerBlock));
  m_nextElement = m_elements.back().get();
  m_lastElement = m_nextElement + kElementsPerBlock;
}

void Tree::makeRoomForChild(Element &parent) {
  giveMore(parent);
  if (const std::string_view text = parent.ownText(); !text.empty()) {
    Node *const node = newNode(Node::Kind::Text, 0, text);
    parent.setOwnText({});
    parent.append(node);
  }
}

void Tree::append(Element &parent, Node &child) {
  indexed = false;
  makeRoomForChild(parent);
  if (const std::uint32_t layout = parent.layoutAtEnd(); layout != 0) {
    if (Element *const element = child.element(); element != nullptr && !element->isParsed())
      element->setLayoutBefore(layout);
    else
      parent.append(newLayout(layout));
    parent.setLayoutAtEnd(0);
  }
  parent.append(&child);
}

void Tree::appendLayout(Element &parent, std::uint32_t length) {
  indexed = false;
  const bool isNode = parent.isParsed();
  if (isNode || parent.layoutAtEnd() != 0) {
    makeRoomForChild(parent);
    parent.append(newLayout(isNode ? length : parent.layoutAtEnd()));
  }
  if (!isNode)
    parent.setLayoutAtEnd(length);
}

Node *Tree::newLayout(std::uint32_t length) {
  char *const text = static_cast<char *>(allocate(length, 1));
  text[0] = '\n';
  std::memset(text + 1, '\t', length - 1);
  return newNode(Node::Kind::Text, 0, {text, length});
}

void *Tree::allocateBlock(std::size_t size) {
  const bool large = size > kBlockSize / 4;
  m_blocks.push_back(std::make_unique_for_overwrite<std::byte[]>((large ? size : kBlockSize) + kReadableBehind));
  std::byte *const room = m_blocks.back().get();
  if (!large) { // else the block before goes on
    m_free = room + size;
    m_freeSize = kBlockSize - size;
  }
  return room;
}

std::string_view Tree::convert(std::string_view text, std::string &buffer) {
  unsavable |= !platform::TextToUtf8(text, buffer);
  return buffer;
}

const std::vector<std::uint32_t> &Tree::all(Name &entry) {
  if (entry.all.empty() && entry.first != 0) {
    std::vector<std::uint32_t> numbers;
    for (std::uint32_t number = entry.first; number != 0; number = element(number).behind())
      numbers.push_back(number);
    entry.all = std::move(numbers);
  }
  return entry.all;
}

std::uint32_t Tree::searchAfter(Name &entry, std::uint32_t order) {
  const std::vector<std::uint32_t> &numbers = all(entry);
  const auto found = std::upper_bound(numbers.begin(), numbers.end(), order);
  entry.before = found != numbers.begin() ? *(found - 1) : 0;
  entry.found = found != numbers.end() ? *found : 0;
  return entry.found;
}

Element *Tree::firstBelow(const Element &root, std::uint32_t name) {
  if (name == kNoName)
    return nullptr;
  if (indexed) {
    const std::uint32_t found = firstAfter(name, root.order());
    return found != 0 && found <= root.lastOrder() ? &element(found) : nullptr;
  }
  const Node *node = &root;
  do {
    node = NextBelow(&root, node);
  } while (node != nullptr && !node->hasTag(name));
  return const_cast<Element *>(static_cast<const Element *>(node));
}

CString Tree::textOf(const Node &node) {
  const Element *const element = node.element();
  const bool isWhole = element == nullptr || (element->first() == nullptr && element->layoutAtEnd() == 0);
  return isWhole ? toCodePage(node.ownText()) : joinedTextOf(node);
}

CString Tree::joinedTextOf(const Node &node) {
  std::string joined;
  const auto addLayout = [&](std::uint32_t length) {
    charge(length);
    joined.append(length != 0 ? 1 : 0, '\n').append(length != 0 ? length - 1 : 0, '\t');
  };
  Walk(
      &node,
      [&](const Node &inside) {
        if (const Element *const element = inside.element(); element != nullptr && &inside != &node)
          addLayout(element->layoutBefore());
        const std::string_view text = inside.ownText();
        charge(1 + text.size());
        joined.append(text);
      },
      [&](const Node &inside) {
        if (const Element *const element = inside.element(); element != nullptr)
          addLayout(element->layoutAtEnd());
      });
  return toCodePage(joined);
}

CString Tree::toCodePage(std::string_view utf8) {
  if (platform::GetCodePage() == platform::kUtf8) {
    m_unreadable = m_unreadable || utf8.size() > kLongestText;
    checkReadable();
    return CString(utf8);
  }
  const std::string converted = platform::Utf8ToText(utf8);
  m_unreadable = m_unreadable || converted.size() > kLongestText;
  checkReadable();
  return CString(std::string_view(converted));
}

/// Counts `amount` towards what texts of elements with child elements may cost together; throws beyond the bound.
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
