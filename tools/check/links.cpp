#include "tools/check/relations.h"
#include "tools/meanings.h"

#include <map>
#include <set>

// 402 to 404: the table of models that can be linked with each other.

namespace {

using Index = CheckedFile::Index;

/// A model number that stands somewhere in the table.
struct Mention {
  Index row;
  const char *tag;
  Entry entry;
  long long number;
};

/// Reads the table, and tells the entries that never match.
class LinkTable {
public:
  explicit LinkTable(Checked &checked) : m_file(*checked.file), m_hits(*checked.hits) {
    for (const Index row : m_file.recordsOf("LinkCompatibleModel")) {
      if (m_file.record(row).isLost)
        continue;
      const std::optional<long long> name =
          add(row, "Name",
              {m_file.text(m_file.record(row), "Name").value_or(""), m_file.textOffset(m_file.record(row), "Name")});
      for (const Entry &entry : entriesOf(m_file, m_file.record(row), "LinkCompatibleList", ";,\n")) {
        const std::optional<long long> other = add(row, "LinkCompatibleList", entry);
        if (name && other)
          m_links.emplace(std::pair(*name, *other), m_mentions.size() - 1);
      }
      if (name)
        m_rows.insert(*name);
    }
  }

  /// Numbers that no model has. `unreadable` models may be the ones that are meant.
  std::set<long long> judgeNumbers(const std::set<long long> &models, std::size_t unreadable) {
    std::set<long long> unknown;
    for (const Mention &mention : m_mentions) {
      if (models.count(mention.number) > 0 || !unknown.insert(mention.number).second)
        continue;
      if (m_rows.count(mention.number) > 0 && unreadable > 0) {
        --unreadable;
        continue;
      }
      m_hits.add(402, mention.entry.offset,
                 std::string(mention.tag) + " has " + inQuotes(mention.entry.text) + ", and no model has that number",
                 mention.row);
    }
    return unknown;
  }

  void judgeDirections(const std::set<long long> &unknown) {
    for (const auto &[link, number] : m_links) {
      const auto &[from, to] = link;
      const Mention &mention = m_mentions[number];
      if (from == to || unknown.count(from) > 0 || unknown.count(to) > 0 || m_links.count({to, from}) > 0)
        continue;
      m_hits.add(404, mention.entry.offset,
                 std::to_string(from) + " is linked with " + std::to_string(to) + ", but " + std::to_string(to) +
                     " is not linked with " + std::to_string(from),
                 mention.row);
    }
  }

private:
  /// The number that is meant, also where the text never matches.
  std::optional<long long> add(Index row, const char *tag, const Entry &entry) {
    const Judgement judgement = judge(Reading::kModelNumber, entry.text);
    if (judgement.finding != 0)
      m_hits.add(403, entry.offset, std::string(tag) + " " + judgement.words, row);
    const std::size_t end = entry.text.find_last_not_of(" \t\r") + 1;
    const bool isHex = entry.text.find_first_of("xX") != std::string::npos;
    const Number number = readNumber(entry.text.substr(0, end), isHex ? 16 : 10, false);
    if (!number.whole || number.end == 0)
      return std::nullopt;
    m_mentions.push_back({row, tag, entry, number.value});
    return number.value;
  }

  const CheckedFile &m_file;
  Hits &m_hits;
  std::vector<Mention> m_mentions;
  std::map<std::pair<long long, long long>, std::size_t> m_links; // with the number of the mention
  std::set<long long> m_rows;
};

} // namespace

void judgeLinks(FileSet &files) {
  for (Checked &checked : files.all()) {
    const CheckedFile &file = *checked.file;
    if (!file.isKind("VorlanTyp") || file.addOnNumber() > 0)
      continue; // programs do not take the table of an add-on
    LinkTable table(checked);
    std::set<long long> models;
    std::size_t unreadable = 0;
    for (const Checked *const part : files.chipData(file)) {
      for (const Index number : part->file->recordsOf("VorlanModel")) {
        const auto model = numberOf(*part->file, part->file->record(number), "ModelNum");
        unreadable += model ? 0 : 1;
        if (model)
          models.insert(*model);
      }
      for (const std::string &text : strayTexts(*part->file, "VorlanModels", "ModelNum"))
        models.insert(readNumber(text, 0, false).value);
    }
    // An add-on that was not given may have the model.
    const std::string base = file.baseName();
    const std::size_t point = std::min(base.rfind('.'), base.size());
    const bool isAlone = files.chipData(file).size() == 1;
    const bool hasAddOns = isAlone && files.isBeside(file, base.substr(0, point) + "-1" + base.substr(point));
    const bool isJudged = file.isWhole() && hasSection(file, "VorlanModels") && !models.empty() && !hasAddOns;
    table.judgeDirections(isJudged ? table.judgeNumbers(models, unreadable) : std::set<long long>());
  }
}
