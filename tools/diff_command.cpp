#include "tools/address.h"
#include "tools/commands.h"
#include "tools/comparison.h"
#include "tools/files.h"
#include "tools/messages.h"

#include <algorithm>
#include <iostream>

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
void checkIgnored(const Kind &kind, const std::vector<std::string> &ignored) {
  std::vector<std::string> tags;
  addTags(shapeOf(kind), tags);
  for (const std::string &pattern : ignored) {
    if (std::none_of(tags.begin(), tags.end(), [&](const std::string &tag) { return matches(tag, pattern); }))
      throw CouldNotWork(notFound(kind.root, pattern, tags));
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

int diff(const Options &options) {
  const std::string &first = options.files->files.front();
  if (first == "-" && options.other == "-")
    throw CouldNotWork("the standard input can only be one of the two files");
  std::string partsLine;
  const auto before = open(first, *options.files, partsLine);
  const auto after = open(options.other, *options.files, partsLine);
  if (before->kind() != after->kind())
    throw CouldNotWork(before->name() + " is a file of " + before->kind()->name + ", and " + after->name() + " of " +
                       after->kind()->name);
  checkIgnored(*before->kind(), options.comparison.ignored);
  const Comparison comparison = compare(*before, *after, options.comparison);
  if (!partsLine.empty() && options.output->isText() && !options.output->quiet)
    std::cout << partsLine << '\n';
  printComparison(comparison, *options.output, options.onlyCounts);
  return comparison.isSame() ? kYes : kNo;
}

} // namespace

void addDiffCommand(CLI::App &app, Run &run) {
  Command command(app, run, "diff", "Compare two files by item and member, whatever the order and layout");
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
