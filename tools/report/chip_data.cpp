#include "tools/address.h"
#include "tools/meanings.h"
#include "tools/report/memory_map.h"
#include "tools/report/records.h"
#include "tools/report/sections.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <set>

namespace {

using Memory = MemoryMap::Area::Kind;

/// The parts of a text between any of the separators, without the empty ones.
std::vector<std::string> partsOf(std::string_view text, std::string_view separators) {
  std::vector<std::string> parts;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find_first_of(separators, at), text.size());
    if (end > at)
      parts.emplace_back(text.substr(at, end - at));
    at = end + 1;
  }
  return parts;
}

std::string shortest(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.9g", value);
  return text.data();
}

/// "15 MHz" for 15000 kilohertz.
std::string rateText(double kilohertz) {
  if (std::abs(kilohertz) >= 1000)
    return shortest(kilohertz / 1000) + " MHz";
  return shortest(kilohertz) + " kHz";
}

/// A member and its text, where it has one: "Encoding 5".
std::string labelled(const Item &item, std::initializer_list<const char *> tags) {
  std::string text;
  for (const char *const tag : tags) {
    const Member *const member = item.member(tag);
    if (member != nullptr)
      text += (text.empty() ? "" : ", ") + std::string(tag) + " " + readable(member->text(), 80);
  }
  return text;
}

Item inner(const Item &around, const Record &record) {
  return {around.document, record, around.document->members(record), {}};
}

std::vector<Item> innerItems(const Item &item, std::string_view collection) {
  std::vector<Item> items;
  const Member *const member = item.member(collection);
  if (member == nullptr || member->collection == nullptr)
    return items;
  for (const Record &record : item.document->items(item.record, *member))
    items.push_back(inner(item, record));
  return items;
}

Cell sizeCell(const MemoryMap &map, Memory kind) {
  const long long size = map.sizeOf(kind);
  return {size > 0 ? sizeText(size) : "", static_cast<double>(size)};
}

/// What is known of a file's clocking schemes, by number, so that each model need not look for its own.
using Schemes = std::map<double, std::pair<std::string, std::string>>; // id on the page, description

Schemes schemesOf(const ReportFile &file) {
  Schemes schemes;
  const Document &document = file.loaded->main();
  const Member member = document.member(document.root(), "ClockingSchemes");
  if (member.shape == nullptr)
    return schemes;
  std::size_t place = 0;
  for (const Record &record : document.items(document.root(), member)) {
    const Item item{&document, record, document.members(record), {}};
    const auto number = item.number("Id");
    const std::string id = anchorOf(file, "ClockingSchemes", std::to_string(place++));
    if (number)
      schemes.emplace(*number, std::pair(id, readable(item.text("Description"), 200)));
  }
  return schemes;
}

void writeComplaints(Html &html, const MemoryMap &map) {
  for (const std::string &complaint : map.complaints)
    html.element("p", {{"class", "wrong"}}, readable(complaint));
}

void writeModel(Html &html, const Report &report, const Schemes &schemes, const Item &item, const MemoryMap &map) {
  const std::string name = readable(item.text("Name"), 100);
  {
    const auto block = html.in("div", {{"class", "model"}});
    {
      const auto figure = html.in("figure");
      MapScale scale;
      scale.include(map);
      drawMap(html, map, scale, item.id, "Memory map of " + name);
      writeComplaints(html, map);
    }
    const auto facts = html.in("div");
    html.element("h4", "Clock");
    {
      const auto line = html.in("p");
      html.text("Ids " + readable(item.text("MinClockID"), 80) + " to " + readable(item.text("MaxClockID"), 80));
      html.text(", scheme ");
      const auto number = item.number("ClockingScheme");
      const auto scheme = number ? schemes.find(*number) : schemes.end();
      const std::string text = readable(item.text("ClockingScheme"), 80);
      if (scheme != schemes.end())
        html.element("a", {{"href", "#" + scheme->second.first}}, text).text(": " + scheme->second.second);
      else
        html.text(text.empty() ? "without a number" : text + ", which is not in this file");
    }
    html.element("h4", "Transceivers");
    const std::vector<std::string> transceivers = partsOf(item.text("TransceiverList"), ";");
    if (transceivers.empty())
      html.element("p", {{"class", "note"}}, "None");
    const auto list = html.in(transceivers.empty() ? "div" : "ul", {{"class", "names"}});
    for (std::size_t i = 0; i < std::min<std::size_t>(transceivers.size(), 200); ++i) {
      const std::string shown = readable(transceivers[i], 200);
      const auto anchor = report.anchors.find(transceivers[i]);
      const auto entry = html.in("li");
      if (anchor != report.anchors.end())
        html.element("a", {{"href", "#" + anchor->second}}, shown);
      else
        html.text(shown);
    }
  }
  writeRecord(html, report, item, {"TransceiverList"});
}

void writeComparison(Html &html, const Report &report, const ReportFile &file, const Member &collection) {
  std::vector<std::pair<Item, MemoryMap>> chosen;
  MapScale scale;
  std::size_t number = 0;
  std::vector<Loaded::Item> items = file.loaded->items(collection);
  for (const std::string &name : report.compare) {
    for (const Loaded::Item &found : items) {
      const bool isThere = std::any_of(chosen.begin(), chosen.end(),
                                       [&](const auto &one) { return one.first.record.folder == found.record.folder; });
      if (isThere || !isCalled(*found.document, found.record, name))
        continue;
      Item item{found.document, found.record, found.document->members(found.record), "c" + std::to_string(number++)};
      MemoryMap map = memoryMapOf(item.record, item.members);
      scale.include(map);
      chosen.emplace_back(std::move(item), std::move(map));
    }
  }
  if (chosen.empty())
    return;
  html.element("h3", "Memory maps on one scale");
  const auto row = html.in("div", {{"class", "compare"}});
  for (const auto &[item, map] : chosen) {
    const auto figure = html.in("figure");
    const std::string name = readable(item.text("Name"), 100);
    html.element("figcaption", name);
    drawMap(html, map, scale, item.id, "Memory map of " + name + ", on the scale of all");
    writeComplaints(html, map);
  }
}

void writeMultiplier(Html &html, const Item &clock, const Item &multiplier) {
  const auto entry = html.in("li");
  const auto rate = clock.number("Value");
  const auto factor = multiplier.number("Value");
  html.element("span", {{"class", "node"}}, "\xC3\x97 " + readable(multiplier.text("Display"), 80)).text(" ");
  if (rate && factor)
    html.element("strong", rateText(*rate * *factor)).text(" core clock");
  else
    html.element("span", {{"class", "wrong"}}, "no core clock, for want of a number");
  html.text(" ").element("span", {{"class", "note"}}, labelled(multiplier, {"Value", "Encoding", "Cpu", "Mac"}));
  const std::string description = readable(multiplier.text("Description"));
  if (!description.empty())
    html.text(" ").element("span", {{"class", "words"}}, description);
}

void writeClock(Html &html, const Item &clock) {
  const auto entry = html.in("li");
  html.element("span", {{"class", "node"}}, readable(clock.text("Display"), 80)).text(" ");
  html.element("span", {{"class", "note"}}, labelled(clock, {"Value", "CycleDivider", "Encoding", "Uart"})).text(" ");
  html.element("span", {{"class", "words"}}, readable(clock.text("Description")));
  const std::vector<Item> multipliers = innerItems(clock, "Multipliers");
  const std::vector<Item> oscillators = innerItems(clock, "Oscillators");
  if (multipliers.empty() && oscillators.empty())
    return;
  const auto list = html.in("ul");
  for (const Item &multiplier : multipliers)
    writeMultiplier(html, clock, multiplier);
  for (const Item &oscillator : oscillators) {
    const auto line = html.in("li");
    html.element("span", {{"class", "node oscillator"}}, readable(oscillator.text("Display"), 80)).text(" oscillator ");
    html.element("span", {{"class", "note"}}, labelled(oscillator, {"Value", "Encoding"}));
  }
}

/// The link table as programs read it: which numbers each number lists.
struct Links {
  std::map<std::string, std::set<std::string>> lists;
  std::vector<std::string> numbers; // in the order of the file
  std::map<std::string, std::size_t> place;

  std::size_t placeOf(const std::string &number) {
    const auto [found, isNew] = place.emplace(number, numbers.size());
    if (isNew)
      numbers.push_back(number);
    return found->second;
  }
  bool has(const std::string &from, const std::string &to) const {
    const auto found = lists.find(from);
    return found != lists.end() && found->second.count(to) > 0;
  }
};

/// The numbers that hang together, each group in the order of the file.
std::vector<std::vector<std::string>> groupsOf(Links &links) {
  std::vector<std::size_t> root(links.numbers.size());
  std::iota(root.begin(), root.end(), std::size_t{0});
  const auto find = [&](std::size_t i) {
    while (root[i] != i)
      i = root[i] = root[root[i]];
    return i;
  };
  for (const auto &[from, list] : links.lists) {
    for (const std::string &to : list) {
      const std::size_t a = find(links.placeOf(from));
      const std::size_t b = find(links.placeOf(to));
      root[std::max(a, b)] = std::min(a, b);
    }
  }
  std::map<std::size_t, std::vector<std::string>> groups;
  for (std::size_t i = 0; i < links.numbers.size(); ++i)
    groups[find(i)].push_back(links.numbers[i]);
  std::vector<std::vector<std::string>> result;
  result.reserve(groups.size());
  for (auto &[first, group] : groups)
    result.push_back(std::move(group));
  return result;
}

void writeLink(Html &html, const Links &links, const std::string &from, const std::string &to) {
  const bool there = links.has(from, to);
  const bool back = links.has(to, from);
  if (from == to) {
    html.element("td", {{"class", "same"}}, "");
  } else if (there && back) {
    const auto cell = html.in("td", {{"class", "both"}});
    html.element("span", {{"aria-hidden", "true"}}, "\xE2\x97\x8F").element("span", {{"class", "spoken"}}, "both ways");
  } else if (there) {
    const auto cell =
        html.in("td", {{"class", "one"}, {"title", from + " lists " + to + ", but not the other way round"}});
    html.element("span", {{"aria-hidden", "true"}}, "\xE2\x86\x92").element("span", {{"class", "spoken"}}, "one way");
  } else if (back) {
    const auto cell = html.in("td", {{"class", "lacks"}, {"title", from + " does not list " + to}});
    html.element("span", {{"class", "spoken"}}, "missing");
  } else {
    html.element("td", "");
  }
}

void writeMatrix(Html &html, const Links &links, const std::vector<std::string> &group,
                 const std::map<std::string, std::string> &names) {
  const auto scroll = html.in("div", {{"class", "scroll"}});
  const auto table = html.in("table", {{"class", "matrix"}});
  std::string numbers;
  for (const std::string &number : group)
    numbers += (numbers.empty() ? "" : ", ") + number;
  html.element("caption", {{"class", "spoken"}}, "Links between the models " + numbers);
  {
    const auto head = html.in("thead");
    const auto row = html.in("tr");
    html.element("td", {{"class", "corner"}}, "");
    for (const std::string &number : group)
      html.element("th", {{"scope", "col"}}, number);
  }
  const auto body = html.in("tbody");
  for (const std::string &from : group) {
    const auto row = html.in("tr");
    {
      const auto head = html.in("th", {{"scope", "row"}});
      html.text(from);
      const auto name = names.find(from);
      if (name != names.end())
        html.text(" ").element("span", {{"class", "note"}}, name->second);
    }
    for (const std::string &to : group)
      writeLink(html, links, from, to);
  }
}

/// A group that is too large for a matrix, as a list.
void writeLinkList(Html &html, const Links &links, const std::vector<std::string> &group) {
  const auto list = html.in("ul");
  for (const std::string &from : group) {
    const auto found = links.lists.find(from);
    if (found == links.lists.end())
      continue;
    const auto entry = html.in("li");
    html.element("strong", from).text(":");
    for (const std::string &to : found->second) {
      html.text(" " + to);
      if (!links.has(to, from))
        html.text(" ").element("span", {{"class", "badge warning"}}, "one way");
    }
  }
}

} // namespace

void writeModels(Html &html, const Report &report, const ReportFile &file, const Member &collection) {
  const std::vector<Item> items = itemsOf(report, file, collection);
  const RecordShape &shape = *collection.shape->folder;
  const Schemes schemes = schemesOf(file);
  writeComparison(html, report, file, collection);
  html.element("h3", {{"id", anchorOf(file, collection.shape->tag, "")}}, "Models");
  const std::vector<Column> columns = {columnOf(shape, "Name"),
                                       columnOf(shape, "Key"),
                                       columnOf(shape, "ModelNum"),
                                       columnOf(shape, "Family"),
                                       {"ROM", "Size of the ROM."},
                                       {"EEPROM", "Size of the EEPROM."},
                                       {"Extended EEPROM", "Size of the extended EEPROM."},
                                       {"RAM", "Size of the RAM."},
                                       {"Firmware", "Lowest and highest firmware release."},
                                       columnOf(shape, "ClockingScheme")};
  RecordTable table(html, report, anchorOf(file, collection.shape->tag, "t"), counted(items.size(), "model", "models"),
                    columns, items.size());
  for (const Item &item : items) {
    const MemoryMap map = memoryMapOf(item.record, item.members);
    std::vector<Cell> cells;
    for (const char *const tag : {"Name", "Key", "ModelNum", "Family"}) {
      const Member *const member = item.member(tag);
      cells.push_back(member != nullptr ? cellOf(shape, *member) : Cell());
    }
    for (const Memory kind : {Memory::kRom, Memory::kEeprom, Memory::kExtended, Memory::kRam})
      cells.push_back(sizeCell(map, kind));
    const std::string lowest = readable(item.text("minFWrelease"), 40);
    const std::string highest = readable(item.text("maxFWrelease"), 40);
    cells.push_back({lowest == highest ? lowest : lowest + " \xE2\x80\x93 " + highest, item.number("maxFWrelease")});
    const Member *const scheme = item.member("ClockingScheme");
    cells.push_back(scheme != nullptr ? cellOf(shape, *scheme) : Cell());
    table.add(item, cells, item.document == &file.loaded->main() ? "" : fileNameOf(*item.document),
              [&](Html &piece) { writeModel(piece, report, schemes, item, map); });
  }
  table.finish();
  writeMeanings(html, shape);
}

void writeSchemes(Html &html, const Report &report, const ReportFile &file, const Member &collection) {
  const Document &document = file.loaded->main();
  std::map<double, std::vector<std::string>> users;
  std::set<double> wanted; // by the models that are shown
  const Member models = document.member(document.root(), "VorlanModels");
  for (const Loaded::Item &found : file.loaded->items(models)) {
    const Item model{found.document, found.record, found.document->members(found.record), {}};
    const auto number = model.number("ClockingScheme");
    if (!number)
      continue;
    users[*number].push_back(readable(model.text("Name"), 100));
    if (report.wants(*found.document, found.record))
      wanted.insert(*number);
  }
  html.element("h3", {{"id", anchorOf(file, collection.shape->tag, "")}}, "Clocking schemes");
  std::size_t place = 0;
  for (const Record &record : document.items(document.root(), collection)) {
    const Item scheme{&document, record, document.members(record),
                      anchorOf(file, collection.shape->tag, std::to_string(place++))};
    const auto number = scheme.number("Id");
    const auto used = number ? users.find(*number) : users.end();
    if (!report.wants(document, record) && !(number && wanted.count(*number) > 0))
      continue;
    const auto &change = report.remarks->changes(document, record.address);
    const auto &findings = report.remarks->findings(document, record.element);
    const auto details = html.in("details", {{"class", "scheme"}, {"id", scheme.id}});
    {
      const auto summary = html.in("summary");
      html.element("strong", "Scheme " + readable(scheme.text("Id"), 80)).text(" ");
      html.text(readable(scheme.text("Description"), 200)).text(" ");
      html.element("span", {{"class", "note"}},
                   used != users.end() ? counted(used->second.size(), "model", "models")
                                       : std::string("no model uses it"));
      if (change.kind != Remarks::ItemChange::Kind::kSame)
        html.text(" ").element("span", {{"class", "badge change"}},
                               change.kind == Remarks::ItemChange::Kind::kAdded ? "new" : "changed");
      if (!findings.empty())
        html.text(" ").element("span", {{"class", "badge warning"}}, counted(findings.size(), "finding", "findings"));
    }
    writeRemarks(html, report, scheme);
    html.element("p", {{"class", "note"}}, labelled(scheme, {"Algorithm"}));
    const std::vector<Item> clocks = innerItems(scheme, "Clocks");
    if (!clocks.empty()) {
      const auto tree = html.in("ul", {{"class", "tree"}});
      for (const Item &clock : clocks)
        writeClock(html, clock);
    }
    if (used != users.end()) {
      std::string names;
      for (std::size_t i = 0; i < std::min<std::size_t>(used->second.size(), 30); ++i)
        names += (i == 0 ? "Used by " : ", ") + used->second[i];
      html.element("p", {{"class", "note"}}, names + (used->second.size() > 30 ? ", \xE2\x80\xA6" : ""));
    }
  }
  writeMeanings(html, *collection.shape->folder);
}

void writeLinks(Html &html, const Report &report, const ReportFile &file, const Member &collection) {
  constexpr std::size_t kMostInMatrix = 64;
  const Document &document = file.loaded->main();
  Links links;
  for (const Record &record : document.items(document.root(), collection)) {
    const Item item{&document, record, document.members(record), {}};
    // What is no plain number never matches a model.
    const auto isNumber = [](std::string_view text) { return judge(Reading::kModelNumber, text).finding == 0; };
    const std::string from(item.text("Name"));
    if (!isNumber(from))
      continue;
    links.placeOf(from);
    for (const std::string &to : partsOf(item.text("LinkCompatibleList"), ";,\n")) {
      if (!isNumber(to))
        continue;
      links.placeOf(to);
      links.lists[from].insert(to);
    }
  }
  std::map<std::string, std::string> names;
  std::set<std::string> wanted;
  const Member models = document.member(document.root(), "VorlanModels");
  for (const Loaded::Item &model : file.loaded->items(models)) {
    const Member number = model.document->member(model.record, "ModelNum");
    const auto value = numberIn(*model.record.shape, number);
    if (!value)
      continue;
    const std::string text = shortest(*value);
    names.emplace(text, readable(nameOf(*model.document, model.record), 60));
    if (report.wants(*model.document, model.record))
      wanted.insert(text);
  }
  html.element("h3", {{"id", anchorOf(file, collection.shape->tag, "")}}, "Link table");
  if (!links.lists.empty())
    html.element(
        "p", {{"class", "note"}},
        "A row lists the models in its columns: \xE2\x97\x8F both list each other, \xE2\x86\x92 only the row lists "
        "the column, a dashed cell: only the column lists the row. Groups of models without a link between them stand "
        "apart.");
  for (const Record &record : document.items(document.root(), collection)) {
    const auto &change = report.remarks->changes(document, record.address);
    using Kind = Remarks::ItemChange::Kind;
    if (change.kind == Kind::kSame && report.remarks->findings(document, record.element).empty())
      continue;
    const char *const what = change.kind == Kind::kAdded ? " is new" : change.kind == Kind::kChanged ? " changed" : "";
    html.element("h4", "Model " + readable(nameOf(document, record), 60) + what);
    writeRemarks(html, report, {&document, record, {}, {}});
  }
  std::string alone;
  const auto matrices = html.in("div", {{"class", "matrices"}});
  for (const std::vector<std::string> &group : groupsOf(links)) {
    if (!report.only.empty() &&
        std::none_of(group.begin(), group.end(), [&](const std::string &number) { return wanted.count(number) > 0; }))
      continue;
    if (group.size() == 1) {
      const auto name = names.find(group.front());
      alone += (alone.empty() ? "" : ", ") + group.front() + (name != names.end() ? " (" + name->second + ")" : "");
    } else if (group.size() <= kMostInMatrix)
      writeMatrix(html, links, group, names);
    else
      writeLinkList(html, links, group);
  }
  if (!alone.empty())
    html.element("p", "Without a link to another model: " + alone);
}
