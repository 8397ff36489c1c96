#pragma once

#include "kestrune/xml/xml_folder.h"

#include <compare>
#include <concepts>
#include <cstddef>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

class CXMLCollectionFolder;

namespace kestrune {
struct ItemClass;
KESTRUNE_API ItemClass ItemClassOf(CXMLCollectionFolder &collection);

/// An item that a collection owns: a std::unique_ptr that is also a plain pointer, so that a loop over the list of a
/// collection has pointers.
class ItemPointer : public std::unique_ptr<CXMLFolder> {
public:
  using std::unique_ptr<CXMLFolder>::unique_ptr;
  /// Takes the item over.
  ItemPointer(std::unique_ptr<CXMLFolder> item) noexcept : std::unique_ptr<CXMLFolder>(std::move(item)) {}
  /// The item, which stays the collection's.
  operator CXMLFolder *() const noexcept { return get(); }
};

/// The items of a collection, in their order.
using ItemList = std::vector<ItemPointer>;

/// Thrown for an index outside a collection. As a std::out_of_range it has the text "vector".
class KESTRUNE_API BadIndex : public std::out_of_range {
public:
  BadIndex(int index, int count);                 ///< For that index of a collection of `count` items.
  BadIndex(const BadIndex &) noexcept;            ///< Copies both numbers.
  ~BadIndex() override;                           ///< Frees the text.
  BadIndex &operator=(const BadIndex &) = delete; ///< An exception stays what it is.

  int Index() const noexcept { return m_index; } ///< The index that was asked for.
  int Count() const noexcept { return m_count; } ///< The number of items.
  /// Both in words: "Index 7 of a collection of 3 items".
  CString Text() const;

private:
  int m_index;
  int m_count;
};

/// Walks over a collection: a random access iterator whose values are pointers to the items. Adding items leaves it
/// valid. Removing one leaves it at its index, where the next item is then, or none: do not remove in a range-for.
template <class Item>
class ItemIterator {
public:
  /// The types of a random access iterator, and one that leads nowhere. @{
  using iterator_category = std::random_access_iterator_tag;
  using value_type = Item *;
  using difference_type = std::ptrdiff_t;
  using pointer = Item *const *;
  using reference = Item *;

  ItemIterator() = default;
  ///@}
  /// The item at `index` of `items`, all of which are of the class `Item`.
  ItemIterator(const ItemList &items, std::size_t index) noexcept
      : m_items(&items), m_index(static_cast<difference_type>(index)) {}
  /// The same place, for items that must not change.
  operator ItemIterator<const Item>() const noexcept requires(!std::is_const_v<Item>) {
    return m_items != nullptr ? ItemIterator<const Item>(*m_items, static_cast<std::size_t>(m_index))
                              : ItemIterator<const Item>();
  }

  /// As of a random access iterator. @{
  Item *operator*() const { return (*this)[0]; }
  Item *operator[](difference_type offset) const {
    return static_cast<Item *>((*m_items)[static_cast<std::size_t>(m_index + offset)].get());
  }
  ItemIterator &operator+=(difference_type offset) { return m_index += offset, *this; }
  ItemIterator &operator-=(difference_type offset) { return m_index -= offset, *this; }
  ItemIterator &operator++() { return *this += 1; }
  ItemIterator &operator--() { return *this -= 1; }
  ItemIterator operator++(int) { return std::exchange(*this, *this + 1); }
  ItemIterator operator--(int) { return std::exchange(*this, *this - 1); }

  friend ItemIterator operator+(ItemIterator at, difference_type offset) { return at += offset; }
  friend ItemIterator operator+(difference_type offset, ItemIterator at) { return at += offset; }
  friend ItemIterator operator-(ItemIterator at, difference_type offset) { return at -= offset; }
  friend difference_type operator-(ItemIterator a, ItemIterator b) { return a.m_index - b.m_index; }
  friend bool operator==(ItemIterator a, ItemIterator b) { return a.m_index == b.m_index; }
  friend auto operator<=>(ItemIterator a, ItemIterator b) { return a.m_index <=> b.m_index; }
  ///@}

private:
  const ItemList *m_items = nullptr;
  difference_type m_index = 0;
};
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
  /// The number of items. @{
  int Count() const;
  std::size_t size() const noexcept { return m_items.size(); }
  ///@}
  /// Whether there are no items.
  [[nodiscard]] bool empty() const noexcept { return m_items.empty(); }
  /// The item at `index`; throws kestrune::BadIndex, a std::out_of_range, outside the list. @{
  CXMLFolder *operator[](int index);
  const CXMLFolder *operator[](int index) const { return mutableOf(*this)[index]; }
  ///@}
  /// As the search that is not const, an overridden one included.
  const CXMLFolder *FindItem(const char *key) const { return mutableOf(*this).FindItem(key); }

  /// The items in their order, for loops and algorithms: as pointers to what the collection's `operator[]` returns. @{
  template <std::derived_from<CXMLCollectionFolder> Collection>
  friend auto begin(Collection &collection) {
    return kestrune::ItemIterator<ItemOf<Collection>>(itemsOf(collection), 0);
  }
  template <std::derived_from<CXMLCollectionFolder> Collection>
  friend auto end(Collection &collection) {
    return kestrune::ItemIterator<ItemOf<Collection>>(itemsOf(collection), itemsOf(collection).size());
  }
  ///@}

  /// Calls `add` with each index below `count`. Each call may add one item and set its key. Meanwhile the search for a
  /// key in each Add does not walk over the items, and may miss one that was given that key through its pointer after a
  /// later item was added.
  template <class Add>
  void AddMany(int count, Add add) {
    const auto call = [](void *function, int index) { (*static_cast<Add *>(function))(index); };
    addMany(count, call, &add);
  }

protected:
  /// The copying assignment of a typed collection: copies tags, text, and all items, even those with equal keys.
  /// Assigning a collection to itself changes nothing.
  template <class Item>
  void assignCollection(const CXMLCollectionFolder &rhs) {
    const auto assign = [](CXMLFolder &to, const CXMLFolder &from) {
      static_cast<Item &>(to) = static_cast<const Item &>(from);
    };
    assignItems(rhs, assign);
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

  kestrune::ItemList m_items; ///< The items, in the order in which they were added. They can be walked as pointers.
  CString m_itemTag;          ///< The name of each item's element.
  CString m_keyName;          ///< The name of the attribute with an item's key.

private:
  /// The class of the items that `operator[]` returns; const for a const collection.
  template <class Collection>
  using ItemOf = std::conditional_t<
      std::is_const_v<Collection>,
      std::add_const_t<std::remove_pointer_t<decltype(std::declval<std::remove_const_t<Collection> &>()[0])>>,
      std::remove_pointer_t<decltype(std::declval<std::remove_const_t<Collection> &>()[0])>>;
  static const kestrune::ItemList &itemsOf(const CXMLCollectionFolder &collection) { return collection.m_items; }

  class Batch;

  friend kestrune::ItemClass kestrune::ItemClassOf(CXMLCollectionFolder &collection);

  void addMany(int count, void (*add)(void *function, int index), void *function);
  void assignItems(const CXMLCollectionFolder &rhs, void (*assign)(CXMLFolder &to, const CXMLFolder &from));

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
