#include "tools/check/hits.h"

#include <algorithm>

bool Selection::wants(int number) const {
  const std::string name = findingName(number);
  const auto begins = [&](const std::string &start) { return name.starts_with(start); };
  return findFinding(number)->level <= least && (only.empty() || std::any_of(only.begin(), only.end(), begins)) &&
         std::none_of(ignore.begin(), ignore.end(), begins);
}

Hits::Hits(const CheckedFile &file, const Selection &selection) : m_file(file) {
  for (const Finding &finding : allFindings())
    m_wanted.set(static_cast<std::size_t>(finding.number), selection.wants(finding.number));
}

void Hits::add(Hit hit) {
  if (!wants(hit.number) || (m_isKnown && m_isKnown(hit)))
    return;
  if (++m_counts[hit.number] <= kMost)
    m_hits.push_back(std::move(hit));
}

const std::vector<Hit> &Hits::sorted() {
  std::stable_sort(m_hits.begin(), m_hits.end(), [](const Hit &a, const Hit &b) { return a.offset < b.offset; });
  for (Hit &hit : m_hits) {
    if (hit.place.line == 0)
      hit.place = m_file.outline().at(hit.offset);
  }
  return m_hits;
}

std::string inQuotes(std::string_view text) {
  constexpr std::size_t kLongest = 200;
  if (text.size() <= kLongest)
    return "'" + std::string(text) + "'";
  std::size_t end = kLongest;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
    --end;
  return "'" + std::string(text.substr(0, end)) + "...'";
}

std::string folded(std::string_view text) {
  std::string result(text);
  for (char &letter : result)
    letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  return result;
}
