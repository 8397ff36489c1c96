#include "tools/change.h"

#include "kestrune/platform/drives.h"
#include "kestrune/xml/replacing_save.h"
#include "tools/check/hits.h"
#include "tools/command_line.h"
#include "tools/comparison.h"
#include "tools/meanings.h"
#include "tools/messages.h"
#include "tools/texts.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <sys/stat.h>
#include <system_error>

namespace {

namespace fs = std::filesystem;

std::string placeOf(const std::string &name, Position place) {
  return name + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + ": ";
}

Checked judged(const Source &source, const Selection &selection, bool isWhole) {
  Checked checked;
  checked.file = std::make_unique<CheckedFile>(source);
  checked.hits = std::make_unique<Hits>(*checked.file, selection);
  judgeForm(*checked.file, *checked.hits);
  judgeStructure(*checked.file, *checked.hits);
  if (isWhole) {
    judgeValues(*checked.file, *checked.hits);
    judgeRanges(*checked.file, *checked.hits);
  }
  return checked;
}

/// The errors that `check` finds in a file.
std::vector<Checked> errorsOf(const Source &source) {
  Selection selection;
  selection.least = Level::kError;
  std::vector<Checked> files;
  files.push_back(judged(source, selection, true));
  judgeRelations(files);
  return files;
}

/// The errors that `check` finds after a change, and not before it.
std::vector<std::string> newErrors(const Source &before, const Source &after) {
  const std::vector<Checked> old = errorsOf(before);
  const std::vector<Checked> now = errorsOf(after);
  std::set<std::pair<int, std::string>> known;
  for (const Hit &hit : old.front().hits->sorted())
    known.emplace(hit.number, old.front().file->addressOf(hit.record));
  std::vector<std::string> errors;
  for (const Hit &hit : now.front().hits->sorted()) {
    const auto &oldCounts = old.front().hits->counts();
    const auto counted = oldCounts.find(hit.number);
    const std::size_t oldCount = counted != oldCounts.end() ? counted->second : 0;
    if (now.front().hits->counts().at(hit.number) <= oldCount || // the record may have another key now
        known.count({hit.number, now.front().file->addressOf(hit.record)}) > 0)
      continue;
    const std::string record = now.front().file->nameOf(hit.record);
    errors.push_back(after.name + ": " + findingName(hit.number) + ": " + hit.message +
                     (record.empty() ? "" : " [" + record + "]"));
  }
  return errors;
}

bool isRegular(const std::string &path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored);
}

/// The part of a file that `found` means, for messages.
std::string several(const Document &document, const std::string &address, const std::vector<Found> &found) {
  std::string all;
  for (const Found &one : found)
    all += (all.empty() ? "" : ", ") + one.address();
  return document.name() + ": '" + address + "' means several: " + all;
}

/// The member of a folder with that tag; null if there is none.
CXMLPersistent *valueOf(CXMLFolder &folder, std::string_view tag) {
  for (const kestrune::MemberView &member : kestrune::MembersOf(folder)) {
    if (member.value->GetTag().View() == tag)
      return member.value;
  }
  return nullptr;
}

std::string keyText(CXMLFolder &folder) { return std::string(folder.Key().View()); }

/// ADDRESS=TEXT; a name in the address may have a `=` too.
Assignment understand(const Document &document, const std::string &road, const std::string &word) {
  std::string reason;
  for (std::size_t sign = word.find('='); sign != std::string::npos; sign = word.find('=', sign + 1)) {
    const std::string address = (road.empty() ? "" : road + "/") + word.substr(0, sign);
    try {
      const std::vector<Found> found = find(document, address);
      if (found.size() > 1)
        throw Refused{{several(document, address, found)}};
      if (!found.front().isMember() || found.front().member.folder != nullptr)
        throw Refused{
            {document.name() + ": '" + address + "' is " +
             (found.front().isMember() && found.front().member.collection != nullptr ? "a collection" : "a record") +
             " and not a member"}};
      return {found.front(), word.substr(sign + 1)};
    } catch (const NotFound &nothing) {
      if (reason.empty())
        reason = nothing.what();
    }
  }
  if (reason.empty())
    throw WrongUsage("'" + word + "' is not ADDRESS=TEXT");
  throw Refused{{reason}};
}

/// Why a text may not stand in a member; empty if it may.
std::string whyNot(const Assignment &assignment, bool force) {
  std::string cannot = whyNotXml(assignment.text);
  if (!cannot.empty() || force)
    return cannot;
  const Meaning *const meaning = findMeaning(assignment.found.record.shape->tag, assignment.found.member.shape->tag);
  if (meaning == nullptr)
    return {};
  const Judgement judgement = judge(*meaning, assignment.text);
  if (judgement.finding == 0 || findFinding(judgement.finding)->level != Level::kError)
    return {};
  return findingName(judgement.finding) + ": " + judgement.words;
}

void refuse(const Refused &refused) {
  for (const std::string &reason : refused.reasons)
    complain(reason);
}

} // namespace

Source readAlone(const FileOptions &options) {
  const std::string &file = options.files.front();
  const Kind *const kind = kindOfMacro(file);
  if (kind == nullptr)
    return readSource(file, file == "-" ? options.inputName : "");
  const std::vector<CString> files = filesOf(*kind, CString(file.c_str()));
  std::string path;
  if (files.empty() || files.front().IsEmpty() || !kestrune::platform::ToHostPath(files.front(), path))
    throw CouldNotWork(file + ": there is no file behind this name");
  return readSource(path);
}

void checkUsable(const Document &document) {
  if (!document.failure().empty() && (document.kind() == nullptr || document.result() != KRX_E_DUPLICATE_KEY))
    throw CouldNotWork(document.failure());
}

std::string savedBytes(const Document &document) {
  std::string bytes;
  const long result = kestrune::SaveToText(*document.folder(), bytes);
  if (result < 0)
    throw CouldNotWork(failureText(document.name(), *document.folder()));
  return bytes;
}

std::vector<Loss> lossesOf(const Source &source) {
  Selection selection;
  selection.least = Level::kNote;
  selection.only = {"KD106", "KD107", "KD201", "KD202", "KD204", "KD205", "KD206", "KD207", "KD208", "KD209", "KD212"};
  Checked checked = judged(source, selection, false);
  const CheckedFile &file = *checked.file;
  const Outline &outline = file.outline();
  std::vector<std::pair<Position, Loss>> losses;
  for (const Hit &hit : checked.hits->sorted()) {
    constexpr std::array kForm = {106, 204, 205, 212};
    const std::string record = file.nameOf(hit.record);
    losses.push_back({hit.place,
                      {placeOf(source.name, hit.place) + hit.message + (record.empty() ? "" : " [" + record + "]"),
                       std::find(kForm.begin(), kForm.end(), hit.number) == kForm.end()}});
  }
  // A text that stands beside elements is no member's.
  const auto addInk = [&](Outline::Index element) {
    if (const auto place = outline.inkPlace(element))
      losses.push_back({*place, {placeOf(source.name, *place) + "a text beside elements; a save drops it", true}});
  };
  for (const CheckedFile::Record &record : file.records()) {
    addInk(record.element);
    for (const MemberShape &member : record.shape->members) {
      if (member.isCollection() && file.slot(record, member) != Outline::kNone)
        addInk(file.slot(record, member));
    }
  }
  std::stable_sort(losses.begin(), losses.end(), [](const auto &a, const auto &b) {
    return std::pair(a.first.line, a.first.column) < std::pair(b.first.line, b.first.column);
  });
  std::vector<Loss> sorted;
  sorted.reserve(losses.size());
  for (auto &[place, loss] : losses)
    sorted.push_back(std::move(loss));
  return sorted;
}

Loss layoutLoss(const Source &source, const std::string &saved) {
  const std::string &bytes = source.bytes;
  const auto differs = std::mismatch(bytes.begin(), bytes.end(), saved.begin(), saved.end()).first;
  const auto line = std::find(std::make_reverse_iterator(differs), bytes.rend(), '\n').base();
  const auto isCharacter = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
  const Position place{static_cast<std::size_t>(std::count(bytes.begin(), differs, '\n')) + 1,
                       static_cast<std::size_t>(std::count_if(line, differs, isCharacter)) + 1};
  return {placeOf(source.name, place) + "from here on the layout is not that of a save", false};
}

void complainOf(const std::vector<Loss> &losses) {
  constexpr std::size_t kMost = 50;
  for (std::size_t i = 0; i < std::min(losses.size(), kMost); ++i)
    complain(losses[i].text);
  if (losses.size() > kMost)
    complain("and " + std::to_string(losses.size() - kMost) + " more");
}

void checkTarget(const std::string &out, const std::string &in, bool mayReplace) {
  if (out == "-" || mayReplace)
    return;
  const std::string path = hostPath(out);
  std::error_code ignored;
  if (isRegular(path) && (in == "-" || !fs::equivalent(path, hostPath(in), ignored)))
    throw CouldNotWork(out + ": there is such a file; --force writes over it");
}

void writeFile(const std::string &file, const std::string &bytes) {
  if (file == "-") {
    std::cout << bytes;
    return;
  }
  std::string reason;
  if (kestrune::ReplaceFile(hostPath(file).c_str(), bytes, &reason) < 0)
    throw CouldNotWork(file + ": " + reason);
}

void addChange(Command &command, ChangeOptions &options, const std::string &forceText) {
  options.files = addFiles(command, FileUse::kWrite);
  command.argument("FILE").described("File to change; - changes what comes from the standard input and prints it");
  command.flag("--dry-run,-n", options.dryRun, "Print what would change, as diff does, and write nothing");
  command.flag("--relayout", options.relayout,
               "Save the file even if comments, unknown elements or the layout get lost");
  command.flag("--force", options.force, forceText.c_str());
  options.output = addOutput(command, {.json = false, .tsv = false});
}

int carryOut(const ChangeOptions &options, bool mustBeSound, const Change &change) {
  const std::string &file = options.files->files.front();
  const Source source = readAlone(*options.files);
  try {
    // The version is that of the content, so that a file of an older one stays one.
    Document trial(source);
    checkUsable(trial);
    const int needed = trial.versionNeeded();
    const int version = std::max(needed, change(trial));
    Document document(source, version);
    const std::string saved = savedBytes(document);
    std::vector<Loss> losses;
    if (saved != source.bytes) {
      losses = lossesOf(source);
      losses.push_back(layoutLoss(source, saved));
    }
    change(document);
    const Source after{source.name, source.path, savedBytes(document)};

    // What is written has to be what was asked for, whatever a load makes of it.
    const Document reloaded(after, version);
    const Comparison lost =
        reloaded.failure().empty() ? compare(document, reloaded) : throw Refused{{reloaded.failure()}};
    std::vector<std::string> reasons;
    forEachDifference(lost, [&](const Difference &difference) {
      reasons.push_back(source.name + ": " + difference.address + " would not be read back as it is written");
    });
    if (!reasons.empty())
      throw Refused{reasons};
    if (!options.force) {
      const std::vector<std::string> errors = newErrors(source, after);
      if (!errors.empty() && mustBeSound)
        throw Refused{errors};
      refuse({errors});
    }
    if (!losses.empty() && !options.relayout) {
      complainOf(losses);
      throw Refused{{source.name + ": nothing is changed, since a save would change more than was asked for; "
                                   "--relayout saves it"}};
    }
    if (options.dryRun)
      printComparison(compare(Document(source, version), reloaded), *options.output);
    else if (file == "-")
      writeFile(file, after.bytes);
    else if (!isRegular(source.path))
      throw CouldNotWork(source.name + ": is no regular file; - prints what the changed file would be");
    else if (after.bytes != source.bytes)
      writeFile(source.path, after.bytes);
    return kYes;
  } catch (const Refused &refused) {
    refuse(refused);
    return kNo;
  }
}

std::vector<Assignment> resolve(const Document &document, const std::string &road,
                                const std::vector<std::string> &words, bool force) {
  std::vector<Assignment> assignments;
  std::vector<std::string> reasons;
  for (const std::string &word : words) {
    try {
      assignments.push_back(understand(document, road, word));
      const std::string reason = whyNot(assignments.back(), force);
      if (!reason.empty())
        reasons.push_back(document.name() + ": " + assignments.back().found.address() + ": " + reason);
    } catch (const Refused &refused) {
      reasons.insert(reasons.end(), refused.reasons.begin(), refused.reasons.end());
    }
  }
  if (!reasons.empty())
    throw Refused{reasons};
  return assignments;
}

int assign(const Document &document, const std::vector<Assignment> &assignments, bool force) {
  int version = 1;
  std::vector<const Assignment *> keys;
  for (const Assignment &assignment : assignments) {
    const auto &[record, member] = assignment.found;
    const std::string before = keyText(*record.folder);
    putText(record, member, assignment.text);
    version = std::max(version, member.shape->version);
    if (record.collection != nullptr &&
        (member.shape->tag == record.shape->keyAttribute || keyText(*record.folder) != before))
      keys.push_back(&assignment);
  }
  // With all of them set, so that two items may exchange their keys.
  for (const Assignment *const key : keys) {
    if (!force)
      checkKey(document, key->found.record, key->text);
  }
  return version;
}

Found findOne(const Document &document, const std::string &address) {
  try {
    std::vector<Found> found = find(document, address);
    if (found.size() > 1)
      throw Refused{{several(document, address, found)}};
    return std::move(found.front());
  } catch (const NotFound &nothing) {
    throw Refused{{nothing.what()}};
  }
}

void putKey(CXMLFolder &item, const RecordShape &shape, const std::string &key) {
  valueOf(item, shape.keyAttribute)->CXMLPersistent::operator=(key.c_str());
  if (keyText(item) != key) // a model has another one beside the attribute
    valueOf(item, "Key")->CXMLPersistent::operator=(key.c_str());
}

void checkKey(const Document &document, const Record &item, const std::string &key) {
  if (key.empty())
    throw Refused{{document.name() + ": a key must not be empty; a load leaves such an item out"}};
  CXMLCollectionFolder &list = *item.collection;
  for (int i = 0; i < list.Count(); ++i) {
    CXMLFolder &other = *list[i];
    const CXMLPersistent *const attribute = valueOf(other, item.shape->keyAttribute);
    if (&other != item.folder && (other.Key().CompareNoCase(key.c_str()) == 0 ||
                                  (attribute != nullptr && attribute->CompareNoCase(key.c_str()) == 0)))
      throw Refused{{document.name() + ": " + std::string(list.GetTag().View()) + " has '" + key + "' already"}};
  }
}
