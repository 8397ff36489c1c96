#include "tools/address.h"

#include "tools/messages.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <functional>

namespace {

char lower(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

/// Those of `items` that a step of an address means: by position, or by key or name, or else by number.
std::vector<Record> chosen(const Document &document, const std::vector<Record> &items, const std::string &step) {
  std::vector<Record> found;
  if (step.size() > 2 && step.front() == '[' && step.back() == ']') {
    const auto position = numberOf(std::string_view(step).substr(1, step.size() - 2));
    if (position && *position >= 1 && static_cast<std::size_t>(*position) <= items.size())
      found.push_back(items[static_cast<std::size_t>(*position - 1)]);
    return found;
  }
  for (const Record &item : items) {
    if (sameText(item.folder->Key().View(), step) || sameText(nameOf(document, item), step))
      found.push_back(item);
  }
  if (found.empty() && numberOf(step)) {
    std::copy_if(items.begin(), items.end(), std::back_inserter(found),
                 [&](const Record &item) { return isCalled(document, item, step); });
  }
  return found;
}

std::vector<std::string> tagsOf(const RecordShape &shape) {
  std::vector<std::string> tags;
  for (const MemberShape &member : shape.members)
    tags.push_back(member.tag);
  return tags;
}

using ItemsOf = std::function<std::vector<Record>(const Document &, const Found &)>;

/// Follows an address from the roots of files; of all but the first, only what is in their items counts.
std::vector<FoundIn> walk(std::vector<FoundIn> found, const std::string &file, std::string_view address,
                          const ItemsOf &itemsOf) {
  const Document *const first = found.front().document;
  std::string road = file;
  for (const std::string &step : stepsOf(address)) {
    std::vector<FoundIn> next;
    std::vector<std::string> candidates;
    std::vector<std::string> keys;
    for (const auto &[document, place] : found) {
      if (place.isMember() && place.member.collection != nullptr) {
        const std::vector<Record> items = itemsOf(*document, place);
        for (Record &item : chosen(*document, items, step))
          next.push_back({document, {std::move(item), {}}});
        for (const Record &item : items) {
          candidates.push_back(nameOf(*document, item));
          keys.emplace_back(item.folder->Key().View());
        }
      } else if (!place.isMember() || place.member.folder != nullptr) {
        const Record record = place.isMember() ? document->folderOf(place.record, place.member) : place.record;
        for (const std::string &tag : tagsOf(*record.shape)) {
          const Member member = tag == step ? document->member(record, tag) : Member();
          if (member.shape != nullptr)
            next.push_back({document, {record, member}});
          if (document == first || !record.address.empty())
            candidates.push_back(tag);
        }
      }
    }
    if (next.empty())
      throw NotFound(notFound(road, step, candidates, keys));
    road += (road == file ? ": " : "/") + addressStep(step);
    found = std::move(next);
  }
  std::erase_if(found, [&](const FoundIn &one) {
    return one.document != first && one.found.record.address.find('/') == std::string::npos;
  });
  return found;
}

} // namespace

std::string Found::address() const {
  if (!isMember())
    return record.address;
  return (record.address.empty() ? "" : record.address + "/") + member.shape->tag;
}

std::vector<std::string> stepsOf(std::string_view address) {
  std::vector<std::string> steps(1);
  for (std::size_t i = 0; i < address.size(); ++i) {
    if (address[i] == '\\' && i + 1 < address.size())
      steps.back() += address[++i];
    else if (address[i] == '/')
      steps.emplace_back();
    else
      steps.back() += address[i];
  }
  if (steps.back().empty())
    steps.pop_back();
  return steps;
}

std::vector<Found> find(const Document &document, std::string_view address) {
  const std::vector<FoundIn> all =
      walk({{&document, {document.root(), {}}}}, document.name(), address,
           [](const Document &place, const Found &at) { return place.items(at.record, at.member); });
  std::vector<Found> found;
  found.reserve(all.size());
  for (const FoundIn &one : all)
    found.push_back(one.found);
  return found;
}

std::vector<FoundIn> find(const Loaded &loaded, const std::string &file, std::string_view address) {
  std::vector<FoundIn> roots;
  for (const std::unique_ptr<Document> &part : loaded.parts())
    roots.push_back({part.get(), {part->root(), {}}});
  return walk(std::move(roots), loaded.isAsInstalled() ? file : loaded.main().name(), address,
              [&loaded](const Document &document, const Found &at) {
                if (&document == &loaded.main() || !at.record.address.empty())
                  return document.items(at.record, at.member);
                std::vector<Record> items;
                for (Loaded::Item &item : loaded.items(at.member)) {
                  if (item.document == &document)
                    items.push_back(std::move(item.record));
                }
                return items;
              });
}

std::optional<long long> numberOf(std::string_view text) {
  const std::string copy(text);
  if (copy.empty() || copy.find_first_of(" \t\r\n") != std::string::npos)
    return std::nullopt;
  char *end = nullptr;
  errno = 0;
  const long long number = std::strtoll(copy.c_str(), &end, 0);
  return *end == '\0' && errno == 0 ? std::optional(number) : std::nullopt;
}

std::optional<Member> numberMember(const Document &document, const Record &record) {
  constexpr std::array kNumbers = {"ModelNum", "std_id", "Number"};
  for (const char *const tag : kNumbers) {
    if (record.shape->member(tag) != nullptr)
      return document.member(record, tag);
  }
  return std::nullopt;
}

std::vector<const MemberShape *> roadTo(const RecordShape &shape, std::string_view name) {
  const std::size_t slash = name.find('/');
  const std::string_view head = name.substr(0, slash);
  for (const MemberShape &member : shape.members) {
    if (!sameText(member.tag, head))
      continue;
    if (slash == std::string_view::npos)
      return {&member};
    if (member.folder == nullptr || member.isCollection())
      return {};
    std::vector<const MemberShape *> road = roadTo(*member.folder, name.substr(slash + 1));
    if (!road.empty())
      road.insert(road.begin(), &member);
    return road;
  }
  for (const MemberShape &member : shape.members) {
    if (member.folder == nullptr || member.isCollection())
      continue;
    std::vector<const MemberShape *> road = roadTo(*member.folder, name);
    if (road.empty())
      continue;
    road.insert(road.begin(), &member);
    return road;
  }
  return {};
}

bool isCalled(const Document &document, const Record &record, std::string_view wanted) {
  const CString key = record.folder->Key();
  if (matches(key.View(), wanted) || matches(nameOf(document, record), wanted))
    return true;
  const auto number = numberOf(wanted);
  const auto member = numberMember(document, record);
  if (member && matches(member->text(), wanted))
    return true;
  return number && ((member && numberOf(member->text()) == number) || numberOf(key.View()) == number);
}

bool sameText(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lower(x) == lower(y); });
}

bool matches(std::string_view text, std::string_view pattern) {
  // Where a star has to take one more character, if what follows it does not match.
  std::size_t star = std::string_view::npos;
  std::size_t taken = 0;
  std::size_t at = 0;
  std::size_t next = 0;
  while (at < text.size()) {
    if (next < pattern.size() && pattern[next] == '*') {
      star = next++;
      taken = at;
    } else if (next < pattern.size() && (pattern[next] == '?' || lower(pattern[next]) == lower(text[at]))) {
      ++next;
      ++at;
      while (pattern[next - 1] == '?' && at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80)
        ++at;
    } else if (star != std::string_view::npos) {
      next = star + 1;
      at = ++taken;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', next) == std::string_view::npos;
}
