#include "tools/check/facts.h"
#include "tools/meanings.h"
#include "tools/memories.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

// 501 to 509: numbers that do not fit together.

namespace {

using Index = CheckedFile::Index;

/// A record that is judged.
struct Subject {
  const CheckedFile &file;
  Hits &hits;
  Index number;
  const CheckedFile::Record &record;

  std::optional<long long> value(const char *tag) const { return numberOf(file, record, tag); }
  std::string text(const char *tag) const { return std::string(tag) + " " + file.text(record, tag).value_or(""); }
  void add(int finding, const char *tag, std::string message) const {
    hits.add(finding, file.textOffset(record, tag), std::move(message), number);
  }
};

/// A range of addresses, if there is one.
std::optional<std::pair<long long, long long>> bounds(const Subject &subject, const Memory &memory) {
  const auto first = memory.first != nullptr ? subject.value(memory.first) : 0;
  const auto last = subject.value(memory.last);
  if (!first || !last || *first > *last || !memory.isThere(*first, *last))
    return std::nullopt;
  return std::pair(*first, *last);
}

/// Whether it stands there that there is none: from 0x0 to 0x0.
bool isNone(const Subject &subject, const Memory &memory) {
  return subject.value(memory.first) == 0 && subject.value(memory.last) == 0;
}

/// Whether both are there and have an address in common.
bool doOverlap(const Subject &subject, const Memory &a, const Memory &b) {
  const auto first = bounds(subject, a);
  const auto second = bounds(subject, b);
  return first && second && first->first <= second->second && second->first <= first->second;
}

std::string shownRange(const Subject &subject, const Memory &memory) {
  return std::string("the ") + memory.name + " (" +
         (memory.first != nullptr ? subject.text(memory.first) + " to " : "up to ") + subject.text(memory.last) + ")";
}

/// One number of a record is above another that bounds it.
void judgePair(const Subject &subject, int finding, const char *low, const char *high, const char *relation) {
  const auto first = subject.value(low);
  const auto second = subject.value(high);
  if (first && second && *first > *second)
    subject.add(finding, low, subject.text(low) + relation + subject.text(high));
}

/// 502: told once for a memory that reaches into several others.
void judgeOverlaps(const Subject &subject) {
  std::array<std::vector<const Memory *>, kMemories.size()> others;
  for (std::size_t i = 0; i < kMemories.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (!doOverlap(subject, kMemories[i], kMemories[j]))
        continue;
      others[i].push_back(&kMemories[j]);
      others[j].push_back(&kMemories[i]);
    }
  }
  while (true) {
    std::size_t most = 0;
    for (std::size_t i = 0; i < kMemories.size(); ++i)
      most = others[i].size() >= others[most].size() ? i : most;
    if (others[most].empty())
      return;
    const Memory &memory = kMemories[most];
    std::string message = shownRange(subject, memory) + " overlaps ";
    for (const Memory *const other : others[most])
      message += (other == others[most].front() ? "" : " and ") + shownRange(subject, *other);
    subject.add(502, memory.first != nullptr ? memory.first : memory.last, std::move(message));
    others[most].clear();
    for (std::vector<const Memory *> &rest : others)
      std::erase(rest, &memory);
  }
}

void judgeMemories(const Subject &subject) {
  for (const Memory &memory : kMemories) {
    if (memory.first != nullptr)
      judgePair(subject, 501, memory.first, memory.last, " is above ");
  }
  judgePair(subject, 501, kUninitialised.first, kUninitialised.last, " is above ");
  judgeOverlaps(subject);
  const auto rom = subject.value("ROMend");
  const auto least = subject.value("ROMendMinimum");
  if (rom && least && *rom < *least)
    subject.add(503, "ROMend", subject.text("ROMend") + " is below " + subject.text("ROMendMinimum"));
  const auto uninitialised = bounds(subject, kUninitialised);
  const auto eeprom = bounds(subject, kEeprom);
  const bool isJudged = uninitialised && (eeprom || isNone(subject, kEeprom));
  if (isJudged && (!eeprom || uninitialised->first < eeprom->first || uninitialised->second > eeprom->second))
    subject.add(504, kUninitialised.first,
                shownRange(subject, kUninitialised) + " is not inside " + shownRange(subject, kEeprom));
}

void judgeVersions(const Subject &subject) {
  judgePair(subject, 505, "minFWrelease", "maxFWrelease", " is above ");
  const auto lowest = subject.value("minFWrelease");
  const auto highest = subject.value("maxFWrelease");
  if (!lowest || !highest || *lowest > *highest)
    return;
  for (const Entry &entry : entriesOf(subject.file, subject.record, "FirmwareVersionList", ";,\n")) {
    const std::string text = trimmed(entry.text);
    const Number version = readNumber(text, 0, false);
    if (version.whole && version.end > 0 && (version.value < *lowest || version.value > *highest))
      subject.hits.add(506, entry.offset + entry.text.find(text),
                       "FirmwareVersionList has " + inQuotes(text) + ", outside of " + subject.text("minFWrelease") +
                           " to " + subject.text("maxFWrelease"),
                       subject.number);
  }
}

void judgeModel(const Subject &subject) {
  judgeMemories(subject);
  judgeVersions(subject);
  judgePair(subject, 507, "MinClockID", "MaxClockID", " is above ");
}

void judgeChannel(const Subject &subject) { judgePair(subject, 507, "min_clockID", "max_clockID", " is above "); }

/// The rate that a text such as "7.3728 MHz" shows, in kilohertz, and by how much its last digit may be rounded.
std::optional<std::pair<double, double>> shownRate(const std::string &text) {
  static constexpr std::array<std::pair<const char *, double>, 4> kUnits = {
      {{"hz", 0.001}, {"khz", 1}, {"mhz", 1000}, {"ghz", 1000000}}};
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  std::string unit = folded(std::string_view(end, static_cast<std::size_t>(text.data() + text.size() - end)));
  std::erase(unit, ' ');
  for (const auto &[name, factor] : kUnits) {
    if (error != std::errc() || unit != name)
      continue;
    const std::string digits(text.data(), end);
    const std::size_t point = digits.find('.');
    const double decimals = point != std::string::npos ? static_cast<double>(digits.size() - point - 1) : 0;
    return std::pair(number * factor, std::pow(10.0, -decimals) * factor / 2);
  }
  return std::nullopt;
}

void judgeClock(const Subject &subject) {
  const MemberShape &multipliers = *subject.record.shape->member("Multipliers");
  const Index element = subject.file.slot(subject.record, multipliers);
  const Outline &outline = subject.file.outline();
  if (element != CheckedFile::kNone && outline.isLeaf(element) && !subject.file.isCut(element))
    subject.hits.add(508, outline.offset(element), "the clock has no multipliers", subject.number);
  const std::string value = trimmed(subject.file.text(subject.record, "Value").value_or(""));
  const std::optional<std::string> display = subject.file.text(subject.record, "Display");
  const auto rate = display ? shownRate(trimmed(*display)) : std::nullopt;
  if (!rate)
    return;
  double kilohertz = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), kilohertz);
  const bool isNumber = error == std::errc() && end == value.data() + value.size();
  if (isNumber && std::abs(rate->first - kilohertz) > rate->second * 1.000001)
    subject.add(509, "Display",
                "Display " + inQuotes(*display) + " is not the rate of Value " + inQuotes(value) + ", in kHz");
}

} // namespace

void judgeRanges(const CheckedFile &file, Hits &hits) {
  static const std::map<std::string_view, void (*)(const Subject &)> kJudges = {
      {"VorlanModel", judgeModel}, {"Channel", judgeChannel}, {"Clock", judgeClock}};
  for (Index number = 0; number < file.records().size(); ++number) {
    const auto judge = kJudges.find(file.record(number).shape->tag);
    if (judge != kJudges.end() && !file.record(number).isLost)
      judge->second({file, hits, number, file.record(number)});
  }
}
