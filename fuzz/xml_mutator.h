#pragma once

#include <string_view>

// A mutator for the fuzzers of data files: it reads the input, changes its elements, attributes and values, and writes
// it again, so that most of what it makes is well-formed and has names that the library knows. At times, and where the
// input is not well-formed, it leaves the bytes to the fuzzer.

/// Where the file beside the first one begins. The mutator changes one of the two.
constexpr std::string_view kCompanionMark = "<!--companion-->";
/// In front of the root: the library works in code page 932.
constexpr std::string_view kPage932Mark = "<!--932-->";
