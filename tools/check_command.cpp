#include "kestrune/platform/drives.h"
#include "kestrune/xml/replacing_save.h"
#include "tools/check/fix.h"
#include "tools/check/known.h"
#include "tools/check/relations.h"
#include "tools/commands.h"
#include "tools/comparison.h"
#include "tools/files.h"
#include "tools/messages.h"
#include "tools/output.h"
#include "tools/table.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

namespace {

struct Options {
  std::shared_ptr<FileOptions> files;
  std::shared_ptr<Output> output;
  Level level = Level::kWarning;
  Level failOn = Level::kWarning;
  std::size_t most = 0; // of each number; 0 is all
  std::vector<std::string> only;
  std::vector<std::string> ignore;
  std::string explain;
  bool list = false;
  bool page = false;
  bool fix = false;
  bool writeBaseline = false;
};

/// What is printed of a finding.
struct Line {
  std::string file;
  Position place;
  Level level;
  std::string number;
  std::string message;
  std::string record;
  std::string address;
};

/// A whole run over several files.
class Check {
public:
  explicit Check(const Options &options) : m_options(options), m_output(*options.output) {
    m_selection.only = options.only;
    m_selection.ignore = options.ignore;
    m_selection.least = options.fix ? Level::kNote : std::max(options.level, options.failOn);
  }

  int run() {
    read();
    judge();
    if (m_options.fix && fix()) {
      m_files.clear();
      m_replacements.clear();
      m_known = {};
      read();
      judge();
    }
    if (m_options.writeBaseline) {
      say(writeBaseline(m_known, m_files));
      return m_couldNotWork ? kCouldNotWork : kYes;
    }
    print();
    return m_couldNotWork ? kCouldNotWork : m_fails ? kNo : kYes;
  }

private:
  bool isTalking() const { return m_output.isText() && !m_output.quiet; }
  void say(const std::string &text) const {
    if (isTalking())
      std::cout << text;
  }

  /// Tells why something could not be done. The rest is done.
  void giveUp(const CouldNotWork &reason) {
    if (m_complaints.insert(reason.what()).second)
      complain(reason.what());
    m_couldNotWork = true;
  }
  void read();
  void addFile(const std::string &file, const std::string &inputName);
  /// The files that programs get under a name, and whether one takes the place of the one that was asked for.
  void addInstalled(const std::string &file, bool isOneOfMany);
  void judge();
  void judgeReplacements();
  bool fix();
  void printChange(const Source &before, const std::string &fixed) const;
  void print();
  void printLine(const Line &line);
  Line lineOf(const Checked &checked, const Hit &hit) const;
  void printSummary() const;

  const Options &m_options;
  const Output &m_output;
  Selection m_selection;
  KnownFindings m_known;
  std::vector<Checked> m_files;
  std::vector<std::pair<std::string, std::string>> m_replacements; // path of the file read, and what it replaces
  std::set<std::string> m_complaints;
  bool m_couldNotWork = false;
  bool m_fails = false;
  std::array<std::size_t, 3> m_printed{}; // by level
  std::size_t m_filesWithFindings = 0;
  Json m_json = Json::array();
};

void Check::addFile(const std::string &file, const std::string &inputName) {
  Checked checked;
  checked.file = std::make_unique<CheckedFile>(readSource(file, inputName));
  const std::string path = checked.file->source().path;
  const bool isThere = !path.empty() && std::any_of(m_files.begin(), m_files.end(), [&](const Checked &other) {
    std::error_code ignored;
    return !other.file->source().path.empty() && std::filesystem::equivalent(other.file->source().path, path, ignored);
  });
  if (isThere)
    return; // a file that was named twice is one file
  checked.hits = std::make_unique<Hits>(*checked.file, m_selection);
  try {
    if (KnownFile *const known = checked.file->folder().empty() ? nullptr : m_known.findFor(*checked.file))
      checked.hits->setKnown(
          [known, file = checked.file.get()](const Hit &hit) { return KnownFindings::covers(*known, *file, hit); });
  } catch (const CouldNotWork &reason) {
    giveUp(reason);
  }
  m_files.push_back(std::move(checked));
}

void Check::addInstalled(const std::string &file, bool isOneOfMany) {
  const Kind *kind = kindOfMacro(file);
  CString name(file.c_str());
  if (kind == nullptr) {
    const CheckedFile asked(readSource(file, {}));
    kind = asked.kind();
    if (kind == nullptr || asked.folder().empty()) {
      addFile(file, m_options.files->inputName);
      return;
    }
    const std::filesystem::path folder(asked.folder());
    std::error_code ignored;
    if (isOneOfMany && asked.addOnNumber() > 0 && std::filesystem::exists(folder / asked.addOnOf(), ignored))
      return; // read with the file that it belongs to
    name = (folder / asked.baseName()).c_str();
  }
  std::string wanted;
  CFilename full;
  CFilename(name).GetAbsolute(full, nullptr);
  kestrune::platform::ToHostPath(full, wanted);
  bool isFirst = true;
  for (const CString &path : filesOf(*kind, name)) {
    std::string hostPath;
    if (path.IsEmpty() || !kestrune::platform::ToHostPath(path, hostPath))
      throw CouldNotWork(file + ": " + std::string(path.View()) + ": No such file or directory");
    addFile(hostPath, {});
    std::error_code ignored;
    if (isFirst && !std::filesystem::equivalent(hostPath, wanted, ignored))
      m_replacements.emplace_back(hostPath, wanted.empty() ? file : wanted);
    isFirst = false;
  }
}

void Check::read() {
  std::vector<std::string> files = m_options.files->files;
  if (files.empty()) {
    for (const Kind &kind : allKinds())
      files.emplace_back(kind.macro);
  }
  for (const std::string &given : files) {
    try {
      const bool isInstalled = kindOfMacro(given) != nullptr;
      const std::vector<std::string> all = isInstalled ? std::vector{given} : withoutFolders({given});
      for (const std::string &file : all) {
        try {
          if (m_options.files->asInstalled || isInstalled)
            addInstalled(file, all.size() > 1);
          else
            addFile(file, file == "-" ? m_options.files->inputName : "");
        } catch (const CouldNotWork &reason) {
          giveUp(reason);
        }
      }
    } catch (const CouldNotWork &reason) {
      giveUp(reason);
    }
  }
}

void Check::judge() {
  judgeAll(m_files);
  if (m_replacements.empty())
    judgeReplacements();
  for (Checked &checked : m_files) {
    for (const auto &[path, replaced] : m_replacements) {
      if (checked.file->source().path == path)
        checked.hits->add(415, 0, "programs read this file in place of " + replaced);
    }
  }
}

bool Check::fix() {
  bool isChanged = false;
  for (Checked &checked : m_files) {
    const Source &source = checked.file->source();
    const std::string fixed = fixedBytes(*checked.file, *checked.hits);
    if (fixed == source.bytes)
      continue;
    std::string reason = "the standard input cannot be mended";
    if (source.path.empty() || kestrune::ReplaceFile(source.path.c_str(), fixed, &reason) < 0) {
      giveUp(CouldNotWork(source.name + ": " + reason));
      continue;
    }
    if (isTalking())
      printChange(source, fixed);
    isChanged = true;
  }
  return isChanged;
}

void Check::printChange(const Source &before, const std::string &fixed) const {
  std::cout << inked(m_output, Ink::kBold, shown(before.name)) << '\n';
  if (before.bytes.starts_with("\xEF\xBB\xBF") && !fixed.starts_with("\xEF\xBB\xBF"))
    std::cout << "the byte order mark is gone\n";
  printComparison(compare(Document(before), Document({before.name, before.path, fixed})), m_output);
}

/// 415 among the files that were given: one of them is what programs read in place of another.
void Check::judgeReplacements() {
  for (const Checked &wanted : m_files) {
    const CheckedFile &file = *wanted.file;
    const bool isMain =
        file.kind() != nullptr && !file.folder().empty() && file.addOnNumber() == 0 && !isUserFile(file);
    if (m_files.size() < 2 || !isMain)
      continue;
    const std::filesystem::path path = std::filesystem::path(file.folder()) / file.baseName();
    const std::vector<CString> read = filesOf(*file.kind(), path.c_str());
    std::string first;
    std::error_code ignored;
    if (read.empty() || !kestrune::platform::ToHostPath(read.front(), first) ||
        std::filesystem::equivalent(first, path, ignored))
      continue;
    for (const Checked &other : m_files) {
      if (!other.file->source().path.empty() && std::filesystem::equivalent(other.file->source().path, first, ignored))
        m_replacements.emplace_back(other.file->source().path, file.name());
    }
  }
}

Line Check::lineOf(const Checked &checked, const Hit &hit) const {
  return {checked.file->name(),
          hit.place,
          findFinding(hit.number)->level,
          findingName(hit.number),
          hit.message,
          checked.file->nameOf(hit.record),
          hit.record == CheckedFile::kNone ? "" : checked.file->addressOf(hit.record)};
}

void Check::printLine(const Line &line) {
  ++m_printed[static_cast<std::size_t>(line.level)];
  if (m_output.quiet)
    return;
  const std::string place = std::to_string(line.place.line) + ":" + std::to_string(line.place.column);
  if (m_output.isJson()) {
    m_json.push_back({{"file", jsonText(line.file)},
                      {"line", line.place.line},
                      {"column", line.place.column},
                      {"level", levelName(line.level)},
                      {"number", line.number},
                      {"message", jsonText(line.message)},
                      {"record", jsonText(line.record)},
                      {"address", jsonText(line.address)}});
  } else if (m_output.isTsv()) {
    printTsv({line.file, std::to_string(line.place.line), std::to_string(line.place.column), levelName(line.level),
              line.number, line.message, line.record, line.address});
  } else {
    const Ink ink = line.level == Level::kError ? Ink::kRed : line.level == Level::kWarning ? Ink::kYellow : Ink::kCyan;
    std::cout << inked(m_output, Ink::kBold, shown(line.file) + ":" + place + ":") << ' '
              << inked(m_output, ink, levelName(line.level)) << (line.number.empty() ? "" : " ") << line.number << ": "
              << shown(line.message) << (line.record.empty() ? "" : " [" + shown(line.record) + "]") << '\n';
  }
}

void Check::print() {
  if (m_output.isTsv() && !m_output.quiet)
    printTsv({"File", "Line", "Column", "Level", "Number", "Message", "Record", "Address"});
  const auto isMacro = [](const std::string &file) { return kindOfMacro(file) != nullptr; };
  const std::vector<std::string> &given = m_options.files->files;
  if (m_options.files->asInstalled || given.empty() || std::any_of(given.begin(), given.end(), isMacro)) {
    std::vector<std::string> names;
    names.reserve(m_files.size());
    for (const Checked &checked : m_files)
      names.push_back(checked.file->name());
    if (!names.empty())
      say(filesLine(names));
  }
  std::map<int, std::size_t> shownOf;
  std::map<int, std::size_t> found;
  for (Checked &checked : m_files) {
    bool isShown = false;
    for (const Hit &hit : checked.hits->sorted()) {
      if (findFinding(hit.number)->level > m_options.level ||
          (m_options.most > 0 && shownOf[hit.number] >= m_options.most))
        continue;
      ++shownOf[hit.number];
      printLine(lineOf(checked, hit));
      isShown = true;
    }
    m_filesWithFindings += isShown ? 1 : 0;
    for (const auto &[number, count] : checked.hits->counts()) {
      m_fails = m_fails || findFinding(number)->level <= m_options.failOn;
      if (findFinding(number)->level <= m_options.level)
        found[number] += count;
    }
  }
  const KnownFile *last = nullptr;
  for (const auto &[known, line] : m_known.useless(m_files)) {
    m_fails = m_fails || m_options.failOn >= Level::kWarning;
    if (m_options.level < Level::kWarning)
      continue;
    printLine(
        {known->path, {line->line, 1}, Level::kWarning, "", "this line suppresses nothing: " + line->text, "", ""});
    m_filesWithFindings += known != last ? 1 : 0;
    last = known;
  }
  Json files = Json::array();
  for (const Checked &checked : m_files)
    files.push_back(jsonText(checked.file->name()));
  Json more = Json::object();
  for (const auto &[number, count] : found) {
    const std::size_t rest = count - shownOf[number];
    if (rest > 0) {
      more[findingName(number)] = rest;
      say(findingName(number) + ": " + std::to_string(rest) + " more\n");
      m_printed[static_cast<std::size_t>(findFinding(number)->level)] += rest;
    }
  }
  if (m_output.isJson() && !m_output.quiet)
    printJson({{"files", files},
               {"findings", m_json},
               {"more", more},
               {"errors", m_printed[0]},
               {"warnings", m_printed[1]},
               {"notes", m_printed[2]}});
  printSummary();
}

void Check::printSummary() const {
  std::string text;
  for (const Level level : {Level::kError, Level::kWarning, Level::kNote}) {
    const std::size_t count = m_printed[static_cast<std::size_t>(level)];
    if (count > 0)
      text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + levelName(level) + (count == 1 ? "" : "s");
  }
  if (!text.empty())
    say(text + " in " + std::to_string(m_filesWithFindings) + (m_filesWithFindings == 1 ? " file\n" : " files\n"));
}

int printList() {
  for (const Finding &finding : allFindings()) {
    const std::string level = levelName(finding.level);
    std::cout << findingName(finding.number) << "  " << level << std::string(9 - level.size(), ' ') << finding.title
              << '\n';
  }
  return kYes;
}

int printExplanation(const std::string &name) {
  std::vector<std::string> names;
  for (const Finding &finding : allFindings())
    names.push_back(findingName(finding.number));
  const std::string wanted = folded(name).starts_with("kd") ? name.substr(2) : name;
  const auto found = std::find(names.begin(), names.end(), "KD" + wanted);
  if (found == names.end())
    throw CouldNotWork(notFound("check", name, names));
  std::cout << explanation(*findFinding(std::stoi(wanted)));
  return kYes;
}

int check(const Options &options) {
  if (options.list)
    return printList();
  if (options.page) {
    std::cout << findingsPage();
    return kYes;
  }
  if (!options.explain.empty())
    return printExplanation(options.explain);
  if (options.files->files.empty() && !options.files->asInstalled)
    throw CouldNotWork("check: no FILE is given");
  for (const std::vector<std::string> *const numbers : {&options.only, &options.ignore}) {
    for (const std::string &number : *numbers) {
      const auto begins = [&](const Finding &finding) { return findingName(finding.number).starts_with(number); };
      if (std::none_of(allFindings().begin(), allFindings().end(), begins))
        throw CouldNotWork("check: no finding begins with '" + number + "'; check --list prints them all");
    }
  }
  return Check(options).run();
}

} // namespace

void addCheckCommand(CLI::App &app, Run &run) {
  Command command(app, run, "check", "Print every mistake in the files with its place, and nothing for sound ones");
  const auto options = std::make_shared<Options>();
  options->files = addFiles(command, FileUse::kReadMany);
  command.argument("FILE").required(false);
  static const std::map<std::string, Level> kLevels = {
      {"error", Level::kError}, {"warning", Level::kWarning}, {"note", Level::kNote}};
  command.choice("--level", options->level, kLevels, "Print from this level on: error, warning (the default) or note")
      .called("LEVEL");
  command.choice("--fail-on", options->failOn, kLevels, "Answer 1 from this level on; the default is warning")
      .called("LEVEL");
  command.option("--max", options->most, "Print so many of each number, and count the rest").called("N");
  command.option("--only", options->only, "Look for these alone, such as KD3,KD408").separated().called("KD");
  command.option("--ignore", options->ignore, "Do not look for these").separated().called("KD");
  command.option("--explain", options->explain, "Explain a finding").called("KD");
  command.flag("--list", options->list, "List all findings");
  command.flag("--page", options->page, "").hidden(); // makes docs/findings.md
  command.flag("--fix", options->fix, "Mend what has one answer, and show the diff");
  command.flag("--write-baseline", options->writeBaseline,
               "Add today's findings to .kestrune-check beside the files, or in a folder above them");
  options->output = addOutput(command);
  command.examples({"kestrune-data check /opt/kestrune/Types", "kestrune-data check --explain KD204"});
  command.runs([options] { return check(*options); });
}
