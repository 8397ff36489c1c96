#include "tools/comparison.h"

#include "tools/address.h"
#include "tools/meanings.h"
#include "tools/messages.h"
#include "tools/table.h"
#include "tools/texts.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <unordered_map>

namespace {

std::string folded(const std::string &text) {
  CString result(text.c_str());
  return std::string(result.MakeLower().View());
}

/// The name by which people know an item; a clock has none but what is displayed.
std::string labelOf(const Document &document, const Record &item) {
  if (item.shape->member("Name") == nullptr && item.shape->member("Display") != nullptr)
    return std::string(document.member(item, "Display").text());
  return nameOf(document, item);
}

/// The items of two collections that belong together: for each of the first its number in the second, or -1.
class Pairing {
public:
  Pairing(const Document &before, const std::vector<Record> &first, const Document &after,
          const std::vector<Record> &second)
      : m_first(namesOf(before, first)), m_second(namesOf(after, second)), m_partner(first.size(), -1),
        m_isTaken(second.size()) {
    // Models may share a key or a name: the surest pairs come first.
    const auto both = [](const Names &names) { return names.key + '\n' + names.name; };
    const auto key = [](const Names &names) { return names.key; };
    const auto name = [](const Names &names) { return names.name; };
    pair(both, false);
    pair(key, true);
    pair(name, false);
    pair(key, false);
  }

  int partner(std::size_t item) const { return m_partner[item]; }
  bool isTaken(std::size_t item) const { return m_isTaken[item]; }

private:
  struct Names {
    std::string key;
    std::string name;
  };

  static std::vector<Names> namesOf(const Document &document, const std::vector<Record> &items) {
    std::vector<Names> names;
    names.reserve(items.size());
    for (const Record &item : items)
      names.push_back({folded(std::string(item.folder->Key().View())), folded(nameOf(document, item))});
    return names;
  }

  /// Pairs the items that are left by a text, those of one text in their order or, if `onlyUnique`, not at all.
  template <class Text>
  void pair(Text text, bool onlyUnique) {
    struct Places {
      std::vector<int> second;
      std::size_t next = 0;
      std::size_t inFirst = 0;
    };
    std::unordered_map<std::string, Places> places;
    for (std::size_t i = 0; i < m_second.size(); ++i) {
      if (!m_isTaken[i])
        places[text(m_second[i])].second.push_back(static_cast<int>(i));
    }
    if (places.empty())
      return;
    for (std::size_t i = 0; i < m_first.size(); ++i) {
      const auto found = m_partner[i] < 0 ? places.find(text(m_first[i])) : places.end();
      if (found != places.end())
        ++found->second.inFirst;
    }
    for (std::size_t i = 0; i < m_first.size(); ++i) {
      const auto found = m_partner[i] < 0 ? places.find(text(m_first[i])) : places.end();
      if (found == places.end() || found->second.next == found->second.second.size() ||
          (onlyUnique && (found->second.second.size() > 1 || found->second.inFirst > 1)))
        continue;
      m_partner[i] = found->second.second[found->second.next++];
      m_isTaken[static_cast<std::size_t>(m_partner[i])] = true;
    }
  }

  std::vector<Names> m_first;
  std::vector<Names> m_second;
  std::vector<int> m_partner;
  std::vector<bool> m_isTaken;
};

class Comparer {
public:
  Comparer(const Document &before, const Document &after, const ComparisonOptions &options)
      : m_before(before), m_after(after), m_options(options) {}

  Comparison run() {
    Comparison result;
    const Record before = m_before.root();
    const Record after = m_after.root();
    forEachPair(before, after, [&](const Member &a, const Member &b) {
      m_counts = {};
      Differences inside = section(before, a, after, b, true);
      result.sections.emplace_back(a.shape->tag, m_counts);
      if (!inside.isEmpty())
        result.differences.sections.push_back({a.shape->tag, std::move(inside)});
    });
    return result;
  }

private:
  bool isIgnored(const std::string &tag) const {
    return std::any_of(m_options.ignored.begin(), m_options.ignored.end(),
                       [&](const std::string &pattern) { return matches(tag, pattern); });
  }

  template <class Visit>
  void forEachPair(const Record &before, const Record &after, Visit visit) const {
    const std::vector<Member> first = m_before.members(before);
    const std::vector<Member> second = m_after.members(after);
    for (std::size_t i = 0; i < std::min(first.size(), second.size()); ++i) {
      if (!isIgnored(first[i].shape->tag))
        visit(first[i], second[i]);
    }
  }

  bool isEqual(const Record &record, const Member &before, const Member &after) const {
    if (before.text() == after.text() || (m_options.onlyStanding && !before.isInFile()))
      return true;
    if (!before.isInFile() && !after.isInFile())
      return true; // the default of one member is the time of the load
    if (!m_options.numbers)
      return false;
    const Meaning *const meaning = findMeaning(record.shape->tag, before.shape->tag);
    if (meaning == nullptr)
      return false;
    const std::string number = judge(*meaning, before.text()).number;
    return !number.empty() && number == judge(*meaning, after.text()).number;
  }

  // The depth is that of the classes.
  Differences records(const Record &before, const Record &after) {
    Differences differences;
    forEachPair(before, after, [&](const Member &a, const Member &b) {
      if (a.folder != nullptr) {
        Differences inside = section(before, a, after, b, false);
        if (!inside.isEmpty())
          differences.sections.push_back({a.shape->tag, std::move(inside)});
      } else if (!isEqual(before, a, b)) {
        ++m_counts.changed;
        differences.texts.push_back(
            {a.shape->tag, Found{before, a}.address(), textInFile(before, a), textInFile(after, b)});
      }
    });
    return differences;
  }

  Differences section(const Record &before, const Member &a, const Record &after, const Member &b, bool isTop) {
    if (a.collection == nullptr)
      return records(m_before.folderOf(before, a), m_after.folderOf(after, b));
    Differences differences;
    const std::vector<Record> first = m_before.items(before, a);
    const std::vector<Record> second = m_after.items(after, b);
    const Pairing pairs(m_before, first, m_after, second);
    for (std::size_t i = 0; i < first.size(); ++i) {
      const int partner = pairs.partner(i);
      if (partner < 0) {
        differences.items.push_back(change(Sign::kRemoved, m_before, first[i]));
        ++m_counts.removed;
        continue;
      }
      Differences inside = records(first[i], second[static_cast<std::size_t>(partner)]);
      if (inside.isEmpty()) {
        m_counts.equal += isTop ? 1 : 0;
        continue;
      }
      differences.items.push_back(change(Sign::kChanged, m_before, first[i]));
      differences.items.back().inside = std::move(inside);
    }
    for (std::size_t i = 0; i < second.size(); ++i) {
      if (pairs.isTaken(i))
        continue;
      differences.items.push_back(change(Sign::kAdded, m_after, second[i]));
      ++m_counts.added;
    }
    return differences;
  }

  static ItemChange change(Sign sign, const Document &document, const Record &item) {
    return {sign, labelOf(document, item), std::string(item.folder->Key().View()), item.address, {}};
  }

  const Document &m_before;
  const Document &m_after;
  const ComparisonOptions &m_options;
  Counts m_counts; // of the section of the file
};

/// A text of which nobody can miss where it begins and ends.
std::string visible(const std::string &text) {
  const bool needsQuotes = text.empty() || text.front() == ' ' || text.back() == ' ';
  return needsQuotes ? "'" + shown(text) + "'" : shown(text);
}

void print(const Differences &differences, const Output &output, std::size_t indent) {
  const std::string margin(indent, ' ');
  std::size_t longest = 0;
  for (const TextChange &text : differences.texts)
    longest = std::max(longest, text.member.size());
  for (const TextChange &text : differences.texts) {
    std::cout << margin << text.member << std::string(longest - text.member.size() + 2, ' ')
              << inked(output, Ink::kRed, visible(text.before)) << " -> "
              << inked(output, Ink::kGreen, visible(text.after)) << '\n';
  }
  for (const ItemChange &item : differences.items) {
    const auto [sign, ink] = item.sign == Sign::kChanged ? std::pair("~ ", Ink::kYellow)
                             : item.sign == Sign::kAdded ? std::pair("+ ", Ink::kGreen)
                                                         : std::pair("- ", Ink::kRed);
    std::cout << margin << inked(output, ink, sign + shown(titleOf(item))) << '\n';
    print(item.inside, output, indent + 4);
  }
  for (const SectionChange &section : differences.sections) {
    std::cout << margin << inked(output, Ink::kBold, section.tag) << '\n';
    print(section.inside, output, indent + 2);
  }
}

void visitAll(const Differences &differences, const std::string &record,
              const std::function<void(const Difference &)> &visit) {
  for (const TextChange &text : differences.texts)
    visit({Sign::kChanged, text.address, record, text.before, text.after, true});
  for (const ItemChange &item : differences.items) {
    if (item.sign != Sign::kChanged)
      visit({item.sign, item.address, item.name, {}, {}, false});
    visitAll(item.inside, item.name, visit);
  }
  for (const SectionChange &section : differences.sections)
    visitAll(section.inside, record, visit);
}

const char *wordOf(Sign sign) {
  return sign == Sign::kChanged ? "changed" : sign == Sign::kAdded ? "added" : "removed";
}

Json jsonOf(const Counts &counts) {
  return {{"changed", counts.changed}, {"added", counts.added}, {"removed", counts.removed}, {"equal", counts.equal}};
}

Json jsonOf(const Comparison &comparison, bool onlyCounts) {
  Json document = Json::object();
  if (!onlyCounts) {
    document["differences"] = Json::array();
    forEachDifference(comparison, [&](const Difference &difference) {
      Json entry = {{"change", wordOf(difference.sign)},
                    {"address", jsonText(difference.address)},
                    {"record", jsonText(difference.record)}};
      if (difference.isMember) {
        entry["before"] = jsonText(difference.before);
        entry["after"] = jsonText(difference.after);
      }
      document["differences"].push_back(std::move(entry));
    });
  }
  document["sections"] = Json::object();
  for (const auto &[tag, counts] : comparison.sections)
    document["sections"][tag] = jsonOf(counts);
  document["total"] = jsonOf(comparison.total());
  return document;
}

/// With the file in a column behind the others, if there is one.
void printRow(std::vector<std::string> fields, const std::string &file) {
  if (!file.empty())
    fields.push_back(file);
  printTsv(fields);
}

void printTsvHead(bool onlyCounts, const std::string &file) {
  printRow(onlyCounts ? std::vector<std::string>{"Section", "Changed", "Added", "Removed", "Equal"}
                      : std::vector<std::string>{"Change", "Address", "Record", "Before", "After"},
           file);
}

void printTsvRows(const Comparison &comparison, bool onlyCounts, const std::string &file) {
  if (!onlyCounts) {
    forEachDifference(comparison, [&](const Difference &difference) {
      printRow({wordOf(difference.sign), difference.address, difference.record, difference.before, difference.after},
               file);
    });
    return;
  }
  for (const auto &[tag, counts] : comparison.sections)
    printRow({tag, std::to_string(counts.changed), std::to_string(counts.added), std::to_string(counts.removed),
              std::to_string(counts.equal)},
             file);
}

/// What differs, or the counts of each section, without the total.
void printAsText(const Comparison &comparison, const Output &output, bool onlyCounts, std::size_t indent) {
  if (!onlyCounts) {
    print(comparison.differences, output, indent);
    return;
  }
  std::size_t longest = 0;
  for (const auto &[tag, counts] : comparison.sections)
    longest = std::max(longest, tag.size());
  for (const auto &[tag, counts] : comparison.sections)
    std::cout << std::string(indent, ' ') << tag << std::string(longest - tag.size() + 2, ' ') << countsText(counts)
              << '\n';
}

void add(const Counts &some, Counts &sum) {
  sum.changed += some.changed;
  sum.added += some.added;
  sum.removed += some.removed;
  sum.equal += some.equal;
}

} // namespace

std::string titleOf(const ItemChange &item) {
  return item.name == item.key ? item.key : item.name + " (" + item.key + ")";
}

std::string countsText(const Counts &counts) {
  return std::to_string(counts.changed) + " changed, " + std::to_string(counts.added) + " added, " +
         std::to_string(counts.removed) + " removed, " + std::to_string(counts.equal) + " equal";
}

Counts Comparison::total() const {
  Counts sum;
  for (const auto &[tag, counts] : sections)
    add(counts, sum);
  return sum;
}

void checkSameKind(const Document &a, const Document &b) {
  if (a.kind() != b.kind())
    throw CouldNotWork(a.name() + " is a file of " + a.kind()->name + ", and " + b.name() + " of " + b.kind()->name);
}

Comparison compare(const Document &before, const Document &after, const ComparisonOptions &options) {
  return Comparer(before, after, options).run();
}

void forEachDifference(const Comparison &comparison, const std::function<void(const Difference &)> &visit) {
  visitAll(comparison.differences, {}, visit);
}

void printComparison(const Comparison &comparison, const Output &output, bool onlyCounts) {
  if (output.quiet)
    return;
  if (output.isJson()) {
    printJson(jsonOf(comparison, onlyCounts));
  } else if (output.isTsv()) {
    printTsvHead(onlyCounts, {});
    printTsvRows(comparison, onlyCounts, {});
  } else {
    printAsText(comparison, output, onlyCounts, 0);
    std::cout << countsText(comparison.total()) << '\n';
  }
}

void printFileChanges(const std::vector<FileChange> &files, const Output &output, bool onlyCounts) {
  if (output.quiet)
    return;
  Counts total;
  Json list = Json::array();
  if (output.isTsv())
    printTsvHead(onlyCounts, "File");
  for (const FileChange &change : files) {
    const bool isBoth = change.sign == Sign::kChanged;
    add(change.comparison.total(), total);
    if (change.isSame())
      continue;
    if (output.isJson()) {
      Json entry = {{"file", jsonText(change.file)}, {"change", wordOf(change.sign)}};
      if (isBoth)
        entry.update(jsonOf(change.comparison, onlyCounts));
      list.push_back(std::move(entry));
    } else if (output.isTsv()) {
      if (!isBoth && !onlyCounts)
        printRow({wordOf(change.sign), "", "", "", ""}, change.file);
      printTsvRows(change.comparison, onlyCounts, change.file);
    } else {
      const std::string name = shown(change.file);
      std::cout << (isBoth                          ? inked(output, Ink::kBold, name)
                    : change.sign == Sign::kRemoved ? inked(output, Ink::kRed, "- " + name)
                                                    : inked(output, Ink::kGreen, "+ " + name))
                << '\n';
      printAsText(change.comparison, output, onlyCounts, 2);
    }
  }
  if (output.isJson())
    printJson({{"files", list}, {"total", jsonOf(total)}});
  else if (output.isText())
    std::cout << countsText(total) << '\n';
}
