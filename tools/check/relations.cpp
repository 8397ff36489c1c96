#include "tools/check/relations.h"

#include "tools/meanings.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>
#include <unordered_map>

// 405 to 414: what records say of each other, in one file or in several.

using Index = CheckedFile::Index;

std::vector<Checked *> FileSet::related(const CheckedFile &file, std::string_view root) const {
  std::vector<Checked *> near;
  std::vector<Checked *> far;
  for (Checked &other : m_files) {
    if (!isSeveral() || !other.file->isKind(root))
      continue;
    (other.file->folder() == file.folder() ? near : far).push_back(&other);
  }
  if (!near.empty())
    return near;
  const bool isOneFolder = std::all_of(far.begin(), far.end(), [&](const Checked *other) {
    return other->file->folder() == far.front()->file->folder();
  });
  return isOneFolder ? far : std::vector<Checked *>();
}

Checked *FileSet::mainOf(const CheckedFile &addOn) const {
  const std::string name = folded(addOn.addOnOf());
  for (Checked &other : m_files) {
    if (other.file->isKind("VorlanTyp") && other.file->folder() == addOn.folder() &&
        folded(other.file->baseName()) == name)
      return &other;
  }
  return nullptr;
}

std::vector<Checked *> FileSet::chipData(const CheckedFile &main) const {
  std::vector<Checked *> group;
  for (Checked &other : m_files) {
    const bool isMain = other.file.get() == &main;
    const bool isAddOn = other.file->addOnNumber() > 0 && !isMain;
    if (isMain || (isAddOn && mainOf(*other.file) != nullptr && mainOf(*other.file)->file.get() == &main))
      group.push_back(&other);
  }
  std::stable_sort(group.begin(), group.end(), [&](const Checked *a, const Checked *b) {
    const auto rank = [&](const Checked *file) { return file->file.get() == &main ? 0 : file->file->addOnNumber(); };
    return rank(a) < rank(b);
  });
  return group;
}

bool FileSet::isBeside(const CheckedFile &file, const std::string &name) const {
  std::error_code ignored;
  const auto isGiven = [&](const Checked &other) {
    return other.file->folder() == file.folder() && folded(other.file->baseName()) == folded(name);
  };
  return std::any_of(m_files.begin(), m_files.end(), isGiven) ||
         (!file.folder().empty() && std::filesystem::exists(std::filesystem::path(file.folder()) / name, ignored));
}

bool isUserFile(const CheckedFile &file) {
  const std::string name = file.baseName();
  return file.isKind("StdXcvr") && folded(name.substr(0, name.find('.'))) == "userxcvr";
}

std::string placeIn(const CheckedFile &from, const CheckedFile &file, std::size_t offset) {
  const std::string line = std::to_string(file.outline().at(offset).line);
  return &from == &file ? "line " + line : file.baseName() + ":" + line;
}

namespace {

/// A record of some file.
struct Place {
  const CheckedFile *file;
  Index number;

  const CheckedFile::Record &record() const { return file->record(number); }
  std::string text(std::string_view tag) const { return file->text(record(), tag).value_or(""); }
  std::string name() const { return inQuotes(file->nameOf(number)); }
  /// Where a member stands, for a message in the file `from`.
  std::string in(const CheckedFile &from, std::string_view tag) const {
    return placeIn(from, *file, file->textOffset(record(), tag));
  }
};

/// The records of that tag which programs get.
std::vector<Place> placesOf(const CheckedFile &file, std::string_view tag) {
  std::vector<Place> places;
  for (const Index number : file.recordsOf(tag)) {
    if (!file.record(number).isLost)
      places.push_back({&file, number});
  }
  return places;
}

/// "010 (8)", or "8" where both are the same.
std::string withNumber(const std::string &text, long long number) {
  return text == std::to_string(number) ? text : text + " (" + std::to_string(number) + ")";
}

/// The records seen so far by one of their texts or numbers.
template <class Key>
using Seen = std::unordered_map<Key, Place>;

/// The numbers, names and keys of chip models that belong together.
struct Models {
  Seen<long long> numbers;
  Seen<std::string> names;
  Seen<std::string> keys;
};

/// Remembers `place` and says who was first.
template <class Key>
const Place *firstOf(Seen<Key> &seen, const Key &key, const Place &place) {
  const auto [found, isNew] = seen.emplace(key, place);
  return isNew ? nullptr : &found->second;
}

/// Whether a model of an add-on is there already: as the same model, or because its name is a key.
bool judgeAddOnModel(const Place &model, const Models &models, Hits &hits) {
  const std::string name = folded(model.text("Name"));
  const auto refusing = models.keys.find(name);
  const auto sameName = models.names.find(name);
  const auto sameKey = models.keys.find(folded(model.text("Key")));
  const bool isSame = sameName != models.names.end() && sameKey != models.keys.end() &&
                      sameName->second.number == sameKey->second.number &&
                      sameName->second.file == sameKey->second.file && sameName->second.file != model.file;
  if (refusing == models.keys.end() && !isSame)
    return false;
  const Place &other = isSame ? sameName->second : refusing->second;
  hits.add(410, model.file->outline().offset(model.record().element),
           (isSame ? "this model is already in "
                   : "this model is refused: its Name is the Key of " + other.name() + " in ") +
               other.in(*model.file, isSame ? "Name" : "Key"),
           model.number);
  return true;
}

void judgeModel(const Place &model, bool isAddOn, Models &models, Hits &hits) {
  const CheckedFile &file = *model.file;
  if (isAddOn && judgeAddOnModel(model, models, hits))
    return;
  const auto twice = [&](int finding, const char *tag, const std::string &text, const Place *other) {
    if (other != nullptr)
      hits.add(finding, file.textOffset(model.record(), tag),
               std::string(tag) + " " + text + " is already used by " + other->name() + " in " + other->in(file, tag),
               model.number);
  };
  if (const auto number = numberOf(file, model.record(), "ModelNum"))
    twice(405, "ModelNum", withNumber(model.text("ModelNum"), *number), firstOf(models.numbers, *number, model));
  const std::string name = model.text("Name");
  twice(406, "Name", inQuotes(name), firstOf(models.names, folded(name), model));
  const std::string key = model.text("Key");
  if (!key.empty() && key != "Unassigned")
    twice(407, "Key", inQuotes(key), firstOf(models.keys, folded(key), model));
}

/// 401: a model's scheme is one of the main file.
void judgeSchemes(const CheckedFile &main, Checked &checked) {
  NumberTable schemes;
  schemes.add(main, "ClockingSchemes", "ClockingScheme", "Id");
  if (!main.isWhole() || schemes.isEmpty())
    return; // told as an empty or missing collection
  for (const Place &model : placesOf(*checked.file, "VorlanModel")) {
    const auto scheme = numberOf(*checked.file, model.record(), "ClockingScheme");
    if (scheme && schemes.lacks(*scheme))
      checked.hits->add(401, checked.file->textOffset(model.record(), "ClockingScheme"),
                        "ClockingScheme " + withNumber(model.text("ClockingScheme"), *scheme) + " names no scheme",
                        model.number);
  }
}

/// 411: whether the search for add-ons ends before this one.
void judgeGap(const FileSet &files, Checked &addOn) {
  std::string stem = addOn.file->addOnOf();
  const std::size_t point = std::min(stem.rfind('.'), stem.size());
  const std::string extension = stem.substr(point);
  stem.resize(point);
  for (int number = 1; number < addOn.file->addOnNumber(); ++number) {
    const std::string name = stem + "-" + std::to_string(number) + extension;
    if (files.isBeside(*addOn.file, name))
      continue;
    addOn.hits->add(411, 0, "nobody reads this add-on: there is no " + name + " before it");
    return;
  }
}

bool areWhole(const std::vector<Checked *> &files) {
  return !files.empty() &&
         std::all_of(files.begin(), files.end(), [](const Checked *other) { return other->file->isWhole(); });
}

/// 413, 414: a number that refers to a table of the identity data.
void judgeReference(FileSet &files, Checked &checked, int finding, const char *recordTag, const char *tag,
                    const char *section, const char *rowTag) {
  const std::vector<Checked *> identities = files.related(*checked.file, "SPIDData");
  const bool hasTable =
      areWhole(identities) && std::all_of(identities.begin(), identities.end(),
                                          [&](const Checked *other) { return hasSection(*other->file, section); });
  if (!hasTable || !checked.hits->wants(finding))
    return;
  NumberTable known;
  for (const Checked *const identity : identities)
    known.add(*identity->file, section, rowTag, "Number");
  for (const Place &place : placesOf(*checked.file, recordTag)) {
    const auto number = numberOf(*checked.file, place.record(), tag);
    if (!number || !known.lacks(*number) || (finding == 413 && *number == -1))
      continue;
    checked.hits->add(finding, checked.file->textOffset(place.record(), tag),
                      std::string(tag) + " " + withNumber(place.text(tag), *number) + " is not among the " + section +
                          " of " + identities.front()->file->baseName(),
                      place.number);
  }
}

/// The names of the transceivers in some files.
struct XcvrNames {
  std::set<std::string> known; // also of those that programs do not get
  std::size_t lost = 0;        // those that have been told as being without a name, or with one that is there already
};

XcvrNames namesIn(const std::vector<Checked *> &lists) {
  XcvrNames names;
  for (const Checked *const list : lists) {
    for (const Index number : list->file->recordsOf("Transceiver")) {
      const CheckedFile::Record &record = list->file->record(number);
      names.lost += record.isLost ? 1 : 0;
      names.known.insert(folded(list->file->text(record, "Name").value_or("")));
    }
    for (const Stray &stray : straysOf(*list->file, "Transceivers", "Name")) {
      names.lost += stray.text ? 0 : 1;
      names.known.insert(folded(stray.text.value_or("")));
    }
  }
  return names;
}

/// 412: the names in the lists of transceivers.
void judgeTransceiverLists(FileSet &files) {
  struct Unknown {
    Checked *file;
    Index model;
    std::size_t offset;
    std::string name;
  };
  std::map<std::string, std::vector<Unknown>> unknown; // by name
  std::size_t lost = 0;
  for (Checked &checked : files.all()) {
    const std::vector<Checked *> lists = files.related(*checked.file, "StdXcvr");
    const bool hasStandard =
        std::any_of(lists.begin(), lists.end(), [](const Checked *list) { return !isUserFile(*list->file); });
    if (!checked.file->isKind("VorlanTyp") || !hasStandard || !areWhole(lists) || !checked.hits->wants(412))
      continue;
    const XcvrNames names = namesIn(lists);
    lost = names.lost;
    for (const Place &model : placesOf(*checked.file, "VorlanModel")) {
      for (const Entry &entry : entriesOf(*checked.file, model.record(), "TransceiverList", ";\n")) {
        const std::string name = trimmed(entry.text);
        if (!name.empty() && names.known.count(folded(name)) == 0)
          unknown[folded(name)].push_back({&checked, model.number, entry.offset + entry.text.find(name), name});
      }
    }
  }
  // A transceiver that has been told as lost is not told again by each model that names it.
  while (lost-- > 0) {
    const auto most = std::max_element(unknown.begin(), unknown.end(),
                                       [](const auto &a, const auto &b) { return a.second.size() < b.second.size(); });
    if (most == unknown.end() || most->second.size() < 2)
      break;
    unknown.erase(most);
  }
  for (const auto &[key, places] : unknown) {
    for (const Unknown &place : places)
      place.file->hits->add(412, place.offset,
                            "TransceiverList names " + inQuotes(place.name) + ", which is in no file of transceivers",
                            place.model);
  }
}

/// 408: two records of one table with one number.
void judgeNumbersOf(Checked &checked, std::string_view recordTag, const char *tag) {
  Seen<std::string> seen;
  for (const Place &place : placesOf(*checked.file, recordTag)) {
    const std::optional<std::string> standing = checked.file->text(place.record(), tag);
    if (!standing)
      continue;
    const std::string &text = *standing;
    const Judgement judgement = judge(*findMeaning(recordTag, tag), text);
    const std::string &number = judgement.number;
    if (number.empty() || (judgement.finding != 0 && findFinding(judgement.finding)->level != Level::kNote))
      continue;
    if (const Place *const first = firstOf(seen, number, place))
      checked.hits->add(408, checked.file->textOffset(place.record(), tag),
                        std::string(tag) + " " + (text == number ? text : text + " (" + number + ")") +
                            " is already used by " + first->name() + " in " + first->in(*checked.file, tag),
                        place.number);
  }
}

} // namespace

void judgeModels(FileSet &files) {
  for (Checked &main : files.all()) {
    const bool hasMain = main.file->addOnNumber() > 0 && files.mainOf(*main.file) != nullptr;
    if (!main.file->isKind("VorlanTyp") || hasMain)
      continue;
    Models models;
    for (Checked *const part : files.chipData(*main.file)) {
      const bool isAddOn = part != &main;
      for (const Place &model : placesOf(*part->file, "VorlanModel"))
        judgeModel(model, isAddOn, models, *part->hits);
      if (isAddOn || !files.isAddOn(*main.file))
        judgeSchemes(*main.file, *part);
    }
  }
  for (Checked &addOn : files.all()) {
    if (files.isSeveral() && addOn.file->addOnNumber() > 1 && files.isBeside(*addOn.file, addOn.file->addOnOf()))
      judgeGap(files, addOn);
  }
}

void judgeNumbers(FileSet &files) {
  for (Checked &checked : files.all()) {
    judgeNumbersOf(checked, "Transceiver", "std_id");
    for (const char *const table : {"ManufacturerID", "DeviceClass", "DeviceSubClass", "ChannelType"})
      judgeNumbersOf(checked, table, "Number");
  }
}

void judgeUserFile(FileSet &files) {
  for (Checked &user : files.all()) {
    if (!isUserFile(*user.file))
      continue;
    Seen<std::string> names;
    Seen<long long> numbers;
    for (const Checked *const standard : files.related(*user.file, "StdXcvr")) {
      if (isUserFile(*standard->file))
        continue;
      for (const Place &place : placesOf(*standard->file, "Transceiver")) {
        names.emplace(folded(place.text("Name")), place);
        if (const auto number = numberOf(*standard->file, place.record(), "std_id"))
          numbers.emplace(*number, place);
      }
    }
    for (const Place &place : placesOf(*user.file, "Transceiver")) {
      const auto number = numberOf(*user.file, place.record(), "std_id");
      const auto byName = names.find(folded(place.text("Name")));
      const auto byNumber = number ? numbers.find(*number) : numbers.end();
      std::string reason;
      if (byName != names.end())
        reason =
            "the name is already used by " + byName->second.name() + " in " + byName->second.in(*user.file, "Name");
      else if (byNumber != numbers.end())
        reason = "std_id " + place.text("std_id") + " is already used by " + byNumber->second.name() + " in " +
                 byNumber->second.in(*user.file, "std_id") + " (" + byNumber->second.text("std_id") + ")";
      if (!reason.empty())
        user.hits->add(409, user.file->outline().offset(place.record().element),
                       reason + "; programs never see this one", place.number);
    }
  }
}

void judgeReferences(FileSet &files) {
  judgeTransceiverLists(files);
  for (Checked &checked : files.all()) {
    if (checked.file->isKind("VorlanTyp")) {
      judgeReference(files, checked, 413, "VorlanModel", "ManufacturerID", "ManufacturerIDs", "ManufacturerID");
    } else if (checked.file->isKind("StdXcvr")) {
      judgeReference(files, checked, 414, "Transceiver", "ChannelTypeNumber", "ChannelTypes", "ChannelType");
    }
  }
}

void judgeRelations(std::vector<Checked> &files) {
  FileSet set(files);
  judgeModels(set);
  judgeLinks(set);
  judgeNumbers(set);
  judgeUserFile(set);
  judgeReferences(set);
}

void judgeAll(std::vector<Checked> &files) {
  for (Checked &checked : files) {
    judgeForm(*checked.file, *checked.hits);
    judgeStructure(*checked.file, *checked.hits);
    judgeValues(*checked.file, *checked.hits);
    judgeRanges(*checked.file, *checked.hits);
  }
  judgeRelations(files);
}
