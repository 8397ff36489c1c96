#pragma once

#include "kestrune/xml/xml_folder.h"

#include <memory>
#include <vector>

class CXMLCollectionFolder;

namespace kestrune {
struct ItemClass;
ItemClass ItemClassOf(CXMLCollectionFolder &collection);
} // namespace kestrune

/// A folder whose element holds any number of like child elements, each of which becomes an item with a text key. The
/// collection owns its items; the pointers that `Add`, `FindItem` and `operator[]` give out are valid until the item is
/// deleted, or the collection is cleared, loaded, assigned to or destroyed. Items stand in the order of adding.
///
/// A typed collection derives from it: its `Init` calls setTags, its `NewFolder` makes its item class, and its copying
/// `operator=` calls assignCollection.
class KESTRUNE_API CXMLCollectionFolder : public CXMLFolder {
public:
  CXMLCollectionFolder();
  /// The tags of `rhs`, and no item: the typed collection copies those.
  CXMLCollectionFolder(const CXMLCollectionFolder &rhs);
  ~CXMLCollectionFolder() override;
  /// Takes tag, text and the names of items and key from `rhs`, and clears the list, also when `rhs` is this
  /// collection: a loop over the items of `rhs` that follows then ends. A typed collection calls assignCollection.
  CXMLCollectionFolder &operator=(const CXMLCollectionFolder &rhs);
  using CXMLFolder::operator=;

  void PutModified(unsigned char modified) override;
  IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level) override;
  /// Replaces the items by those of `parent`, the collection's own element. An element without the key attribute is
  /// passed over; one with an empty key or a key that is there already is left out, and KRX_E_DUPLICATE_KEY is the
  /// result unless an item failed before. Returns KRX_S_EMPTY_COLLECTION where there is no item element, else the first
  /// failure, or S_OK.
  long Load(MSXML::IXMLDOMElement *parent) override;
  using CXMLFolder::GetModified;
  unsigned char GetModified() override;

protected:
  /// Adds a new item under the item tag, whose own key is still to be set. Null, and nothing changes, when `key` is
  /// null or empty or FindItem finds it, or when there is no NewFolder.
  virtual CXMLFolder *AddCollectionItem(const char *key);
  /// Makes an item, which the collection will own. Null here: every typed collection overrides it.
  virtual CXMLFolder *NewFolder();

public:
  /// The first item whose `Key` equals `key` without regard to case, or null.
  virtual CXMLFolder *FindItem(const char *key);
  /// Destroys the first item whose `Key` equals `key` with regard to case; without one nothing happens.
  virtual void Delete(const char *key);
  /// Destroys all items and sets the flag.
  virtual void Clear();

  /// The names of the collection's element, of each item's element, and of the attribute that holds an item's key.
  void setTags(const char *tag, const char *itemTag, const char *keyName);
  /// Adds an item, as AddCollectionItem.
  CXMLFolder *Add(const char *key);
  int Count() const;
  /// The item at `index`; throws std::out_of_range outside the list.
  CXMLFolder *operator[](int index);

  /// Calls `add` with each index below `count`, so that it may add one item and give that its key. Meanwhile a search
  /// for a key, as each Add needs it, takes no walk over the items.
  template <class Add>
  void AddMany(int count, Add add) {
    Batch batch(*this, false);
    for (int index = 0; index < count; ++index) {
      batch.next();
      add(index);
    }
  }

protected:
  /// The whole copying assignment of a typed collection: tags, text, and copies of all items, whatever their keys. An
  /// assignment to itself changes nothing.
  template <class Item>
  void assignCollection(const CXMLCollectionFolder &rhs) {
    if (this == &rhs)
      return;
    CXMLCollectionFolder::operator=(rhs);
    const Batch batch(*this, true);
    for (const auto &source : rhs.CXMLCollectionFolder::m_items) {
      if (CXMLFolder *const item = AddCollectionItem("Dummy"))
        static_cast<Item &>(*item) = static_cast<const Item &>(*source);
    }
  }

  /// Adds an item as AddCollectionItem and writes `key` into its key member.
  template <class Item, class Value, class Owner>
  Item *addKeyed(const char *key, Value Owner::*keyMember) {
    auto *const item = static_cast<Item *>(AddCollectionItem(key));
    if (item != nullptr)
      item->*keyMember = key;
    return item;
  }

  /// The first item for which `matches` holds, or null.
  template <class Item, class Matches>
  Item *findFirst(Matches matches) const {
    for (const auto &entry : m_items) {
      auto *const item = static_cast<Item *>(entry.get());
      if (matches(*item))
        return item;
    }
    return nullptr;
  }

  /// AddCollectionItem, with items of one key accepted or refused.
  CXMLFolder *addItem(const char *key, bool acceptDuplicate);
  /// Destroys the item at `index`.
  void removeAt(std::size_t index);

  std::vector<std::unique_ptr<CXMLFolder>> m_items;
  CString m_itemTag;
  CString m_keyName;

private:
  class KeyIndex;

  /// While many items are added one after the other: searches for a key take no walk over those that have their key,
  /// or, with `acceptAll`, any key is taken.
  class KESTRUNE_API Batch {
  public:
    Batch(CXMLCollectionFolder &collection, bool acceptAll);
    Batch(const Batch &) = delete;
    Batch &operator=(const Batch &) = delete;
    ~Batch();

    /// Before the next item is added: those that are there have been loaded or assigned.
    void next();

  private:
    CXMLCollectionFolder &m_collection;
    std::unique_ptr<KeyIndex> m_outer;
    bool m_outerAcceptAll;
  };

  friend kestrune::ItemClass kestrune::ItemClassOf(CXMLCollectionFolder &collection);

  std::unique_ptr<KeyIndex> m_index; // alive during a batch only
  bool m_acceptAll = false;
};

/// A collection that can hold items of one key, and from which items are removed by position.
class KESTRUNE_API CXMLCollectionFolder2 : public CXMLCollectionFolder {
public:
  CXMLCollectionFolder2();
  CXMLCollectionFolder2(const CXMLCollectionFolder2 &rhs);
  ~CXMLCollectionFolder2() override;
  CXMLCollectionFolder2 &operator=(const CXMLCollectionFolder2 &rhs);
  using CXMLCollectionFolder::operator=;

  /// Non-zero: items with a key that is there already are accepted. 0 at first.
  void SetIgnoreKey(int ignoreKey);
  /// Destroys the item at `index`; outside the list nothing happens.
  void DeleteIdx(int index);

protected:
  /// As the base, and takes over whether keys are ignored.
  template <class Item>
  void assignCollection(const CXMLCollectionFolder2 &rhs) {
    CXMLCollectionFolder::assignCollection<Item>(rhs);
    m_ignoreKey = rhs.m_ignoreKey;
  }

  CXMLFolder *AddCollectionItem(const char *key) override;

  int m_ignoreKey = 0;
};
