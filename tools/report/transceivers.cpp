#include "tools/report/records.h"
#include "tools/report/sections.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr const char *kGroup = "ChannelTypeNumber";

/// The columns of a record's own values, the name first; not the one that the records are grouped by.
std::vector<std::string> columnsOf(const RecordShape &shape) {
  std::vector<std::string> tags;
  if (shape.member("Name") != nullptr)
    tags.emplace_back("Name");
  for (const MemberShape &member : shape.members) {
    if (member.isValue() && member.tag != "Name" && member.tag != kGroup)
      tags.push_back(member.tag);
  }
  return tags;
}

bool hasInner(const RecordShape &shape) {
  return std::any_of(shape.members.begin(), shape.members.end(),
                     [](const MemberShape &member) { return !member.isValue(); });
}

void writeRows(Html &html, const Report &report, const ReportFile &file, const std::string &id,
               const std::string &caption, const RecordShape &shape, const std::vector<const Item *> &items,
               bool isUsers) {
  const std::vector<std::string> tags = columnsOf(shape);
  std::vector<Column> columns;
  columns.reserve(tags.size());
  for (const std::string &tag : tags)
    columns.push_back(columnOf(shape, tag));
  RecordTable table(html, report, id, caption, columns, items.size());
  for (const Item *const item : items) {
    std::vector<Cell> cells;
    for (const std::string &tag : tags) {
      const Member *const member = item->member(tag);
      cells.push_back(member != nullptr ? cellOf(shape, *member) : Cell());
    }
    const std::string mark = item->document == &file.loaded->main() ? ""
                             : isUsers                              ? "user's own"
                                                                    : fileNameOf(*item->document);
    const RecordTable::Detail detail = [&](Html &piece) { writeRecord(piece, report, *item); };
    table.add(*item, cells, mark, hasInner(shape) ? detail : RecordTable::Detail());
  }
  table.finish();
}

} // namespace

void writeTransceivers(Html &html, const Report &report, const ReportFile &file, const Member &collection) {
  const std::vector<Item> items = itemsOf(report, file, collection);
  const RecordShape &shape = *collection.shape->folder;
  html.element("h3", {{"id", anchorOf(file, collection.shape->tag, "")}}, collection.shape->tag);
  // Those whose channel type is no number come last.
  std::map<std::pair<bool, double>, std::vector<const Item *>> groups;
  for (const Item &item : items) {
    const auto number = item.number(kGroup);
    groups[{!number, number.value_or(0)}].push_back(&item);
  }
  {
    const auto block = html.in("div", {{"class", "aligned"}});
    std::size_t place = 0;
    for (const auto &[key, group] : groups) {
      const auto number = static_cast<long long>(std::lround(key.second));
      const auto name = report.channelTypes.find(number);
      std::string title = key.first ? std::string("No channel type") : "Channel type " + std::to_string(number);
      if (!key.first && name != report.channelTypes.end())
        title += ": " + readable(name->second, 100);
      writeRows(html, report, file, anchorOf(file, collection.shape->tag, "t" + std::to_string(place++)),
                title + ", " + counted(group.size(), "transceiver", "transceivers"), shape, group, true);
    }
  }
  writeMeanings(html, shape);
}

void writeTable(Html &html, const Report &report, const ReportFile &file, const Member &collection) {
  const std::vector<Item> items = itemsOf(report, file, collection);
  html.element("h3", {{"id", anchorOf(file, collection.shape->tag, "")}}, collection.shape->tag);
  std::vector<const Item *> rows;
  rows.reserve(items.size());
  for (const Item &item : items)
    rows.push_back(&item);
  writeRows(html, report, file, anchorOf(file, collection.shape->tag, "t"),
            collection.shape->tag + ", " + counted(items.size(), "row", "rows"), *collection.shape->folder, rows,
            false);
}

void writeDropped(Html &html, const Report &report, const ReportFile &file, const Member &collection) {
  const std::vector<Loaded::Item> items = file.loaded->dropped(collection);
  if (items.empty())
    return;
  html.element("h4", "Not seen by programs");
  const auto scroll = html.in("div", {{"class", "scroll"}});
  const auto table = html.in("table", {{"class", "dropped"}});
  html.element("caption", collection.shape->tag + " that a load of all files leaves out");
  {
    const auto head = html.in("thead");
    const auto row = html.in("tr");
    for (const char *const title : {"Name", "File", "Reason"})
      html.element("th", {{"scope", "col"}}, title);
  }
  const auto body = html.in("tbody");
  for (const Loaded::Item &item : items) {
    const auto row = html.in("tr");
    html.element("th", {{"scope", "row"}}, readable(nameOf(*item.document, item.record), 200));
    html.element("td", readable(fileNameOf(*item.document)));
    const auto cell = html.in("td");
    const auto &findings = report.remarks->findings(*item.document, item.record.element);
    if (!item.document->failure().empty())
      html.text("nothing of this file is used: " + readable(item.document->failure(), 500));
    else if (findings.empty())
      html.text("its name or number is there already");
    else
      writeFindings(html, findings, item.document->name());
  }
}
