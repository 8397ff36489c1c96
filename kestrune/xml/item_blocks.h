#pragma once

#include "kestrune/xml/xml_collection.h"

#include <atomic>
#include <cstddef>
#include <typeinfo>

namespace kestrune {

/// Memory for items of a collection, one behind the other. It goes with the last of them.
class alignas(std::max_align_t) ItemBlock {
public:
  /// The block for the item behind `count` others, of which the last lies in `last`. Null if the item should come from
  /// the heap. `size` is that of an item with the pointer to its block in front.
  static ItemBlock *forNext(const void *collection, std::size_t count, ItemBlock *last, std::size_t size);
  static ItemBlock *of(const void *item) { return static_cast<ItemBlock *const *>(item)[-1]; }

  void *allocate(std::size_t size) noexcept;
  /// What `allocate` returned comes back, in any order and on any thread.
  static void release(void *item) noexcept;

private:
  explicit ItemBlock(const void *collection, std::size_t room) : m_collection(collection), m_room(room) {}

  const void *m_collection; // no other puts items in
  std::size_t m_room;       // how many still fit
  std::byte *m_free = reinterpret_cast<std::byte *>(this + 1);
  std::atomic<std::size_t> m_items{0};
};

/// An item in a block. Its virtual destructor knows where it lies, so that whoever owns it deletes it like any other.
template <class Item>
class BlockItem final : public Item {
public:
  /// A new item for `collection`, which has `items`.
  static CXMLFolder *make(const void *collection, const ItemList &items) {
    const CXMLFolder *const last = items.empty() ? nullptr : items.back().get();
    const bool inBlock = last != nullptr && typeid(*last) == typeid(BlockItem);
    ItemBlock *const block = ItemBlock::forNext(
        collection, items.size(), inBlock ? ItemBlock::of(static_cast<const BlockItem *>(last)) : nullptr, kSize);
    return block != nullptr ? new (*block) BlockItem : new Item;
  }

  static void *operator new(std::size_t /*size*/, ItemBlock &block) noexcept { return block.allocate(kSize); }
  // NOLINTNEXTLINE(misc-new-delete-overloads): each new names a block
  static void operator delete(void *item) noexcept { ItemBlock::release(item); }
  /// For an item whose constructor throws.
  static void operator delete(void *item, ItemBlock & /*block*/) noexcept { ItemBlock::release(item); }

private:
  static constexpr std::size_t kSize = sizeof(void *) + sizeof(Item);
  static_assert(alignof(Item) <= alignof(void *));
};

} // namespace kestrune
