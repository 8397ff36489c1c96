#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// A hash that an attacker cannot prepare collisions for. Names and keys come from files, and the author of a file must
// not be able to choose keys that make each search walk over all of them.

namespace kestrune::platform {

/// SipHash-1-3 of `text` with a random key, chosen once per process at the first call.
std::uint64_t KeyedHash(std::string_view text) noexcept;

/// The hash for containers whose keys come from files.
struct KeyedTextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const noexcept { return KeyedHash(text); }
};

} // namespace kestrune::platform
