#include "tools/check/facts.h"

#include "tools/meanings.h"

#include <algorithm>

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

std::vector<std::string> strayTexts(const CheckedFile &file, std::string_view section, std::string_view tag) {
  const Outline &outline = file.outline();
  const CheckedFile::Record &root = file.record(0);
  const MemberShape *const collection = root.shape->member(section);
  const Index element = collection != nullptr ? file.slot(root, *collection) : CheckedFile::kNone;
  std::vector<std::string> texts;
  if (element == CheckedFile::kNone)
    return texts;
  for (Index child = element + 1; child < outline.end(element); child = outline.end(child)) {
    if (file.isRecord(child))
      continue;
    for (const Outline::Attribute &attribute : outline.attributes(child)) {
      if (folded(attribute.name) == folded(tag))
        texts.emplace_back(attribute.value);
    }
    const Index inside = outline.first(child, tag);
    const std::optional<std::string> text = inside != CheckedFile::kNone ? plainText(outline, inside) : std::nullopt;
    if (text)
      texts.push_back(*text);
  }
  return texts;
}

bool hasSection(const CheckedFile &file, std::string_view section) {
  const CheckedFile::Record &root = file.record(0);
  const MemberShape *const member = root.shape->member(section);
  return member != nullptr && file.slot(root, *member) != CheckedFile::kNone;
}
