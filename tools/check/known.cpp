#include "tools/check/known.h"

#include "kestrune/xml/replacing_save.h"
#include "tools/address.h"
#include "tools/check/facts.h"
#include "tools/messages.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

namespace {

namespace fs = std::filesystem;

constexpr const char *kName = ".kestrune-check";
constexpr const char *kWholeFile = "."; // the address of a finding that is of no record
constexpr std::string_view kBlanks = " \t\r";

std::string trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  return begin == std::string_view::npos ? std::string()
                                         : std::string(text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin));
}

std::string takeWord(std::string &text) {
  text = trimmed(text);
  const std::size_t end = std::min(text.find_first_of(kBlanks), text.size());
  std::string word = text.substr(0, end);
  text.erase(0, end);
  return word;
}

std::vector<KnownLine> linesOf(const std::string &path, const std::string &bytes) {
  std::vector<KnownLine> lines;
  std::size_t number = 0;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t end = std::min(bytes.find('\n', at), bytes.size());
    std::string rest = bytes.substr(at, end - at);
    at = end + 1;
    ++number;
    std::size_t remark = rest.starts_with('#') ? 0 : std::min(rest.find(" #"), rest.find("\t#"));
    rest.resize(std::min(remark, rest.size()));
    const std::string text = trimmed(rest);
    if (text.empty())
      continue;
    KnownLine line{number, text, takeWord(rest), takeWord(rest), trimmed(rest)};
    if (!line.number.starts_with("KD") || line.address.empty())
      throw CouldNotWork(path + ":" + std::to_string(number) + ": '" + text + "' is not KDnnn FILE ADDRESS");
    lines.push_back(std::move(line));
  }
  return lines;
}

std::string relativeName(const KnownFile &known, const CheckedFile &file) {
  return (fs::path(file.folder()) / file.baseName()).lexically_relative(known.folder);
}

/// A text as a line can hold it: `?` stands for what would end a word, or begin a remark.
std::string asPattern(std::string text, bool isWord) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool isControl = static_cast<unsigned char>(text[at]) < ' ';
    const bool isRemark = text[at] == '#' && (at == 0 || text[at - 1] == ' ');
    const bool isOuter = text[at] == ' ' && (isWord || at == 0 || at + 1 == text.size());
    if (isControl || isRemark || isOuter)
      text[at] = '?';
  }
  return text;
}

/// All addresses by which a record is known: by its key, its name and its number.
std::vector<std::string> addressesOf(const CheckedFile &file, CheckedFile::Index number) {
  if (number == CheckedFile::kNone || number == 0)
    return {kWholeFile};
  std::vector<std::string> addresses{file.addressOf(number)};
  const CheckedFile::Record &record = file.record(number);
  if (record.collection == nullptr)
    return addresses;
  const std::string road = addresses.front().substr(0, addresses.front().rfind('/') + 1);
  for (const char *const tag : {"Name", "ModelNum", "std_id", "Number"}) {
    if (const auto text = file.text(record, tag))
      addresses.push_back(road + addressStep(*text));
    if (const auto value = numberOf(file, record, tag))
      addresses.push_back(road + std::to_string(*value));
  }
  // The table of links speaks of models by their numbers.
  if (record.shape->tag == "LinkCompatibleModel")
    addresses.push_back("VorlanModels/" + addressStep(file.text(record, "Name").value_or("")));
  return addresses;
}

/// Whether all data files of a folder were given, so that relations between them were judged.
bool isFolderGiven(const std::string &folder, const std::vector<Checked> &checked) {
  std::error_code error;
  for (const fs::directory_entry &entry : fs::directory_iterator(folder, error)) {
    const auto isIt = [&](const Checked &other) {
      return other.file->folder() == folder && other.file->baseName() == entry.path().filename();
    };
    if (folded(entry.path().extension().string()) == ".xml" && std::none_of(checked.begin(), checked.end(), isIt))
      return false;
  }
  return !error;
}

bool concerns(const KnownFile &known, const KnownLine &line, const CheckedFile &file) {
  return !file.folder().empty() &&
         (matches(relativeName(known, file), line.file) || matches(file.baseName(), line.file));
}

} // namespace

KnownFile *KnownFindings::findFor(const CheckedFile &file) {
  for (fs::path folder = file.folder(); !folder.empty(); folder = folder.parent_path()) {
    const auto found =
        std::find_if(m_files.begin(), m_files.end(), [&](const auto &known) { return known->folder == folder; });
    if (found != m_files.end())
      return found->get();
    std::error_code ignored;
    if (fs::is_regular_file(folder / kName, ignored)) {
      m_files.push_back(std::make_unique<KnownFile>(KnownFile{folder / kName, folder, {}}));
      const Source source = readSource(folder / kName);
      m_files.back()->lines = linesOf(source.path, source.bytes);
      return m_files.back().get();
    }
    if (folder == folder.parent_path())
      break;
  }
  return nullptr;
}

bool KnownFindings::covers(KnownFile &known, const CheckedFile &file, const Hit &hit) {
  bool isCovered = false;
  std::vector<std::string> addresses;
  for (KnownLine &line : known.lines) {
    if (!matches(findingName(hit.number), line.number) || !concerns(known, line, file))
      continue;
    if (addresses.empty())
      addresses = addressesOf(file, hit.record);
    const auto isIt = [&](const std::string &address) { return matches(address, line.address); };
    if (std::any_of(addresses.begin(), addresses.end(), isIt)) {
      line.isUsed = true;
      isCovered = true;
    }
  }
  return isCovered;
}

std::vector<std::pair<const KnownFile *, const KnownLine *>>
KnownFindings::useless(const std::vector<Checked> &checked) const {
  std::vector<std::pair<const KnownFile *, const KnownLine *>> lines;
  for (const std::unique_ptr<KnownFile> &known : m_files) {
    for (const KnownLine &line : known->lines) {
      if (line.isUsed)
        continue;
      const auto isMeant = [&](const Finding &finding) { return matches(findingName(finding.number), line.number); };
      const bool isNumber = std::any_of(allFindings().begin(), allFindings().end(), isMeant);
      bool wasLookedFor = false;
      bool hasFile = false;
      for (const Checked &other : checked) {
        if (!concerns(*known, line, *other.file))
          continue;
        hasFile = true;
        wasLookedFor = wasLookedFor || !isNumber;
        const bool isRelation = line.number.starts_with("KD4") || line.number.find_first_of("*?") < 3;
        for (const Finding &finding : allFindings())
          wasLookedFor = wasLookedFor || (isMeant(finding) && other.hits->wants(finding.number) &&
                                          (!isRelation || isFolderGiven(other.file->folder(), checked)));
      }
      const auto isBeside = [&](const Checked &other) { return other.file->folder() == known->folder; };
      if (!hasFile && std::any_of(checked.begin(), checked.end(), isBeside) && isFolderGiven(known->folder, checked))
        wasLookedFor = true; // the file is gone
      if (wasLookedFor)
        lines.emplace_back(known.get(), &line);
    }
  }
  return lines;
}

std::string writeBaseline(KnownFindings &known, std::vector<Checked> &checked) {
  std::map<std::string, std::set<std::string>> lines; // by path
  for (Checked &other : checked) {
    const CheckedFile &file = *other.file;
    if (file.folder().empty() || other.hits->sorted().empty())
      continue;
    const KnownFile *const found = known.findFor(file);
    const KnownFile place = found != nullptr ? *found : KnownFile{fs::path(file.folder()) / kName, file.folder(), {}};
    for (const Hit &hit : other.hits->sorted()) {
      const bool isOfRecord = hit.record != CheckedFile::kNone && hit.record != 0;
      lines[place.path].insert(findingName(hit.number) + "  " + asPattern(relativeName(place, file), true) + "  " +
                               (isOfRecord ? asPattern(file.addressOf(hit.record), false) : kWholeFile));
    }
  }
  std::string done;
  for (const auto &[path, added] : lines) {
    std::error_code ignored;
    std::string text = fs::exists(path, ignored) ? readSource(path).bytes : std::string();
    if (!text.empty() && text.back() != '\n')
      text += '\n';
    for (const std::string &line : added)
      text += line + "\n";
    std::string reason;
    if (kestrune::ReplaceFile(path.c_str(), text, &reason) < 0)
      throw CouldNotWork(path + ": " + reason);
    done += path + ": " + std::to_string(added.size()) + (added.size() == 1 ? " line" : " lines") + " added\n";
  }
  return done;
}
