#pragma once

#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

// Texts that the maker of a file could choose so that all of them have one hash in std::hash.

namespace support {

/// `count` different texts of 16 characters. Each step of the hash can be undone: for any first 8 bytes there are 8
/// that lead to the wanted state, and those of usable characters are kept.
inline std::vector<std::string> collidingTexts(std::size_t count, bool (*isUsable)(int character)) {
  constexpr std::uint64_t kFactor = 0xC6A4A7935BD1E995;
  constexpr std::uint64_t kInverse = 0x5F7A0EA7E59B19BD;                    // kFactor * kInverse is 1 modulo 2^64
  const auto mix = [](std::uint64_t word) { return word ^ (word >> 47U); }; // undoes itself

  std::vector<std::string> texts;
  constexpr std::uint64_t kLetters = 0x0F0F0F0F0F0F0F0F; // counts through 16 letters a byte
  for (std::uint64_t letters = 0; texts.size() < count; letters = (letters - kLetters) & kLetters) {
    std::uint64_t words[] = {0x6161616161616161 + letters, 0};
    const std::uint64_t state = ((0xC70F6907 ^ (16 * kFactor)) ^ (mix(words[0] * kFactor) * kFactor)) * kFactor;
    words[1] = mix(state * kInverse) * kInverse;
    std::uint64_t rest = words[1];
    int good = 0;
    for (; good < 8 && isUsable(static_cast<int>(rest & 0xFFU)); ++good)
      rest >>= 8U;
    if (good == 8)
      texts.emplace_back(reinterpret_cast<const char *>(words), sizeof words);
  }
  for (const std::string &each : texts)
    EXPECT_EQ(std::hash<std::string>()(each), std::hash<std::string>()(texts[0]));
  return texts;
}

/// As many other texts.
inline std::vector<std::string> otherTexts(std::size_t count) {
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < count; ++i)
    texts.push_back("any-other-text-" + std::to_string(i));
  return texts;
}

} // namespace support
