#include "kestrune/xml/xml_collection.h"

#include "kestrune/dom/member_access.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/keyed_hash.h"
#include "kestrune/xml/reporting.h"
#include "kestrune/xml/text_compare.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

namespace {

using Items = kestrune::ItemList;

// Up to here, walking is cheaper than a table.
constexpr std::size_t kFewItems = 16;

bool hasKey(const CXMLFolder &item, const char *key) { return item.Key().CompareNoCase(key) == 0; }

CXMLFolder *firstFrom(const Items &items, std::size_t start, const char *key) {
  const auto found = std::find_if(items.begin() + static_cast<std::ptrdiff_t>(start), items.end(),
                                  [&](const auto &item) { return hasKey(*item, key); });
  return found != items.end() ? found->get() : nullptr;
}

/// Equal for keys that differ only in case.
std::uint32_t hashOf(std::string_view key) {
  return static_cast<std::uint32_t>(kestrune::platform::KeyedHash(kestrune::platform::FoldCase(key)));
}

} // namespace

kestrune::BadIndex::BadIndex(int index, int count) : std::out_of_range("vector"), m_index(index), m_count(count) {}
kestrune::BadIndex::BadIndex(const BadIndex &) noexcept = default;
kestrune::BadIndex::~BadIndex() = default;

CString kestrune::BadIndex::Text() const {
  CString text;
  text.Format("Index %d of a collection of %d %s", m_index, m_count, m_count == 1 ? "item" : "items");
  return text;
}

/// Exists while many items are added one after the other. A search for a key then does not walk over the items added
/// before; with `acceptAll` every key is accepted.
class CXMLCollectionFolder::Batch {
public:
  Batch(CXMLCollectionFolder &collection, bool acceptAll) noexcept;
  Batch(const Batch &) = delete;
  Batch &operator=(const Batch &) = delete;
  ~Batch();

  /// Call it before adding the next item: the items so far have their final keys.
  void next() noexcept;
  bool acceptsAll() const noexcept { return m_acceptAll; }
  CXMLFolder *find(const char *key);
  /// Call it after items were removed.
  void forget() noexcept;

private:
  /// The hash of a key, and the number of the item that has it, from 1; 0 in an empty slot.
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t item = 0;
  };

  const CXMLFolder &itemOf(const Slot &slot) const { return *m_collection.m_items[slot.item - 1]; }
  std::size_t home(std::uint32_t hash) const { return hash & (m_slots.size() - 1); }
  void takeInSettled();
  void restart(std::size_t slots);
  void takeIn(std::size_t index);

  CXMLCollectionFolder &m_collection;
  Batch *m_outer;
  bool m_acceptAll;
  std::size_t m_settled = 0; // number of items that have their final key
  std::size_t m_known = 0;   // number of items in the table
  std::vector<Slot> m_slots; // the table: a power of two, at most half full; empty as long as there are few items
};

CXMLCollectionFolder::Batch::Batch(CXMLCollectionFolder &collection, bool acceptAll) noexcept
    : m_collection(collection), m_outer(std::exchange(collection.m_batch, this)), m_acceptAll(acceptAll) {}

CXMLCollectionFolder::Batch::~Batch() {
  m_collection.m_batch = m_outer;
  // The outer batch does not know what this one has added or removed.
  if (m_outer != nullptr)
    m_outer->forget();
}

void CXMLCollectionFolder::Batch::next() noexcept { m_settled = m_collection.m_items.size(); }

void CXMLCollectionFolder::Batch::forget() noexcept {
  m_slots.clear();
  m_known = m_settled = 0;
}

CXMLFolder *CXMLCollectionFolder::Batch::find(const char *key) {
  const Items &items = m_collection.m_items;
  if (m_settled <= kFewItems)
    return firstFrom(items, 0, key);
  takeInSettled();
  const std::uint32_t hash = hashOf(key);
  for (std::size_t i = home(hash); m_slots[i].item != 0; i = home(static_cast<std::uint32_t>(i + 1))) {
    if (m_slots[i].hash != hash)
      continue;
    const CXMLFolder &item = itemOf(m_slots[i]);
    if (hasKey(item, key))
      return items[m_slots[i].item - 1].get();
    // What counts is the current key. If it was changed through a pointer to the item, an item behind it may be the
    // first with the old one now.
    if (hashOf(item.Key().View()) != hash) {
      restart(m_slots.size());
      return firstFrom(items, 0, key);
    }
  }
  // The items after those may still get another key.
  return firstFrom(items, m_settled, key);
}

/// Enters the keys of the settled items, each as it is when it is first needed.
void CXMLCollectionFolder::Batch::takeInSettled() {
  while (m_known < m_settled) {
    if (2 * (m_known + 1) > m_slots.size())
      restart(std::max(4 * kFewItems, 4 * m_slots.size()));
    takeIn(m_known++);
  }
}

/// Makes the table empty.
void CXMLCollectionFolder::Batch::restart(std::size_t slots) {
  m_slots.assign(slots, Slot());
  m_known = 0;
}

/// Enters the key of an item, unless an item before it has the same key.
void CXMLCollectionFolder::Batch::takeIn(std::size_t index) {
  const CString key = m_collection.m_items[index]->Key();
  const std::uint32_t hash = hashOf(key.View());
  std::size_t i = home(hash);
  while (m_slots[i].item != 0) {
    if (m_slots[i].hash == hash && hasKey(itemOf(m_slots[i]), key))
      return;
    i = home(static_cast<std::uint32_t>(i + 1));
  }
  m_slots[i] = {hash, static_cast<std::uint32_t>(index + 1)};
}

CXMLCollectionFolder::CXMLCollectionFolder() = default;

CXMLCollectionFolder::CXMLCollectionFolder(const CXMLCollectionFolder &rhs) : CXMLFolder() {
  CXMLCollectionFolder::operator=(rhs);
}

CXMLCollectionFolder::~CXMLCollectionFolder() = default;

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): it clears the list even then
CXMLCollectionFolder &CXMLCollectionFolder::operator=(const CXMLCollectionFolder &rhs) {
  CXMLPersistent::operator=(rhs);
  m_itemTag = rhs.m_itemTag;
  m_keyName = rhs.m_keyName;
  Clear();
  return *this;
}

void CXMLCollectionFolder::setTags(const char *tag, const char *itemTag, const char *keyName) {
  PutTag(CString(tag));
  m_itemTag = itemTag;
  m_keyName = keyName;
}

CXMLFolder *CXMLCollectionFolder::Add(const char *key) { return AddCollectionItem(key); }

CXMLFolder *CXMLCollectionFolder::AddCollectionItem(const char *key) { return addItem(key, false); }

CXMLFolder *CXMLCollectionFolder::addItem(const char *key, bool acceptDuplicate) {
  if (key == nullptr || *key == '\0')
    return nullptr;
  const bool acceptAll = acceptDuplicate || (m_batch != nullptr && m_batch->acceptsAll());
  if (!acceptAll && FindItem(key) != nullptr)
    return nullptr;
  std::unique_ptr<CXMLFolder> item(NewFolder());
  if (!item)
    return nullptr;
  item->PutTag(m_itemTag);
  m_modified = 1;
  m_items.push_back(std::move(item));
  return m_items.back().get();
}

CXMLFolder *CXMLCollectionFolder::NewFolder() { return nullptr; }

CXMLFolder *CXMLCollectionFolder::FindItem(const char *key) {
  if (key == nullptr)
    return nullptr;
  return m_batch != nullptr ? m_batch->find(key) : firstFrom(m_items, 0, key);
}

void CXMLCollectionFolder::Delete(const char *key) {
  for (std::size_t i = 0; i < m_items.size(); ++i) {
    if (m_items[i]->Key().Compare(key) == 0) {
      removeAt(i);
      return;
    }
  }
}

void CXMLCollectionFolder::removeAt(std::size_t index) {
  m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(index));
  m_modified = 1;
  if (m_batch != nullptr)
    m_batch->forget();
}

void CXMLCollectionFolder::addMany(int count, void (*add)(void *function, int index), void *function) {
  Batch batch(*this, false);
  for (int index = 0; index < count; ++index) {
    batch.next();
    add(function, index);
  }
}

void CXMLCollectionFolder::assignItems(const CXMLCollectionFolder &rhs,
                                       void (*assign)(CXMLFolder &to, const CXMLFolder &from)) {
  if (this == &rhs)
    return;
  CXMLCollectionFolder::operator=(rhs);
  m_items.reserve(rhs.m_items.size());
  const Batch batch(*this, true);
  for (const auto &source : rhs.m_items) {
    if (CXMLFolder *const item = AddCollectionItem("Dummy"))
      assign(*item, *source);
  }
}

void CXMLCollectionFolder::Clear() {
  m_modified = 1;
  m_items.clear();
  if (m_batch != nullptr)
    m_batch->forget();
}

int CXMLCollectionFolder::Count() const { return static_cast<int>(m_items.size()); }

CXMLFolder *CXMLCollectionFolder::operator[](int index) {
  if (index < 0 || index >= Count())
    throw kestrune::BadIndex(index, Count());
  return m_items[static_cast<std::size_t>(index)].get();
}

long CXMLCollectionFolder::Load(MSXML::IXMLDOMElement *parent) {
  Clear();
  const IXMLDOMElementPtr owner(parent);
  const auto elements = kestrune::dom::FindElements(owner, m_itemTag);
  IXMLDOMElementPtr element = elements.Getitem(0);
  if (element == nullptr)
    return KRX_S_EMPTY_COLLECTION;

  Batch batch(*this, false);
  long result = S_OK;
  for (long index = 0; element != nullptr; element = elements.Getitem(++index)) {
    CString key;
    if (!kestrune::dom::ReadAttribute(element, m_keyName, key))
      continue;
    batch.next();
    CXMLFolder *const item = AddCollectionItem(key);
    const long status = item != nullptr ? item->Load(element) : KRX_E_DUPLICATE_KEY;
    if (item == nullptr)
      kestrune::Reporting::leaveOut(m_keyName, elements, index, key, !key.IsEmpty() && FindItem(key) != nullptr);
    if (status < 0 && result == S_OK) {
      result = status;
      traceMessage("non-S_OK HRESULT =  0x%X while adding item '%s' to collection\n",
                   kestrune::platform::ResultBits(status), static_cast<const char *>(key));
    }
  }
  return result;
}

IXMLDOMElementPtr CXMLCollectionFolder::Save(IXMLDOMElementPtr parent, int level) {
  IXMLDOMElementPtr element = saveMembers(parent, level);
  for (const auto &item : m_items)
    item->Save(element, level + 1);
  insertTabs(element, level + 1);
  return element;
}

unsigned char CXMLCollectionFolder::GetModified() {
  if (m_modified != 0)
    return m_modified;
  for (const CXMLPersistent *const member : std::as_const(m_members)) {
    if (member->GetModified() != 0)
      m_modified = 1;
  }
  // Items after the first modified one need not be asked.
  if (findFirst<CXMLFolder>([](CXMLFolder &item) { return item.GetModified() != 0; }) != nullptr)
    m_modified = 1;
  return m_modified;
}

void CXMLCollectionFolder::PutModified(unsigned char modified) {
  putMembersModified(modified);
  for (const auto &item : m_items)
    item->PutModified(modified);
  m_modified = modified;
}

CXMLCollectionFolder2::CXMLCollectionFolder2() = default;

CXMLCollectionFolder2::CXMLCollectionFolder2(const CXMLCollectionFolder2 &rhs) : CXMLCollectionFolder() {
  CXMLCollectionFolder2::operator=(rhs);
}

CXMLCollectionFolder2::~CXMLCollectionFolder2() = default;

CXMLCollectionFolder2 &CXMLCollectionFolder2::operator=(const CXMLCollectionFolder2 &rhs) {
  CXMLCollectionFolder::operator=(rhs);
  m_ignoreKey = rhs.m_ignoreKey;
  return *this;
}

void CXMLCollectionFolder2::SetIgnoreKey(int ignoreKey) { m_ignoreKey = ignoreKey; }

void CXMLCollectionFolder2::DeleteIdx(int index) {
  if (index >= 0 && index < Count())
    removeAt(static_cast<std::size_t>(index));
}

CXMLFolder *CXMLCollectionFolder2::AddCollectionItem(const char *key) { return addItem(key, m_ignoreKey != 0); }
