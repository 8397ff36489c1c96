#include "kestrune/xml/xml_collection.h"

#include "kestrune/platform/code_page.h"
#include "kestrune/platform/keyed_hash.h"
#include "kestrune/xml/text_compare.h"

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>

/// The keys of the items that have been loaded or assigned, each as it was when first needed. The items after those may
/// still get another key, so each search compares their current keys.
class CXMLCollectionFolder::KeyIndex {
public:
  using Items = std::vector<std::unique_ptr<CXMLFolder>>;

  CXMLFolder *find(const Items &items, const char *key) {
    for (; m_known < m_settled; ++m_known) {
      CXMLFolder *const item = items[m_known].get();
      m_byKey.emplace(kestrune::platform::FoldCase(item->Key().View()), item);
    }
    const auto known = m_byKey.find(kestrune::platform::FoldCase(key));
    if (known == m_byKey.end())
      return firstOf(items.begin() + static_cast<std::ptrdiff_t>(m_settled), items.end(), key);
    // A key may have been changed since, through a pointer to the item; what counts is its current value.
    if (hasKey(*known->second, key))
      return known->second;
    return firstOf(items.begin(), items.end(), key);
  }

  static CXMLFolder *firstOf(Items::const_iterator begin, Items::const_iterator end, const char *key) {
    const auto found = std::find_if(begin, end, [&](const auto &item) { return hasKey(*item, key); });
    return found != end ? found->get() : nullptr;
  }

  void settle(std::size_t count) { m_settled = count; }

  void clear() {
    m_byKey.clear();
    m_known = m_settled = 0;
  }

private:
  static bool hasKey(const CXMLFolder &item, const char *key) { return item.Key().CompareNoCase(key) == 0; }

  std::unordered_map<std::string, CXMLFolder *, kestrune::platform::KeyedTextHash, std::equal_to<>> m_byKey;
  std::size_t m_known = 0;   // number of items in the map
  std::size_t m_settled = 0; // number of items that have their final key
};

CXMLCollectionFolder::Batch::Batch(CXMLCollectionFolder &collection, bool acceptAll)
    : m_collection(collection), m_outer(std::exchange(collection.m_index, std::make_unique<KeyIndex>())),
      m_outerAcceptAll(std::exchange(collection.m_acceptAll, acceptAll)) {}

CXMLCollectionFolder::Batch::~Batch() {
  m_collection.m_index = std::move(m_outer);
  m_collection.m_acceptAll = m_outerAcceptAll;
  // The index of the outer batch does not know what this one has added or removed.
  if (m_collection.m_index)
    m_collection.m_index->clear();
}

void CXMLCollectionFolder::Batch::next() { m_collection.m_index->settle(m_collection.m_items.size()); }

CXMLCollectionFolder::CXMLCollectionFolder() = default;

CXMLCollectionFolder::CXMLCollectionFolder(const CXMLCollectionFolder &rhs) : CXMLFolder() {
  CXMLCollectionFolder::operator=(rhs);
}

CXMLCollectionFolder::~CXMLCollectionFolder() = default;

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
  if (!acceptDuplicate && !m_acceptAll && FindItem(key) != nullptr)
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
  if (m_index)
    return m_index->find(m_items, key);
  return KeyIndex::firstOf(m_items.begin(), m_items.end(), key);
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
  if (m_index)
    m_index->clear();
}

void CXMLCollectionFolder::Clear() {
  m_modified = 1;
  m_items.clear();
  if (m_index)
    m_index->clear();
}

int CXMLCollectionFolder::Count() const { return static_cast<int>(m_items.size()); }

CXMLFolder *CXMLCollectionFolder::operator[](int index) {
  if (index < 0 || index >= Count())
    throw std::out_of_range("vector");
  return m_items[static_cast<std::size_t>(index)].get();
}

long CXMLCollectionFolder::Load(MSXML::IXMLDOMElement *parent) {
  Clear();
  const auto elements = IXMLDOMElementPtr(parent)->getElementsByTagName(m_itemTag.View());
  IXMLDOMElementPtr element = elements.Getitem(0);
  if (element == nullptr)
    return KRX_S_EMPTY_COLLECTION;

  Batch batch(*this, false);
  long result = S_OK;
  for (long index = 0; element != nullptr; element = elements.Getitem(++index)) {
    CString key;
    if (!getAttributeValue(element, m_keyName, key))
      continue;
    batch.next();
    CXMLFolder *const item = AddCollectionItem(key);
    const long status = item != nullptr ? item->Load(element) : KRX_E_DUPLICATE_KEY;
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
