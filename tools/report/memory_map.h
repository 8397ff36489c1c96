#pragma once

#include "tools/document.h"
#include "tools/report/html.h"

#include <string>
#include <vector>

/// The memory map of a chip model.
struct MemoryMap {
  /// A range of addresses, first and last included.
  struct Area {
    enum class Kind { kRom, kEeprom, kExtended, kRam, kUninitialised, kGap, kOverlap };
    Kind kind;
    std::string name; ///< "EEPROM"; for an overlap those that overlap.
    long long first;
    long long last;
    bool isWrong; ///< It overlaps another one, or lies where it must not.

    long long size() const { return last - first + 1; }
  };

  std::vector<Area> areas;             ///< The lowest first, with the gaps and overlaps between them.
  std::vector<std::string> complaints; ///< Why an area cannot be drawn.
  long long last = 0xFFFF;             ///< The last address of the picture.

  /// The size of a kind of memory in bytes; 0 if there is none.
  long long sizeOf(Area::Kind kind) const;
};

/// The map that the members of a model give.
MemoryMap memoryMapOf(const Record &model, const std::vector<Member> &members);

/// How maps are drawn: those with the same scale can be compared.
struct MapScale {
  long long last = 0; ///< The address at the upper end.
  double height = 0;  ///< From the first address to the last.

  /// Makes room for one more map.
  void include(const MemoryMap &map);
};

/// The map as an SVG picture, with a title and a description; `id` is the beginning of its ids. With `style` it is a
/// file of its own.
void drawMap(Html &html, const MemoryMap &map, const MapScale &scale, const std::string &id, const std::string &title,
             std::string_view style = {});

/// "0xF800"
std::string addressText(long long address);
/// "8 KB", or "1,536 bytes" for what is no whole number of those.
std::string sizeText(long long bytes);
