#include "tools/change.h"
#include "tools/commands.h"
#include "tools/comparison.h"
#include "tools/messages.h"
#include "tools/output.h"
#include "tools/table.h"
#include "tools/texts.h"

#include <iostream>
#include <sstream>
#include <unordered_set>

namespace {

struct Options {
  std::shared_ptr<FileOptions> files;
  std::string out;
  int version = 0;
  bool yes = false;
  bool force = false;
  std::shared_ptr<Output> output;
};

/// Whether a record around an address is in a set.
bool isInside(const std::unordered_set<std::string> &records, const std::string &address) {
  for (std::size_t slash = address.find('/'); slash != std::string::npos; slash = address.find('/', slash + 1)) {
    if (records.count(address.substr(0, slash)) > 0)
      return true;
  }
  return false;
}

/// Prints each member whose text `back` lacks, which is the document read from the converted file. What is said here is
/// what a diff of both shows.
std::size_t printLost(const Document &original, const Document &back, std::ostream &list) {
  ComparisonOptions options;
  options.onlyStanding = true;
  std::unordered_set<std::string> members;
  std::unordered_set<std::string> records;
  forEachDifference(compare(original, back, options), [&](const Difference &difference) {
    (difference.isMember ? members : records).insert(difference.address);
  });
  std::size_t count = 0;
  original.forEachMember([&](const Record &record, const Member &member) {
    if (member.folder != nullptr || !member.isInFile())
      return;
    const std::string address = Found{record, member}.address();
    if (members.count(address) == 0 && !isInside(records, address))
      return;
    list << "lost     " << shown(address) << " = " << shown(textInFile(record, member)) << '\n';
    ++count;
  });
  return count;
}

std::size_t printDefaults(const Document &target, std::ostream &list) {
  std::size_t count = 0;
  target.forEachMember([&](const Record &record, const Member &member) {
    if (member.folder != nullptr || member.isInFile())
      return;
    list << "default  " << shown(Found{record, member}.address()) << " = " << shown(textInFile(record, member)) << '\n';
    ++count;
  });
  return count;
}

std::string counted(std::size_t count, const std::string &what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

int convert(const Options &options) {
  const Source source = readAlone(*options.files);
  const Document original(source);
  checkUsable(original);
  const Kind &kind = *original.kind();
  if (options.version < 1 || options.version > kind.newest())
    throw CouldNotWork("--to-version: " + std::string(kind.name) + " has the versions 1 to " +
                       std::to_string(kind.newest()) + ", and no " + std::to_string(options.version));
  checkTarget(options.out, options.files->files.front(), options.force);
  const Document target(source, options.version);
  const std::string bytes = savedBytes(target);
  const Document back(Source{options.out, {}, bytes});
  checkUsable(back);

  std::ostringstream list;
  const std::size_t lost = printLost(original, back, list);
  std::size_t dropped = 0;
  for (const Loss &loss : lossesOf(source)) {
    if (!loss.isContent)
      continue;
    list << "dropped  " << shown(loss.text) << '\n';
    ++dropped;
  }
  const std::size_t defaults = printDefaults(target, list);
  list << counted(lost, "text") << " lost, " << dropped << " dropped, " << counted(defaults, "default") << " taken\n";
  if (!options.output->quiet)
    (options.out == "-" ? std::cerr : std::cout) << list.str();
  if (!options.yes) {
    complain(options.out + ": nothing is written without --yes");
    return kNo;
  }
  writeFile(options.out, bytes);
  return kYes;
}

} // namespace

void addConvertCommand(CLI::App &app, Run &run) {
  Command command(app, run, "convert",
                  "Write a file as one of another format version; first tell which texts get lost, and which members "
                  "take their default");
  const auto options = std::make_shared<Options>();
  options->files = addFiles(command, FileUse::kWrite);
  command.option("OUT", options->out, "File to write; - is the standard output").required();
  command.option("--to-version", options->version, "The format version, from 1").required().called("N");
  command.flag("--yes", options->yes, "Write the file; without this only tell");
  command.flag("--force", options->force, "Write over another file");
  options->output = addOutput(command, {.json = false, .tsv = false});
  command.examples({"kestrune-data convert Vorlan.xml Vorlan-v2.xml --to-version 2",
                    "kestrune-data convert Vorlan.xml Vorlan-v2.xml --to-version 2 --yes"});
  command.runs([options] { return convert(*options); });
}
