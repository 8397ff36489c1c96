#pragma once

#include "kestrune/xml/xml_folder.h"

#include <cstdint>
#include <memory>
#include <vector>

class CXMLCollectionFolder;

namespace kestrune {
struct ItemClass;
ItemClass ItemClassOf(CXMLCollectionFolder &collection);
} // namespace kestrune

/// A folder whose element contains any number of child elements of one kind, each of which becomes an item with a text
/// key. The collection owns its items and keeps them in the order in which they were added. The pointers that `Add`,
/// `FindItem` and `operator[]` return are valid until the item is deleted, or the collection is cleared, loaded,
/// assigned to or destroyed.
///
/// A typed collection derives from it: its `Init` calls setTags, its `NewFolder` makes its item class, and its copying
/// `operator=` calls assignCollection.
class KESTRUNE_API CXMLCollectionFolder : public CXMLFolder {
public:
  CXMLCollectionFolder(); ///< Empty and without tags.
  /// Copies the tags of `rhs` but no item: the typed collection copies those.
  CXMLCollectionFolder(const CXMLCollectionFolder &rhs);
  ~CXMLCollectionFolder() override; ///< Destroys the items.
  /// Copies tag, text, item tag and key name from `rhs`, and clears the list even if `rhs` is this collection, so that
  /// a loop over the items of `rhs` after it ends at once. A typed collection calls assignCollection instead.
  CXMLCollectionFolder &operator=(const CXMLCollectionFolder &rhs);
  using CXMLFolder::operator=;

  /// Sets or clears the modified flag of the collection and of everything in it.
  void PutModified(unsigned char modified) override;
  /// Writes the collection's element, with all items, into `parent`, which is `level` deep. Throws _com_error.
  IXMLDOMElementPtr Save(IXMLDOMElementPtr parent, int level) override;
  /// Replaces the items by those in `parent`, the collection's own element. An element without the key attribute is
  /// ignored. One with an empty key, or a key that is already present, is skipped and counts as KRX_E_DUPLICATE_KEY.
  /// Returns the first failure, KRX_S_EMPTY_COLLECTION if there is no item element, or S_OK.
  long Load(MSXML::IXMLDOMElement *parent) override;
  using CXMLFolder::GetModified;
  unsigned char GetModified() override;

protected:
  /// Adds a new item with the item tag and returns it; the caller sets its key. Returns null, and changes nothing, when
  /// `key` is null or empty, when FindItem finds it, or when there is no NewFolder.
  virtual CXMLFolder *AddCollectionItem(const char *key);
  /// Makes an item of the collection's class, which the collection will own. The base knows none and returns null.
  virtual CXMLFolder *NewFolder();

public:
  /// The first item whose `Key` equals `key`, case-insensitive, or null.
  virtual CXMLFolder *FindItem(const char *key);
  /// Destroys the first item whose `Key` equals `key`, case-sensitive; does nothing if there is none.
  virtual void Delete(const char *key);
  /// Destroys all items and sets the modified flag.
  virtual void Clear();

  /// Sets the names of the collection's element, of each item's element, and of the attribute with an item's key.
  void setTags(const char *tag, const char *itemTag, const char *keyName);
  /// Same as AddCollectionItem.
  CXMLFolder *Add(const char *key);
  /// The number of items.
  int Count() const;
  /// The item at `index`; throws std::out_of_range outside the list.
  CXMLFolder *operator[](int index);

  /// Calls `add` with each index below `count`. Each call may add one item and set its key. Meanwhile the search for a
  /// key in each Add does not walk over the items, and may miss one that was given that key through its pointer after a
  /// later item was added.
  template <class Add>
  void AddMany(int count, Add add) {
    Batch batch(*this, false);
    for (int index = 0; index < count; ++index) {
      batch.next();
      add(index);
    }
  }

protected:
  /// The copying assignment of a typed collection: copies tags, text, and all items, even those with equal keys.
  /// Assigning a collection to itself changes nothing.
  template <class Item>
  void assignCollection(const CXMLCollectionFolder &rhs) {
    if (this == &rhs)
      return;
    CXMLCollectionFolder::operator=(rhs);
    m_items.reserve(rhs.CXMLCollectionFolder::m_items.size());
    const Batch batch(*this, true);
    for (const auto &source : rhs.CXMLCollectionFolder::m_items) {
      if (CXMLFolder *const item = AddCollectionItem("Dummy"))
        static_cast<Item &>(*item) = static_cast<const Item &>(*source);
    }
  }

  /// Same as AddCollectionItem, and stores `key` in the item's `keyMember`.
  template <class Item, class Value, class Owner>
  Item *addKeyed(const char *key, Value Owner::*keyMember) {
    auto *const item = static_cast<Item *>(AddCollectionItem(key));
    if (item != nullptr)
      item->*keyMember = key;
    return item;
  }

  /// The first item for which `matches` returns true, or null.
  template <class Item, class Matches>
  Item *findFirst(Matches matches) const {
    for (const auto &entry : m_items) {
      auto *const item = static_cast<Item *>(entry.get());
      if (matches(*item))
        return item;
    }
    return nullptr;
  }

  /// Same as AddCollectionItem, but `acceptDuplicate` also accepts a key that is already present.
  CXMLFolder *addItem(const char *key, bool acceptDuplicate);
  /// Destroys the item at `index`, which must exist.
  void removeAt(std::size_t index);

  std::vector<std::unique_ptr<CXMLFolder>> m_items; ///< The items, in the order in which they were added.
  CString m_itemTag;                                ///< The name of each item's element.
  CString m_keyName;                                ///< The name of the attribute with an item's key.

private:
  /// Exists while many items are added one after the other. A search for a key then does not walk over the items added
  /// before; with `acceptAll` every key is accepted.
  class KESTRUNE_API Batch {
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

  friend kestrune::ItemClass kestrune::ItemClassOf(CXMLCollectionFolder &collection);

  Batch *m_batch = nullptr; // the innermost that exists
};

/// A collection that can accept items with equal keys, and from which items can be removed by position.
class KESTRUNE_API CXMLCollectionFolder2 : public CXMLCollectionFolder {
public:
  CXMLCollectionFolder2(); ///< Empty and without tags.
  /// Copies the tags of `rhs` but no item: the typed collection copies those.
  CXMLCollectionFolder2(const CXMLCollectionFolder2 &rhs);
  ~CXMLCollectionFolder2() override; ///< Destroys the items.
  /// As the base, and copies whether keys are ignored.
  CXMLCollectionFolder2 &operator=(const CXMLCollectionFolder2 &rhs);
  using CXMLCollectionFolder::operator=;

  /// If non-zero, items with a key that is already present are accepted. 0 by default.
  void SetIgnoreKey(int ignoreKey);
  /// Destroys the item at `index`; does nothing outside the list.
  void DeleteIdx(int index);

protected:
  /// As the base, and copies whether keys are ignored.
  template <class Item>
  void assignCollection(const CXMLCollectionFolder2 &rhs) {
    CXMLCollectionFolder::assignCollection<Item>(rhs);
    m_ignoreKey = rhs.m_ignoreKey;
  }

  /// As the base, but accepts a key that is already present if keys are ignored.
  CXMLFolder *AddCollectionItem(const char *key) override;

  int m_ignoreKey = 0; ///< Non-zero: items with a key that is already present are accepted.
};
