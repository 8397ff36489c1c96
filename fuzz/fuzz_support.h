#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

/// Ends the run when a promise of the library does not hold, so that the fuzzer keeps the input.
inline void Require(bool holds, const char *promise, const std::string &detail = {}) {
  if (holds)
    return;
  std::fprintf(stderr, "not kept: %s\n%s\n", promise, detail.c_str());
  std::abort();
}
