#include "tools/report/memory_map.h"

#include "tools/meanings.h"
#include "tools/memories.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>

namespace {

using Area = MemoryMap::Area;
using What = Area::Kind;

/// How each is drawn; what lies inside another comes behind it.
constexpr std::array<std::pair<What, const Memory *>, 5> kDrawn = {{{What::kRom, &kRom},
                                                                    {What::kEeprom, &kEeprom},
                                                                    {What::kExtended, &kExtendedEeprom},
                                                                    {What::kRam, &kRam},
                                                                    {What::kUninitialised, &kUninitialised}}};

constexpr double kRow = 30;      // of a label with two lines
constexpr double kSmallRow = 17; // of one with one line
constexpr double kTop = 14;
constexpr double kBarLeft = 58;
constexpr double kBarWidth = 84;
constexpr double kLabelLeft = kBarLeft + kBarWidth + 30;
constexpr double kWidth = 420; // has room for "Uninitialised EEPROM 16,384 bytes" in a wide font

bool isMemory(const Area &area) {
  return area.kind != What::kUninitialised && area.kind != What::kGap && area.kind != What::kOverlap;
}

/// Gaps lie below, then memories, then what lies inside them, and what is wrong on top.
int layerOf(const Area &area) {
  return area.kind == What::kGap ? 0 : isMemory(area) ? 1 : area.kind == What::kUninitialised ? 2 : 3;
}

bool isSmall(const Area &area) { return area.kind == What::kGap; }

double rowOf(const Area &area) { return isSmall(area) ? kSmallRow : kRow; }

const char *styleOf(What kind) {
  switch (kind) {
  case What::kRom:
    return "rom";
  case What::kEeprom:
    return "eeprom";
  case What::kExtended:
    return "extended";
  case What::kRam:
    return "ram";
  case What::kUninitialised:
    return "uninitialised";
  case What::kGap:
    return "gap";
  default:
    return "overlap";
  }
}

const Member *memberWith(const std::vector<Member> &members, std::string_view tag) {
  const auto found =
      std::find_if(members.begin(), members.end(), [&](const Member &member) { return member.shape->tag == tag; });
  return found != members.end() ? &*found : nullptr;
}

/// A number with one digit behind the point, as SVG takes it.
std::string coordinate(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f", value);
  std::string result = text.data();
  if (result.ends_with(".0"))
    result.resize(result.size() - 2);
  return result;
}

std::string rangeText(const Area &area) { return addressText(area.first) + " \xE2\x80\x93 " + addressText(area.last); }

/// What the picture shows, in words.
std::string describe(const MemoryMap &map) {
  std::string text;
  for (auto area = map.areas.rbegin(); area != map.areas.rend(); ++area) {
    text += text.empty() ? "" : "; ";
    text +=
        area->name + " " + addressText(area->first) + " to " + addressText(area->last) + ", " + sizeText(area->size());
    if (area->isWrong && area->kind == What::kUninitialised)
      text += ", outside of the EEPROM";
  }
  for (const std::string &complaint : map.complaints)
    text += (text.empty() ? "" : "; ") + readable(complaint);
  return (text.empty() ? "No memory" : text) + ".";
}

void addGaps(MemoryMap &map) {
  // What could not be drawn may lie anywhere.
  const char *const name = map.complaints.empty() ? "free" : "not known";
  std::vector<Area> memories;
  std::copy_if(map.areas.begin(), map.areas.end(), std::back_inserter(memories), isMemory);
  std::sort(memories.begin(), memories.end(), [](const Area &a, const Area &b) { return a.first < b.first; });
  long long next = 0;
  for (const Area &memory : memories) {
    if (memory.first > next)
      map.areas.push_back({What::kGap, name, next, memory.first - 1, false});
    next = std::max(next, memory.last + 1);
  }
  if (next <= map.last)
    map.areas.push_back({What::kGap, name, next, map.last, false});
}

void addOverlaps(MemoryMap &map) {
  std::vector<Area> overlaps;
  for (std::size_t i = 0; i < map.areas.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      Area &a = map.areas[j];
      Area &b = map.areas[i];
      const long long first = std::max(a.first, b.first);
      const long long last = std::min(a.last, b.last);
      if (!isMemory(a) || !isMemory(b) || first > last)
        continue;
      a.isWrong = b.isWrong = true;
      overlaps.push_back({What::kOverlap, a.name + " and " + b.name + " overlap", first, last, true});
    }
  }
  map.areas.insert(map.areas.end(), overlaps.begin(), overlaps.end());
}

/// Where the middle of each label stands, as near to that of its area as the others let it.
std::vector<double> labelPlaces(const std::vector<Area> &areas, const std::vector<double> &middles, double bottom) {
  std::vector<double> places = middles; // the uppermost first
  double limit = 0;
  for (std::size_t i = 0; i < places.size(); ++i) {
    places[i] = std::max(places[i], limit + rowOf(areas[i]) / 2);
    limit = places[i] + rowOf(areas[i]) / 2;
  }
  limit = bottom;
  for (std::size_t i = places.size(); i-- > 0;) {
    places[i] = std::min(places[i], limit - rowOf(areas[i]) / 2);
    limit = places[i] - rowOf(areas[i]) / 2;
  }
  return places;
}

class Drawing {
public:
  Drawing(Html &html, const MapScale &scale) : m_html(html), m_scale(scale) {}

  void axis() {
    for (int i = 0; i <= 4; ++i) {
      const double y = kTop + m_scale.height * (1 - i / 4.0);
      const long long address = (m_scale.last + 1) / 4 * i;
      m_html.shape("line", {{"class", "tick"},
                            {"x1", coordinate(kBarLeft - 6)},
                            {"x2", coordinate(kBarLeft - 1)},
                            {"y1", coordinate(y)},
                            {"y2", coordinate(y)}});
      m_html.element(
          "text",
          {{"class", "tick"}, {"x", coordinate(kBarLeft - 10)}, {"y", coordinate(y + 3.5)}, {"text-anchor", "end"}},
          addressText(address));
    }
  }

  void frame(long long last) { rect("frame", kBarLeft, kBarWidth, 0, last); }

  void area(const Area &area) {
    const bool isInside = area.kind == What::kUninitialised;
    const std::string style = std::string(styleOf(area.kind)) + (area.isWrong ? " wrong" : "");
    rect(style, isInside ? kBarLeft + kBarWidth / 2 : kBarLeft, isInside ? kBarWidth / 2 : kBarWidth, area.first,
         area.last);
  }

  void label(const Area &area, double middle, double place) {
    const std::string style = std::string("leader ") + styleOf(area.kind);
    const std::string y = coordinate(place);
    m_html.shape("path", {{"class", style},
                          {"d", "M" + coordinate(kBarLeft + kBarWidth) + " " + coordinate(middle) + "L" +
                                    coordinate(kLabelLeft - 16) + " " + y + "H" + coordinate(kLabelLeft - 6)}});
    const std::string x = coordinate(kLabelLeft);
    if (isSmall(area)) {
      m_html.element("text", {{"class", "free"}, {"x", x}, {"y", coordinate(place + 3.5)}},
                     rangeText(area) + "  " + area.name);
      return;
    }
    m_html.element("text", {{"class", area.isWrong ? "name wrong" : "name"}, {"x", x}, {"y", coordinate(place - 2.5)}},
                   (area.kind == What::kOverlap ? "Overlap" : area.name) + "  " + sizeText(area.size()));
    m_html.element("text",
                   {{"class", area.isWrong ? "range wrong" : "range"}, {"x", x}, {"y", coordinate(place + 10.5)}},
                   rangeText(area));
  }

  double y(long long address) const {
    return kTop + m_scale.height * (1 - static_cast<double>(address) / static_cast<double>(m_scale.last + 1));
  }

private:
  void rect(std::string_view style, double left, double width, long long first, long long last) {
    const double top = y(last + 1);
    m_html.shape("rect", {{"class", style},
                          {"x", coordinate(left)},
                          {"y", coordinate(top)},
                          {"width", coordinate(width)},
                          {"height", coordinate(std::max(y(first) - top, 1.0))}});
  }

  Html &m_html;
  const MapScale &m_scale;
};

} // namespace

long long MemoryMap::sizeOf(Area::Kind kind) const {
  const auto found = std::find_if(areas.begin(), areas.end(), [&](const Area &area) { return area.kind == kind; });
  return found != areas.end() ? found->size() : 0;
}

MemoryMap memoryMapOf(const Record &model, const std::vector<Member> &members) {
  MemoryMap map;
  for (const auto &[kind, memory] : kDrawn) {
    const std::string name = capitalised(memory->name);
    std::array<long long, 2> ends{0, 0};
    bool isGiven = false;
    bool isSound = true;
    for (std::size_t i = 0; i < ends.size(); ++i) {
      const char *const tag = i == 0 ? memory->first : memory->last;
      const Member *const member = tag != nullptr ? memberWith(members, tag) : nullptr;
      const Meaning *const meaning = tag != nullptr ? findMeaning(model.shape->tag, tag) : nullptr;
      if (member == nullptr || meaning == nullptr)
        continue;
      isGiven = isGiven || member->isInFile();
      const Judgement judgement = judge(*meaning, member->text());
      isSound = isSound && !judgement.number.empty();
      if (judgement.number.empty())
        map.complaints.push_back(name + " cannot be drawn: " + tag + " " + judgement.words);
      else
        ends[i] = std::stoll(judgement.number);
    }
    if (!isGiven || !isSound)
      continue;
    if (!memory->isThere(ends[0], ends[1])) {
      if (memory->first == nullptr && ends[1] != 0)
        map.complaints.push_back(name + " is not drawn: " + memory->last + " is " + addressText(ends[1]) +
                                 ", the default");
      continue;
    }
    if (ends[0] > ends[1] || ends[0] < 0) {
      map.complaints.push_back(name + " cannot be drawn: it begins at " + addressText(ends[0]) + " and ends at " +
                               addressText(ends[1]));
      continue;
    }
    map.areas.push_back({kind, name, ends[0], ends[1], false});
    while (map.last < ends[1])
      map.last = map.last * 2 + 1;
  }
  for (Area &area : map.areas) {
    area.isWrong =
        area.kind == What::kUninitialised && std::none_of(map.areas.begin(), map.areas.end(), [&](const Area &other) {
          return other.kind == What::kEeprom && other.first <= area.first && area.last <= other.last;
        });
  }
  addOverlaps(map);
  addGaps(map);
  std::stable_sort(map.areas.begin(), map.areas.end(), [](const Area &a, const Area &b) { return a.first < b.first; });
  return map;
}

void MapScale::include(const MemoryMap &map) {
  constexpr double kLeast = 300;
  double labels = 0;
  for (const Area &area : map.areas)
    labels += rowOf(area);
  last = std::max(last, map.last);
  height = std::max({height, kLeast, labels});
}

void drawMap(Html &html, const MemoryMap &map, const MapScale &scale, const std::string &id, const std::string &title,
             std::string_view style) {
  const std::string height = coordinate(scale.height + 2 * kTop);
  const std::string width = coordinate(kWidth);
  const bool isFile = style.data() != nullptr;
  const auto svg =
      html.in("svg", {{"xmlns", isFile ? std::string_view("http://www.w3.org/2000/svg") : std::string_view()},
                      {"class", "map"},
                      {"viewBox", "0 0 " + width + " " + height},
                      {"width", width},
                      {"height", height},
                      {"role", "img"},
                      {"aria-labelledby", id + "t " + id + "d"}});
  html.element("title", {{"id", id + "t"}}, title);
  html.element("desc", {{"id", id + "d"}}, describe(map));
  if (isFile) {
    const auto element = html.in("style");
    html.own(style);
  }
  Drawing drawing(html, scale);
  drawing.axis();
  drawing.frame(map.last);
  std::vector<Area> areas = map.areas;
  std::stable_sort(areas.begin(), areas.end(), [](const Area &a, const Area &b) { return layerOf(a) < layerOf(b); });
  for (const Area &area : areas)
    drawing.area(area);
  areas.assign(map.areas.rbegin(), map.areas.rend());
  std::vector<double> middles;
  middles.reserve(areas.size());
  for (const Area &area : areas)
    middles.push_back((drawing.y(area.first) + drawing.y(area.last + 1)) / 2);
  std::vector<std::size_t> order(areas.size());
  for (std::size_t i = 0; i < order.size(); ++i)
    order[i] = i;
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return middles[a] < middles[b]; });
  std::vector<Area> sorted;
  std::vector<double> sortedMiddles;
  for (const std::size_t i : order) {
    sorted.push_back(areas[i]);
    sortedMiddles.push_back(middles[i]);
  }
  const std::vector<double> places = labelPlaces(sorted, sortedMiddles, scale.height + 2 * kTop);
  for (std::size_t i = 0; i < sorted.size(); ++i)
    drawing.label(sorted[i], sortedMiddles[i], places[i]);
}

std::string addressText(long long address) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), address < 0 ? "%lld" : "0x%04llX", address);
  return text.data();
}

std::string sizeText(long long bytes) {
  constexpr long long kKilobyte = 1024;
  const bool isWhole = bytes >= kKilobyte && bytes % kKilobyte == 0;
  std::string digits = std::to_string(isWhole ? bytes / kKilobyte : bytes);
  for (std::size_t i = digits.size(); i > 3; i -= 3)
    digits.insert(i - 3, ",");
  return digits + (isWhole ? " KB" : bytes == 1 ? " byte" : " bytes");
}
