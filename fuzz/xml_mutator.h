#pragma once

#include <string_view>

// A mutator for the fuzzers of data files. It parses the input, changes its elements, attributes and values, and writes
// it again, so that most results are well-formed and use names that the library knows. Sometimes, and always if the
// input is not well-formed, it leaves the bytes to the fuzzer's own mutations.

/// Where the companion file begins. The mutator changes only one of the two files.
constexpr std::string_view kCompanionMark = "<!--companion-->";
/// Put before the root, it makes the library work in code page 932.
constexpr std::string_view kPage932Mark = "<!--932-->";
