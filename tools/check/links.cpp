#include "tools/check/relations.h"
#include "tools/meanings.h"

#include <limits>
#include <map>
#include <set>

// 402 to 404: the table of models that can be linked with each other.

namespace {

using Index = CheckedFile::Index;

constexpr std::string_view kName = "Name";
constexpr std::string_view kList = "LinkCompatibleList";

/// A model number that stands somewhere in the table.
struct Mention {
  Index row;
  std::string_view tag;
  Entry entry;
  long long number;
  bool matches; // or it has been told that it never does
};

/// Reads the table, and tells the entries that never match.
class LinkTable {
public:
  explicit LinkTable(Checked &checked) : m_file(*checked.file), m_hits(*checked.hits) {
    for (const Index row : m_file.recordsOf("LinkCompatibleModel")) {
      const CheckedFile::Record &record = m_file.record(row);
      std::optional<long long> name;
      if (!record.isLost) {
        name = add(row, kName, {m_file.text(record, kName).value_or(""), m_file.textOffset(record, kName)});
        if (name)
          m_rows.emplace(*name, row);
      }
      if (!m_file.text(record, kList))
        m_unreadable[row] = kWholeList;
      for (const Entry &entry : entriesOf(m_file, record, kList, ";,\n")) {
        if (entry.text.find_first_not_of(" \t\r") == std::string::npos)
          continue;
        const std::optional<long long> other = add(row, kList, entry);
        if (name && other)
          m_links.emplace(std::pair(*name, *other), m_mentions.size() - 1);
        m_unreadable[row] += other ? 0 : 1;
      }
    }
  }

  /// Numbers that no model has.
  void judgeNumbers(const NumberTable &models) {
    for (const Mention &mention : m_mentions) {
      if (!models.lacks(mention.number))
        continue;
      m_unknown.insert(mention.number);
      const bool isEntry = mention.tag == kList;
      m_unreadable[mention.row] += isEntry ? 1 : 0;
      // The row of a model that is gone is told once, and not each list that names it.
      if (isEntry && m_rows.count(mention.number) > 0)
        continue;
      m_hits.add(402, mention.entry.offset,
                 std::string(mention.tag) + " has " + inQuotes(mention.entry.text) + ", and no model has that number",
                 mention.row);
    }
  }

  void judgeDirections() {
    NumberTable rows;
    rows.add(m_file, "LinkCompatibleModels", "LinkCompatibleModel", kName,
             [this](long long number) { return m_unknown.count(number) == 0; });
    for (const auto &[link, number] : m_links) {
      const auto &[from, to] = link;
      const Mention &mention = m_mentions[number];
      if (!mention.matches || from == to || m_unknown.count(from) > 0 || m_unknown.count(to) > 0 ||
          m_links.count({to, from}) > 0)
        continue;
      // What has been told of the other row may be meant for this one.
      const auto row = m_rows.find(to);
      if (row == m_rows.end() ? !rows.lacks(to) : m_unreadable[row->second] > 0) {
        if (row != m_rows.end() && m_unreadable[row->second] != kWholeList)
          --m_unreadable[row->second];
        continue;
      }
      m_hits.add(404, mention.entry.offset,
                 std::to_string(from) + " is linked with " + std::to_string(to) + ", but " + std::to_string(to) +
                     " is not linked with " + std::to_string(from),
                 mention.row);
    }
  }

private:
  static constexpr std::size_t kWholeList = std::numeric_limits<std::size_t>::max();

  /// The number that is meant, also where the text never matches.
  std::optional<long long> add(Index row, std::string_view tag, const Entry &entry) {
    const Judgement judgement = judge(Reading::kModelNumber, entry.text);
    if (judgement.finding != 0)
      m_hits.add(403, entry.offset, std::string(tag) + " " + judgement.words, row);
    const std::size_t end = entry.text.find_last_not_of(" \t\r") + 1;
    const bool isHex = entry.text.find_first_of("xX") != std::string::npos;
    const Number number = readNumber(entry.text.substr(0, end), isHex ? 16 : 10, false);
    if (!number.whole || number.end == 0)
      return std::nullopt;
    m_mentions.push_back({row, tag, entry, number.value, judgement.finding == 0});
    return number.value;
  }

  const CheckedFile &m_file;
  Hits &m_hits;
  std::vector<Mention> m_mentions;
  std::map<std::pair<long long, long long>, std::size_t> m_links; // with the number of the mention
  std::map<long long, Index> m_rows;
  std::map<Index, std::size_t> m_unreadable; // how much has been told of the list of a row
  std::set<long long> m_unknown;
};

} // namespace

void judgeLinks(FileSet &files) {
  for (Checked &checked : files.all()) {
    const CheckedFile &file = *checked.file;
    if (!file.isKind("VorlanTyp") || files.isAddOn(file))
      continue; // programs do not take the table of an add-on
    NumberTable models;
    for (const Checked *const part : files.chipData(file))
      models.add(*part->file, "VorlanModels", "VorlanModel", "ModelNum");
    // An add-on that was not given may have the model.
    const std::string base = file.baseName();
    const std::size_t point = std::min(base.rfind('.'), base.size());
    const bool isAlone = files.chipData(file).size() == 1;
    const bool hasAddOns = isAlone && files.isBeside(file, base.substr(0, point) + "-1" + base.substr(point));
    LinkTable table(checked);
    if (file.isWhole() && !file.recordsOf("VorlanModel").empty() && !models.isEmpty() && !hasAddOns)
      table.judgeNumbers(models);
    table.judgeDirections();
  }
}
