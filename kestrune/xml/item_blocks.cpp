#include "kestrune/xml/item_blocks.h"

#include <algorithm>
#include <new>

#ifndef __has_feature
#define __has_feature(feature) 0
#endif

namespace kestrune {

namespace {

#if defined(__SANITIZE_ADDRESS__) || __has_feature(address_sanitizer)
constexpr bool kUseBlocks = false; // it watches each item only on the heap
#else
constexpr bool kUseBlocks = true;
#endif

constexpr std::size_t kFewItems = 4;

// Below the size from which malloc asks the system for each block anew: a later collection finds it in the heap.
constexpr std::size_t kLargestBlock = std::size_t{120} << 10;

} // namespace

ItemBlock *ItemBlock::forNext(const void *collection, std::size_t count, ItemBlock *last, std::size_t size) {
  if (!kUseBlocks || count < kFewItems)
    return nullptr;
  if (last != nullptr && last->m_collection == collection && last->m_room != 0)
    return last;
  // Blocks grow with the collection.
  const std::size_t room = std::clamp<std::size_t>(kLargestBlock / size, 1, count / 2);
  return new (::operator new(sizeof(ItemBlock) + room * size)) ItemBlock(collection, room);
}

void *ItemBlock::allocate(std::size_t size) noexcept {
  auto *const item = new (m_free) ItemBlock *(this) + 1;
  m_free += size;
  --m_room;
  m_items.fetch_add(1, std::memory_order_relaxed);
  return item;
}

void ItemBlock::release(void *item) noexcept {
  ItemBlock *const block = of(item);
  if (block->m_items.fetch_sub(1, std::memory_order_acq_rel) == 1)
    ::operator delete(block);
}

} // namespace kestrune
