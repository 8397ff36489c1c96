#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// A hash whose collisions nobody can prepare. Names and keys come from files, and whoever makes a file must not be able
// to choose them so that a search walks over all of them.

namespace kestrune::platform {

/// SipHash-1-3 of `text` under a random key that the process draws at the first call.
std::uint64_t KeyedHash(std::string_view text) noexcept;

/// The hash of the containers whose keys come from files.
struct KeyedTextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const noexcept { return KeyedHash(text); }
};

} // namespace kestrune::platform
