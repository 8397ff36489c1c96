#include "tools/messages.h"

#include "tools/table.h"

#include <algorithm>
#include <iostream>
#include <numeric>
#include <utility>

namespace {

char lower(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

std::string lowered(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

/// How many letters have to be changed, added, left out or swapped with their neighbour to make one word of the other.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        row[j] = std::min(row[j], before[j - 2] + 1);
    }
    std::swap(before, last);
    std::swap(last, row);
  }
  return last[b.size()];
}

} // namespace

void complain(const std::string &message) { std::cerr << "kestrune-data: " << shown(message) << '\n'; }

std::vector<std::string> nearTo(std::string_view word, const std::vector<std::string> &candidates, std::size_t most) {
  constexpr std::size_t kLongestWord = 200; // the search takes the product of both lengths
  const std::string wanted = lowered(word.substr(0, kLongestWord));
  std::vector<std::pair<std::size_t, std::string>> holding;
  std::vector<std::pair<std::size_t, std::string>> alike;
  for (const std::string &candidate : candidates) {
    const std::string text = lowered(std::string_view(candidate).substr(0, kLongestWord));
    if (!wanted.empty() && text.find(wanted) != std::string::npos)
      holding.emplace_back(text.size() - wanted.size(), candidate);
    const std::size_t letters = distance(wanted, text);
    if (letters <= std::max<std::size_t>(2, wanted.size() / 3) && letters < std::max(wanted.size(), text.size()))
      alike.emplace_back(letters, candidate);
  }
  auto &chosen = holding.empty() ? alike : holding;
  std::stable_sort(chosen.begin(), chosen.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
  std::vector<std::string> names;
  for (auto &[letters, name] : chosen) {
    if (names.size() < most && std::find(names.begin(), names.end(), name) == names.end())
      names.push_back(std::move(name));
  }
  return names;
}

std::string notFound(const std::string &where, const std::string &word, const std::vector<std::string> &candidates,
                     const std::vector<std::string> &others) {
  constexpr std::size_t kMost = 8;
  std::vector<std::string> named = nearTo(word, candidates, kMost);
  if (named.empty())
    named = nearTo(word, others, kMost);
  const bool isNear = !named.empty();
  for (auto next = candidates.begin(); !isNear && named.size() < kMost && next != candidates.end(); ++next) {
    if (std::find(named.begin(), named.end(), *next) == named.end())
      named.push_back(*next);
  }
  std::string text = where + " has no '" + word + "'";
  for (std::size_t i = 0; i < named.size(); ++i)
    text += (i == 0 ? "; there are: " : ", ") + named[i];
  return text + (!named.empty() && candidates.size() > kMost && named.size() == kMost ? ", ..." : "");
}
