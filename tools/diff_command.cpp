#include "tools/address.h"
#include "tools/commands.h"
#include "tools/comparison.h"
#include "tools/files.h"
#include "tools/messages.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>

namespace {

struct Options {
  std::shared_ptr<FileOptions> files;
  std::string other;
  ComparisonOptions comparison;
  bool onlyCounts = false;
  std::shared_ptr<Output> output;
};

void addTags(const RecordShape &shape, std::vector<std::string> &tags) {
  for (const MemberShape &member : shape.members) {
    tags.push_back(member.tag);
    if (member.folder != nullptr)
      addTags(*member.folder, tags);
  }
}

/// Each member that is to be passed over has to exist.
void checkIgnored(const std::vector<const Kind *> &kinds, const std::vector<std::string> &ignored) {
  std::vector<std::string> tags;
  for (const Kind *const kind : kinds)
    addTags(shapeOf(*kind), tags);
  for (const std::string &pattern : ignored) {
    if (std::none_of(tags.begin(), tags.end(), [&](const std::string &tag) { return matches(tag, pattern); }))
      throw CouldNotWork(notFound(kinds.size() == 1 ? kinds.front()->root : "--ignore: a data file", pattern, tags));
  }
}

/// A file as it is compared, as programs get it where that is meant.
std::unique_ptr<Document> open(const std::string &file, const FileOptions &options, std::string &partsLine) {
  if (!options.asInstalled && kindOfMacro(file) == nullptr)
    return openDocument(file, file == "-" ? options.inputName : "");
  const Loaded loaded(file, options);
  partsLine += (partsLine.empty() ? "" : " | ") + partNames(loaded);
  return loaded.merged();
}

bool isFolder(const std::string &name) {
  std::error_code ignored;
  return !name.empty() && std::filesystem::is_directory(hostPath(name), ignored);
}

/// The data files of a folder, by their road from it.
std::map<std::string, std::string> filesBelow(const std::string &folder) {
  std::map<std::string, std::string> files;
  for (const std::string &file : withoutFolders({folder}))
    files[std::filesystem::path(hostPath(file)).lexically_relative(hostPath(folder)).string()] = file;
  return files;
}

Comparison compareFiles(const std::string &first, const std::string &other, const Options &options,
                        bool checksIgnored) {
  std::string partsLine;
  const auto before = open(first, *options.files, partsLine);
  const auto after = open(other, *options.files, partsLine);
  checkSameKind(*before, *after);
  if (checksIgnored)
    checkIgnored({before->kind()}, options.comparison.ignored);
  if (!partsLine.empty() && options.output->isText() && !options.output->quiet)
    std::cout << "Files: " << partsLine << '\n';
  return compare(*before, *after, options.comparison);
}

int diffFolders(const std::string &first, const std::string &other, const Options &options) {
  std::vector<const Kind *> kinds;
  for (const Kind &kind : allKinds())
    kinds.push_back(&kind);
  checkIgnored(kinds, options.comparison.ignored);
  const std::map<std::string, std::string> before = filesBelow(first);
  const std::map<std::string, std::string> after = filesBelow(other);
  std::map<std::string, std::string> all = before;
  all.insert(after.begin(), after.end());
  int status = kYes;
  std::vector<FileChange> changes;
  for (const auto &[name, file] : all) {
    FileChange change{name, Sign::kChanged, {}};
    try {
      if (!after.contains(name))
        change.sign = Sign::kRemoved;
      else if (!before.contains(name))
        change.sign = Sign::kAdded;
      else
        change.comparison = compareFiles(before.at(name), after.at(name), options, false);
    } catch (const CouldNotWork &reason) {
      complain(reason.what());
      status = kCouldNotWork;
      continue;
    }
    if (!change.isSame() && status == kYes)
      status = kNo;
    changes.push_back(std::move(change));
  }
  printFileChanges(changes, *options.output, options.onlyCounts);
  return status;
}

int diff(const Options &options) {
  std::string first = options.files->files.front();
  std::string other = options.other;
  if (first == "-" && other == "-")
    throw CouldNotWork("the standard input can only be one of the two files");
  if (isFolder(first) && isFolder(other) && !options.files->asInstalled)
    return diffFolders(first, other, options);
  // Of a folder, the file that is called as the other one.
  if (isFolder(first) && !isFolder(other))
    first = (std::filesystem::path(first) / std::filesystem::path(hostPath(other)).filename()).string();
  else if (isFolder(other) && !isFolder(first))
    other = (std::filesystem::path(other) / std::filesystem::path(hostPath(first)).filename()).string();
  const Comparison comparison = compareFiles(first, other, options, true);
  printComparison(comparison, *options.output, options.onlyCounts);
  return comparison.isSame() ? kYes : kNo;
}

} // namespace

void addDiffCommand(CLI::App &app, Run &run) {
  Command command(app, run, "diff",
                  "Compare two files, or those of two folders, by item and member, whatever the order and layout");
  const auto options = std::make_shared<Options>();
  options->files = addFiles(command, FileUse::kRead);
  command.option("OTHER", options->other, "The file to compare it with").required();
  command
      .option("--ignore", options->comparison.ignored,
              "Pass over members of that name, such as CreationDate; * and ? match")
      .called("MEMBER")
      .separated();
  command.flag("--numbers", options->comparison.numbers, "Take texts as equal that are one number: 0x20 and 32");
  command.flag("--stat", options->onlyCounts, "Print the counts of each section alone");
  options->output = addOutput(command);
  command.examples({"kestrune-data diff old/Vorlan.xml Vorlan.xml",
                    "kestrune-data diff --ignore CreationDate --numbers old/StdXcvr.xml StdXcvr.xml"});
  command.runs([options] { return diff(*options); });
}
