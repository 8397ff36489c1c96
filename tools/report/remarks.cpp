#include "tools/report/remarks.h"

#include "tools/check/hits.h"

namespace {

/// The item or folder of the root that a record lies in.
Outline::Index topOf(const CheckedFile &file, CheckedFile::Index record) {
  if (record == CheckedFile::kNone)
    return 0;
  while (record != 0 && file.record(record).parent != 0)
    record = file.record(record).parent;
  return file.record(record).element;
}

} // namespace

Remarks::Remarks(const std::vector<const Document *> &documents) {
  const Selection selection;
  std::vector<Checked> files;
  for (const Document *const document : documents) {
    Checked checked;
    checked.file = std::make_unique<CheckedFile>(Source{document->name(), document->path(), document->bytes()});
    checked.hits = std::make_unique<Hits>(*checked.file, selection);
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
