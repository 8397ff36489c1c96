#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <new>
#include <string>

// Replaces the allocation of the test program: one test file only includes this.

namespace support {

/// How many allocations of this thread still succeed before one fails; -1 for all.
inline thread_local int allocationsLeft = -1;

/// Runs `operation` with its n-th allocation failing, for each n from 1 until none fails. `failed` looks at what each
/// failure left.
template <class Operation, class Failed>
void failEachAllocation(Operation operation, Failed failed) {
  int failures = 0;
  bool isDone = false;
  for (int n = 0; !isDone; ++n) {
    allocationsLeft = n;
    try {
      operation();
      isDone = allocationsLeft >= 0;
      allocationsLeft = -1;
    } catch (const std::bad_alloc &) {
      SCOPED_TRACE("allocation " + std::to_string(n + 1));
      failed();
      ++failures;
    }
  }
  EXPECT_GT(failures, 0);
}

} // namespace support

void *operator new(std::size_t size) {
  if (support::allocationsLeft >= 0 && support::allocationsLeft-- == 0)
    throw std::bad_alloc();
  if (void *const memory = std::malloc(size != 0 ? size : 1))
    return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void *memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void *memory, std::size_t) noexcept { std::free(memory); }
