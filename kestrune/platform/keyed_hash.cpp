#include "kestrune/platform/keyed_hash.h"

#include <bit>
#include <cstring>
#include <ctime>
#include <sys/auxv.h>
#include <sys/random.h>

namespace {

struct Key {
  std::uint64_t low = 0;
  std::uint64_t high = 0;
};

Key drawKey() noexcept {
  Key key;
  if (::getrandom(&key, sizeof key, GRND_NONBLOCK) == static_cast<ssize_t>(sizeof key))
    return key;
  // Shortly after boot there may be no random bytes yet, but the kernel gives every process 16 of its own.
  if (const auto *const given = reinterpret_cast<const void *>(::getauxval(AT_RANDOM)))
    std::memcpy(&key, given, sizeof key);
  key.low ^= static_cast<std::uint64_t>(std::clock());
  return key;
}

const Key &theKey() noexcept {
  static const Key key = drawKey();
  return key;
}

/// The state of the hash, and the step that mixes it.
struct State {
  std::uint64_t v0, v1, v2, v3;

  void round() noexcept {
    v0 += v1;
    v2 += v3;
    v1 = std::rotl(v1, 13) ^ v0;
    v3 = std::rotl(v3, 16) ^ v2;
    v0 = std::rotl(v0, 32);
    v2 += v1;
    v0 += v3;
    v1 = std::rotl(v1, 17) ^ v2;
    v3 = std::rotl(v3, 21) ^ v0;
    v2 = std::rotl(v2, 32);
  }

  void take(std::uint64_t word) noexcept {
    v3 ^= word;
    round();
    v0 ^= word;
  }
};

} // namespace

std::uint64_t kestrune::platform::KeyedHash(std::string_view text) noexcept {
  const Key &key = theKey();
  State state{key.low ^ 0x736F6D6570736575, key.high ^ 0x646F72616E646F6D, key.low ^ 0x6C7967656E657261,
              key.high ^ 0x7465646279746573};
  const std::uint64_t length = std::uint64_t{text.size()} << 56U;
  for (; text.size() >= sizeof(std::uint64_t); text.remove_prefix(sizeof(std::uint64_t))) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data(), sizeof word);
    state.take(word);
  }
  // The last word contains the rest of the text and, in its top byte, the length.
  std::uint64_t last = 0;
  if (!text.empty())
    std::memcpy(&last, text.data(), text.size());
  state.take(last | length);
  state.v2 ^= 0xFF;
  for (int i = 0; i < 3; ++i)
    state.round();
  return state.v0 ^ state.v1 ^ state.v2 ^ state.v3;
}
