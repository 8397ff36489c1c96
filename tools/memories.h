#pragma once

#include <array>

/// A memory of a chip model, and the members that bound it.
struct Memory {
  const char *name;  ///< In a sentence: "the extended EEPROM".
  const char *first; ///< The member with its first address; null where that is 0.
  const char *last;  ///< The member with its last address.

  /// Whether there is one: from 0 to 0, and from default to default, there is none.
  constexpr bool isThere(long long from, long long to) const {
    constexpr long long kDefault = 0xFFFF; // of a member that was never set
    if (first == nullptr)
      return to != 0 && to != kDefault;
    return from != to || (from != 0 && from != kDefault);
  }
};

inline constexpr Memory kRom = {"ROM", nullptr, "ROMend"};
inline constexpr Memory kEeprom = {"EEPROM", "EEstart", "EEend"};
inline constexpr Memory kExtendedEeprom = {"extended EEPROM", "ExtendedEEstart", "ExtendedEEend"};
inline constexpr Memory kRam = {"RAM", "RAMstart", "RAMend"};
/// A part of the EEPROM.
inline constexpr Memory kUninitialised = {"uninitialised EEPROM", "UninitEEStart", "UninitEEEnd"};

/// Those that have addresses of their own.
inline constexpr std::array<Memory, 4> kMemories = {kRom, kEeprom, kExtendedEeprom, kRam};
