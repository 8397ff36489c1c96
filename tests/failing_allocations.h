#pragma once

#include <gtest/gtest.h>
#include <new>
#include <string>

namespace support {

/// How many allocations of this thread still succeed before one fails; -1 for all.
extern thread_local int allocationsLeft;

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
