#include "tools/check/hits.h"
#include "tools/meanings.h"

// 301 to 309: whether each text is what programs take it for.

namespace {

/// Whether the texts of a kind can be judged one by one. The link table is judged with the relations.
bool isJudged(Reading reading) {
  return reading != Reading::kText && reading != Reading::kNames && reading != Reading::kVersions &&
         reading != Reading::kModelNumber && reading != Reading::kModelNumbers;
}

/// Takes the blanks behind a number away.
std::vector<Edit> withoutBlanks(const CheckedFile &file, std::size_t offset, const std::string &text) {
  const std::size_t end = text.find_last_not_of(" \t\n\v\f\r") + 1;
  if (file.outline().text().substr(offset, text.size()) != text)
    return {};
  return {{offset + end, text.size() - end, {}}};
}

/// The meanings of the members of a record, in their order; null for one whose text is not judged.
std::vector<const Meaning *> meaningsOf(const RecordShape &shape) {
  std::vector<const Meaning *> meanings;
  for (const MemberShape &member : shape.members) {
    const Meaning *const meaning = member.isValue() ? findMeaning(shape.tag, member.tag) : nullptr;
    meanings.push_back(meaning != nullptr && isJudged(meaning->reading) ? meaning : nullptr);
  }
  return meanings;
}

} // namespace

void judgeValues(const CheckedFile &file, Hits &hits) {
  std::map<const RecordShape *, std::vector<const Meaning *>> meanings;
  for (CheckedFile::Index number = 0; number < file.records().size(); ++number) {
    const CheckedFile::Record &record = file.record(number);
    auto &ofRecord = meanings[record.shape];
    if (ofRecord.empty())
      ofRecord = meaningsOf(*record.shape);
    for (std::size_t i = 0; i < ofRecord.size(); ++i) {
      const MemberShape &member = record.shape->members[i];
      const std::optional<std::string> text = ofRecord[i] != nullptr ? file.text(record, member) : std::nullopt;
      const bool isEmptyKey = text && text->empty() && member.tag == record.shape->keyAttribute; // told as that
      if (!text || isEmptyKey)
        continue;
      const Judgement judgement = judge(*ofRecord[i], *text);
      if (judgement.finding == 0 || !hits.wants(judgement.finding))
        continue;
      Hit hit{judgement.finding, file.textOffset(record, member), {}, member.tag + " " + judgement.words, number, {}};
      if (judgement.finding == 304)
        hit.edits = withoutBlanks(file, hit.offset, *text);
      hits.add(std::move(hit));
    }
  }
}
