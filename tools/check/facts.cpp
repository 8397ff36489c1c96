#include "tools/check/facts.h"

#include "tools/meanings.h"

#include <algorithm>
#include <limits>

using Index = CheckedFile::Index;

std::optional<long long> numberOf(const CheckedFile &file, const CheckedFile::Record &record, std::string_view tag) {
  const Meaning *const meaning = findMeaning(record.shape->tag, tag);
  const std::optional<std::string> text = meaning != nullptr ? file.text(record, tag) : std::nullopt;
  if (!text)
    return std::nullopt;
  const Judgement judgement = judge(*meaning, *text);
  if (judgement.number.empty() || (judgement.finding != 0 && findFinding(judgement.finding)->level != Level::kNote))
    return std::nullopt;
  return std::stoll(judgement.number);
}

std::string trimmed(const std::string &text) {
  const std::size_t begin = text.find_first_not_of(" \t\r\n");
  return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(" \t\r\n") + 1 - begin);
}

std::vector<Entry> entriesOf(const CheckedFile &file, const CheckedFile::Record &record, std::string_view tag,
                             std::string_view separators) {
  const std::optional<std::string> text = file.text(record, tag);
  if (!text || *text == "Unassigned")
    return {};
  const std::size_t offset = file.textOffset(record, tag);
  const bool isPlain = file.outline().text().substr(offset, text->size()) == *text;
  std::vector<Entry> entries;
  for (std::size_t at = 0; at < text->size();) {
    const std::size_t end = std::min(text->find_first_of(separators, at), text->size());
    if (end > at)
      entries.push_back({text->substr(at, end - at), offset + (isPlain ? at : 0)});
    at = end + 1;
  }
  return entries;
}

std::vector<Stray> straysOf(const CheckedFile &file, std::string_view section, std::string_view tag) {
  const Outline &outline = file.outline();
  const CheckedFile::Record &root = file.record(0);
  const MemberShape *const collection = root.shape->member(section);
  const Index element = collection != nullptr ? file.slot(root, *collection) : CheckedFile::kNone;
  std::vector<Stray> strays;
  if (element == CheckedFile::kNone)
    return strays;
  for (Index child = element + 1; child < outline.end(element); child = outline.end(child)) {
    if (file.isRecord(child))
      continue;
    Stray stray{outline.offset(child), std::nullopt};
    for (const Outline::Attribute &attribute : outline.attributes(child)) {
      if (folded(attribute.name) == folded(tag))
        stray.text = attribute.value;
    }
    const Index inside = outline.first(child, tag);
    if (inside != CheckedFile::kNone)
      stray.text = plainText(outline, inside);
    strays.push_back(std::move(stray));
  }
  return strays;
}

bool hasSection(const CheckedFile &file, std::string_view section) {
  const CheckedFile::Record &root = file.record(0);
  const MemberShape *const member = root.shape->member(section);
  return member != nullptr && file.slot(root, *member) != CheckedFile::kNone;
}

void NumberTable::add(const CheckedFile &file, std::string_view section, std::string_view recordTag,
                      std::string_view tag, const Accepts &accepts) {
  std::vector<Row> rows;
  for (const Index number : file.recordsOf(recordTag)) {
    const CheckedFile::Record &record = file.record(number);
    const bool isEmpty = file.text(record, tag).value_or("").empty(); // counts as 0, which nobody means
    rows.push_back({file.outline().offset(record.element), isEmpty ? std::nullopt : numberOf(file, record, tag)});
  }
  for (const Stray &stray : straysOf(file, section, tag)) {
    const Number number = readNumber(stray.text.value_or(""), 0, false);
    rows.push_back({stray.offset, number.whole && number.end > 0 ? std::optional(number.value) : std::nullopt});
  }
  std::sort(rows.begin(), rows.end(), [](const Row &a, const Row &b) { return a.offset < b.offset; });

  for (Row &row : rows) {
    if (row.number && accepts && !accepts(*row.number))
      row.number.reset();
    if (row.number)
      ++m_numbers[*row.number];
  }
  m_tables.push_back(std::move(rows));
  findGaps();
}

void NumberTable::findGaps() {
  constexpr long long kLeast = std::numeric_limits<long long>::min();
  constexpr long long kMost = std::numeric_limits<long long>::max();
  m_gaps.clear();
  for (const std::vector<Row> &rows : m_tables) {
    long long last = kLeast;
    long long faulty = 0;
    for (const Row &row : rows) {
      if (!row.number || m_numbers[*row.number] > 1) {
        ++faulty;
        continue;
      }
      if (faulty > 0) // in a table without order, it may be any number
        m_gaps.emplace_back(last < *row.number ? std::pair(last, *row.number) : std::pair(kLeast, kMost));
      last = *row.number;
      faulty = 0;
    }
    if (faulty > 0)
      m_gaps.emplace_back(last, last == kLeast ? kMost : last + faulty + 1);
  }
}

bool NumberTable::lacks(long long number) const {
  return !has(number) && std::none_of(m_gaps.begin(), m_gaps.end(),
                                      [number](const auto &gap) { return gap.first < number && number < gap.second; });
}
