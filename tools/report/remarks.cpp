#include "tools/report/remarks.h"

#include "tools/address.h"
#include "tools/check/known.h"

namespace {

/// The item or folder of the root that a record lies in.
Outline::Index topOf(const CheckedFile &file, CheckedFile::Index record) {
  if (record == CheckedFile::kNone)
    return 0;
  while (record != 0 && file.record(record).parent != 0)
    record = file.record(record).parent;
  return file.record(record).element;
}

/// All that differs inside an item, by its road from there.
std::vector<Remarks::Change> changesIn(const Differences &differences) {
  using Kind = Remarks::Change::Kind;
  struct Open {
    const Differences *differences;
    std::string road;
  };
  std::vector<Remarks::Change> changes;
  std::vector<Open> open{{&differences, ""}};
  while (!open.empty()) {
    const Open at = std::move(open.back());
    open.pop_back();
    for (const TextChange &text : at.differences->texts)
      changes.push_back({at.road + text.member, text.after, text.before, Kind::kChanged});
    for (const ItemChange &item : at.differences->items) {
      const std::string road = at.road + addressStep(item.key);
      if (item.sign == Sign::kChanged)
        open.push_back({&item.inside, road + "/"});
      else
        changes.push_back({road, "", "", item.sign == Sign::kAdded ? Kind::kRemoved : Kind::kAdded});
    }
    for (const SectionChange &section : at.differences->sections)
      open.push_back({&section.inside, at.road + section.tag + "/"});
  }
  return changes;
}

} // namespace

Remarks::Remarks(const std::vector<const Document *> &documents) {
  const Selection selection;
  std::vector<Checked> files;
  KnownFindings looked;
  for (const Document *const document : documents) {
    Checked checked;
    checked.file = std::make_unique<CheckedFile>(Source{document->name(), document->path(), document->bytes()});
    checked.hits = std::make_unique<Hits>(*checked.file, selection);
    if (KnownFile *const known = checked.file->folder().empty() ? nullptr : looked.findFor(*checked.file))
      checked.hits->setKnown(
          [known, file = checked.file.get()](const Hit &hit) { return KnownFindings::covers(*known, *file, hit); });
    files.push_back(std::move(checked));
  }
  judgeAll(files);
  for (std::size_t i = 0; i < files.size(); ++i) {
    const CheckedFile &file = *files[i].file;
    File &target = m_files[documents[i]];
    for (const Hit &hit : files[i].hits->sorted()) {
      const Position place = hit.place.line != 0 ? hit.place : file.outline().at(hit.offset);
      Remark remark{findFinding(hit.number), place, hit.message, file.nameOf(hit.record)};
      target.byElement[topOf(file, hit.record)].push_back(remark);
      target.all.push_back(std::move(remark));
    }
  }
  for (const auto &[known, line] : looked.useless(files))
    m_useless.push_back(known->path + ":" + std::to_string(line->line) +
                        ": this line suppresses nothing: " + line->text);
}

void Remarks::compare(const Document &now, const Document *before) {
  File &file = m_files[&now];
  file.since = std::make_unique<Since>();
  if (before == nullptr) {
    for (const Member &member : now.members(now.root())) {
      if (member.collection == nullptr)
        continue;
      for (const Record &item : now.items(now.root(), member))
        file.changes[item.address] = {ItemChange::Kind::kAdded, {}};
    }
    return;
  }
  // From now to then, since the addresses have to be those of the file that is shown.
  file.since->name = before->name();
  file.since->comparison = ::compare(now, *before);
  for (auto &[tag, counts] : file.since->comparison.sections)
    std::swap(counts.added, counts.removed);
  using Kind = ItemChange::Kind;
  for (const SectionChange &section : file.since->comparison.differences.sections) {
    if (section.inside.items.empty())
      file.changes[section.tag] = {Kind::kChanged, changesIn(section.inside)};
    for (const ::ItemChange &item : section.inside.items) {
      if (item.sign == Sign::kAdded)
        file.removed[section.tag].push_back(titleOf(item));
      else if (item.sign == Sign::kRemoved)
        file.changes[item.address] = {Kind::kAdded, {}};
      else
        file.changes[item.address] = {Kind::kChanged, changesIn(item.inside)};
    }
  }
}

const Remarks::Since *Remarks::since(const Document &document) const {
  const auto file = m_files.find(&document);
  return file != m_files.end() ? file->second.since.get() : nullptr;
}

const std::vector<Remarks::Remark> &Remarks::findings(const Document &document, Outline::Index element) const {
  static const std::vector<Remark> kNone;
  const auto file = m_files.find(&document);
  if (file == m_files.end())
    return kNone;
  const auto found = file->second.byElement.find(element);
  return found != file->second.byElement.end() ? found->second : kNone;
}

const std::vector<Remarks::Remark> &Remarks::findings(const Document &document) const {
  static const std::vector<Remark> kNone;
  const auto file = m_files.find(&document);
  return file != m_files.end() ? file->second.all : kNone;
}

const Remarks::ItemChange &Remarks::changes(const Document &document, const std::string &address) const {
  static const ItemChange kSame;
  const auto file = m_files.find(&document);
  if (file == m_files.end())
    return kSame;
  const auto found = file->second.changes.find(address);
  return found != file->second.changes.end() ? found->second : kSame;
}

const std::vector<std::string> &Remarks::removed(const Document &document, const std::string &collection) const {
  static const std::vector<std::string> kNone;
  const auto file = m_files.find(&document);
  if (file == m_files.end())
    return kNone;
  const auto found = file->second.removed.find(collection);
  return found != file->second.removed.end() ? found->second : kNone;
}
