#include "tools/report/records.h"

#include "tools/meanings.h"
#include "tools/report/pack.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr std::size_t kMostInPage = 200; // records of a table whose rows and details stand in the page itself
constexpr std::size_t kPerPack = 100;
constexpr std::size_t kMostInCell = 200;
constexpr std::size_t kMostFindings = 500;
/// Between the details in a pack. It can stand in no text, which has no control characters.
constexpr char kSeparator = '\x1E';

const Member *memberIn(const std::vector<Member> &members, std::string_view tag) {
  const auto found =
      std::find_if(members.begin(), members.end(), [&](const Member &member) { return member.shape->tag == tag; });
  return found != members.end() ? &*found : nullptr;
}

/// The number behind a text that does not show it, such as " = 8" behind 010.
std::string numberNote(const RecordShape &record, const Member &member) {
  const Meaning *const meaning = findMeaning(record.tag, member.shape->tag);
  if (meaning == nullptr)
    return {};
  const std::string_view text = member.text();
  const bool isHex = meaning->reading == Reading::kHex || meaning->reading == Reading::kHexUnsigned;
  const Judgement judgement = judge(*meaning, text);
  const bool isPlain = judgement.number.empty() || judgement.number == text || meaning->reading == Reading::kDouble ||
                       (isHex && (text.starts_with("0x") || text.starts_with("0X")));
  return isPlain ? std::string() : "= " + judgement.number;
}

/// A tag that a narrow column may break.
void writeTag(Html &html, std::string_view tag) {
  std::size_t begin = 0;
  for (std::size_t i = 1; i < tag.size(); ++i) {
    const bool isBreak =
        (tag[i] >= 'A' && tag[i] <= 'Z' && tag[i - 1] >= 'a' && tag[i - 1] <= 'z') || tag[i - 1] == '_';
    if (!isBreak)
      continue;
    html.text(tag.substr(begin, i - begin)).own("<wbr>");
    begin = i;
  }
  html.text(tag.substr(begin));
}

void writeMember(Html &html, const RecordShape &record, const Member &member, const Remarks::Change *change) {
  const auto row = html.in("div", {{"class", change != nullptr ? std::string_view("changed") : std::string_view()}});
  html.element("dt", member.shape->tag);
  const auto value = html.in("dd");
  if (change != nullptr) {
    html.element("del", readable(change->before));
    html.text(" ");
    html.element("ins", readable(member.text()));
  } else {
    html.text(readable(member.text()));
  }
  const std::string note = numberNote(record, member);
  if (!note.empty())
    html.text(" ").element("span", {{"class", "note"}}, note);
  if (!member.isInFile())
    html.text(" ").element("span", {{"class", "note"}}, "default");
}

/// The items of a collection inside a record, as a plain table.
void writeInner(Html &html, const Document &document, const Record &record, const Member &collection) {
  const std::vector<Record> items = document.items(record, collection);
  html.element("h4", collection.shape->tag);
  if (items.empty()) {
    html.element("p", {{"class", "note"}}, "None");
    return;
  }
  const auto scroll = html.in("div", {{"class", "scroll"}});
  const auto table = html.in("table");
  {
    const auto head = html.in("thead");
    const auto row = html.in("tr");
    for (const MemberShape &member : collection.shape->folder->members)
      html.element("th", {{"scope", "col"}}, member.tag);
  }
  const auto body = html.in("tbody");
  for (const Record &item : items) {
    const auto row = html.in("tr");
    for (const Member &member : document.members(item))
      html.element("td", member.folder == nullptr ? readable(member.text()) : std::string());
  }
}

} // namespace

const Member *Item::member(std::string_view tag) const { return memberIn(members, tag); }

std::string_view Item::text(std::string_view tag) const {
  const Member *const found = member(tag);
  return found != nullptr ? found->text() : std::string_view();
}

std::optional<double> Item::number(std::string_view tag) const {
  const Member *const found = member(tag);
  return found != nullptr ? numberIn(*record.shape, *found) : std::nullopt;
}

std::vector<Item> itemsOf(const Report &report, const ReportFile &file, const Member &collection) {
  std::vector<Item> items;
  std::size_t number = 0;
  for (Loaded::Item &item : file.loaded->items(collection)) {
    std::string id = anchorOf(file, collection.shape->tag, std::to_string(number++));
    if (!report.wants(*item.document, item.record))
      continue;
    std::vector<Member> members = item.document->members(item.record);
    items.push_back({item.document, std::move(item.record), std::move(members), std::move(id)});
  }
  return items;
}

std::optional<double> numberIn(const RecordShape &record, const Member &member) {
  const Meaning *const meaning = findMeaning(record.tag, member.shape->tag);
  if (meaning == nullptr)
    return std::nullopt;
  const Judgement judgement = judge(*meaning, member.text());
  return judgement.number.empty() ? std::nullopt : std::optional(std::strtod(judgement.number.c_str(), nullptr));
}

Column columnOf(const RecordShape &record, std::string_view member) {
  const Meaning *const meaning = findMeaning(record.tag, member);
  return {std::string(member), meaning != nullptr ? meaning->sentence : ""};
}

Cell cellOf(const RecordShape &record, const Member &member) {
  const std::string note = numberNote(record, member);
  return {readable(member.text(), kMostInCell) + (note.empty() ? "" : " " + note) +
              (member.isInFile() ? "" : " (default)"),
          numberIn(record, member)};
}

RecordTable::RecordTable(Html &html, const Report &report, std::string id, std::string caption,
                         std::vector<Column> columns, std::size_t rows)
    : m_html(html), m_report(report), m_id(std::move(id)), m_caption(std::move(caption)), m_columns(std::move(columns)),
      m_isPacked(rows > kMostInPage) {
  open(m_id, m_caption);
}

void RecordTable::open(const std::string &id, const std::string &caption) {
  m_html.open("div", {{"class", "scroll"}, {"tabindex", "0"}, {"role", "region"}, {"aria-label", caption}});
  m_html.open(
      "table",
      {{"class", "records"}, {"id", id}, {"data-per", m_isPacked ? std::to_string(kPerPack) : std::string_view()}});
  m_html.element("caption", caption);
  {
    const auto head = m_html.in("thead");
    const auto row = m_html.in("tr");
    for (const Column &column : m_columns) {
      const auto cell = m_html.in(
          "th", {{"scope", "col"}, {"title", column.sentence.empty() ? std::string_view() : column.sentence}});
      writeTag(m_html, column.head);
    }
  }
  m_html.open("tbody", {});
  m_html.line();
}

void RecordTable::close() {
  for (int i = 0; i < 3; ++i)
    m_html.close(); // body, table, block
  m_html.line();
}

void RecordTable::add(const Item &item, const std::vector<Cell> &cells, const std::string &mark, const Detail &detail) {
  const auto &findings = m_report.remarks->findings(*item.document, item.record.element);
  const auto &change = m_report.remarks->changes(*item.document, item.record.address);
  using Change = Remarks::ItemChange::Kind;
  const bool opens = detail != nullptr || !findings.empty() || change.kind == Change::kChanged;
  const std::string target = "#" + item.id + "-d";
  if (m_rows == kMostInPage) {
    close();
    m_html.open("noscript", {}); // to a browser that runs scripts its content is a mere text, which it need not parse
    open(m_id + "-rest", m_caption + ", continued");
  }
  {
    const auto row = m_html.in("tr", {{"id", item.id},
                                      {"class", change.kind == Change::kChanged ? std::string_view("changed")
                                                : change.kind == Change::kAdded ? std::string_view("added")
                                                                                : std::string_view()}});
    {
      const auto head = m_html.in("th", {{"scope", "row"}});
      if (opens)
        m_html.element("a", {{"href", target}}, cells.front().text);
      else
        m_html.text(cells.front().text);
      if (!mark.empty())
        m_html.text(" ").element("span", {{"class", "badge own"}}, mark);
      if (change.kind != Change::kSame)
        m_html.text(" ").element("span", {{"class", "badge change"}},
                                 change.kind == Change::kAdded ? "new" : "changed");
      if (!findings.empty()) {
        const bool isError = std::any_of(findings.begin(), findings.end(), [](const Remarks::Remark &remark) {
          return remark.finding->level == Level::kError;
        });
        m_html.text(" ").element("span", {{"class", isError ? "badge error" : "badge warning"}},
                                 counted(findings.size(), "finding", "findings"));
      }
    }
    for (std::size_t i = 1; i < cells.size(); ++i) {
      const Cell &cell = cells[i];
      if (!cell.number) {
        m_html.element("td", cell.text);
        continue;
      }
      std::string key = std::to_string(*cell.number);
      key.erase(key.find_last_not_of('0') + 1);
      if (key.ends_with('.'))
        key.pop_back();
      m_html.element("td", {{"data-n", key == cell.text ? std::string_view() : key}, {"class", "n"}}, cell.text);
    }
  }
  m_html.line();
  if (opens) {
    Html piece;
    const auto write = [&] {
      writeRemarks(piece, m_report, item);
      if (detail != nullptr)
        detail(piece);
    };
    if (m_isPacked) {
      write();
    } else {
      const auto details = piece.in("details", {{"id", item.id + "-d"}});
      piece.element("summary", cells.front().text);
      const auto block = piece.in("div", {{"class", "detail"}});
      write();
    }
    m_details += piece.str();
    m_details += m_isPacked ? "" : "\n";
  }
  if (m_isPacked) {
    m_details += kSeparator;
    if ((m_rows + 1) % kPerPack == 0)
      flush();
  }
  ++m_rows;
}

void RecordTable::flush() {
  Html pack;
  pack.element("script", {{"type", "text/plain"}, {"id", m_id + "-p" + std::to_string(m_rows / kPerPack)}},
               packed(m_details));
  m_packs += pack.line().str();
  m_details.clear();
}

void RecordTable::finish() {
  close();
  if (m_rows > kMostInPage) {
    m_html.close();
    m_html.line();
  }
  if (!m_isPacked) {
    if (!m_details.empty()) {
      const auto block = m_html.in("div", {{"class", "details"}});
      m_html.own(m_details);
    }
    return;
  }
  if (!m_details.empty())
    flush();
  m_html.element("p", {{"class", "without"}}, "A browser that runs scripts opens each of these records.");
  m_html.own(m_packs);
}

void writeRecord(Html &html, const Report &report, const Item &item, const std::vector<std::string_view> &but) {
  struct Open {
    Record record;
    std::string road; // below the item
  };
  const auto &changes = report.remarks->changes(*item.document, item.record.address).changes;
  std::vector<Open> open{{item.record, ""}};
  while (!open.empty()) {
    const Open at = std::move(open.back());
    open.pop_back();
    const std::vector<Member> members = item.document->members(at.record);
    if (!at.road.empty())
      html.element("h4", at.record.shape->tag);
    {
      const auto list = html.in("dl", {{"class", "members"}});
      for (const Member &member : members) {
        if (member.folder != nullptr ||
            (at.road.empty() && std::find(but.begin(), but.end(), member.shape->tag) != but.end()))
          continue;
        const std::string address = at.road + member.shape->tag;
        const auto change = std::find_if(changes.begin(), changes.end(),
                                         [&](const Remarks::Change &one) { return one.address == address; });
        writeMember(html, *at.record.shape, member, change != changes.end() ? &*change : nullptr);
      }
    }
    for (const Member &member : members) {
      if (member.collection != nullptr)
        writeInner(html, *item.document, at.record, member);
    }
    for (auto member = members.rbegin(); member != members.rend(); ++member) {
      if (member->folder != nullptr && member->collection == nullptr)
        open.push_back({item.document->folderOf(at.record, *member), at.road + member->shape->tag + "/"});
    }
  }
}

void writeRemarks(Html &html, const Report &report, const Item &item) {
  const auto &findings = report.remarks->findings(*item.document, item.record.element);
  if (!findings.empty())
    writeFindings(html, findings, item.document->name());
  const auto &change = report.remarks->changes(*item.document, item.record.address);
  if (change.changes.empty())
    return;
  html.element("h4", "Changed: old text \xE2\x86\x92 new text");
  const auto scroll = html.in("div", {{"class", "scroll"}});
  const auto table = html.in("table", {{"class", "changes"}});
  const auto body = html.in("tbody");
  for (const Remarks::Change &member : change.changes) {
    const auto row = html.in("tr");
    html.element("th", {{"scope", "row"}}, readable(member.address));
    const auto cell = html.in("td");
    using What = Remarks::Change::Kind;
    if (member.kind == What::kAdded)
      html.element("ins", "new");
    else if (member.kind == What::kRemoved)
      html.element("del", "removed");
    else
      html.element("del", readable(member.before)).text(" \xE2\x86\x92 ").element("ins", readable(member.after));
  }
}

void writeMeanings(Html &html, const RecordShape &shape) {
  const auto details = html.in("details", {{"class", "meanings"}});
  html.element("summary", "What the members mean");
  std::vector<const RecordShape *> open{&shape};
  while (!open.empty()) {
    const RecordShape *const at = open.back();
    open.pop_back();
    if (at != &shape)
      html.element("h4", at->tag);
    {
      const auto list = html.in("dl", {{"class", "sentences"}});
      for (const MemberShape &member : at->members) {
        const Meaning *const meaning = findMeaning(at->tag, member.tag);
        const auto row = html.in("div");
        html.element("dt", member.tag).element("dd", meaning != nullptr ? meaning->sentence : "");
      }
    }
    for (auto member = at->members.rbegin(); member != at->members.rend(); ++member) {
      if (member->folder != nullptr)
        open.push_back(member->folder.get());
    }
  }
}

void writeFindings(Html &html, const std::vector<Remarks::Remark> &findings, const std::string &file) {
  {
    const auto list = html.in("ul", {{"class", "findings"}});
    for (std::size_t i = 0; i < std::min(findings.size(), kMostFindings); ++i) {
      const Remarks::Remark &remark = findings[i];
      const std::string name = findingName(remark.finding->number);
      const std::string level = levelName(remark.finding->level);
      const auto line = html.in("li", {{"class", level}});
      html.element("span", {{"class", "badge " + level}}, level).text(" ");
      html.element("a", {{"href", "#" + name}, {"title", remark.finding->title}}, name).text(" ");
      html.text(readable(remark.message)).text(" ");
      html.element("span", {{"class", "note"}},
                   file + ":" + std::to_string(remark.place.line) + ":" + std::to_string(remark.place.column) +
                       (remark.record.empty() ? "" : " [" + readable(remark.record, kMostInCell) + "]"));
    }
  }
  if (findings.size() > kMostFindings)
    html.element("p", counted(findings.size() - kMostFindings, "more finding", "more findings") + "; check prints all");
}

std::string counted(std::size_t count, const std::string &one, const std::string &many) {
  std::string digits = std::to_string(count);
  for (std::size_t i = digits.size(); i > 3; i -= 3)
    digits.insert(i - 3, ",");
  return digits + " " + (count == 1 ? one : many);
}
