#include "tools/change.h"
#include "tools/commands.h"
#include "tools/messages.h"
#include "tools/output.h"

#include <algorithm>
#include <iostream>

namespace {

struct Options {
  std::shared_ptr<FileOptions> files;
  std::string out;
  bool check = false;
  bool relayout = false;
  bool force = false;
  std::shared_ptr<Output> output;
};

int format(const Options &options) {
  const std::string &in = options.files->files.front();
  const Source source = readAlone(*options.files);
  Document newest(source);
  checkUsable(newest);
  const std::string saved = savedBytes(Document(source, newest.versionNeeded()));
  if (options.check) {
    if (saved != source.bytes && !options.output->quiet)
      std::cout << layoutLoss(source, saved).text << '\n';
    return saved == source.bytes ? kYes : kNo;
  }
  const std::string out = !options.out.empty() ? options.out : source.path.empty() ? "-" : source.path;
  checkTarget(out, in, options.force);
  const std::vector<Loss> losses = saved == source.bytes ? std::vector<Loss>() : lossesOf(source);
  complainOf(losses);
  const bool isInPlace = out != "-" && options.out.empty();
  if (isInPlace && !options.relayout &&
      std::any_of(losses.begin(), losses.end(), [](const Loss &loss) { return loss.isContent; })) {
    complain(source.name + ": nothing is changed, since this would get lost; --relayout saves it all the same");
    return kNo;
  }
  if (!isInPlace || saved != source.bytes)
    writeFile(out, saved);
  return kYes;
}

} // namespace

void addFormatCommand(CLI::App &app, Run &run) {
  Command command(app, run, "format", "Give a file the layout of a save");
  const auto options = std::make_shared<Options>();
  options->files = addFiles(command, FileUse::kWrite);
  command.option("OUT", options->out, "File to write, - is the standard output; without it the file itself");
  command.flag("--check", options->check, "Only tell whether the layout differs: status 1, and where");
  command.flag("--relayout", options->relayout, "In place, even if comments or unknown elements get lost");
  command.flag("--force", options->force, "Write over another file");
  options->output = addOutput(command, {.json = false, .tsv = false});
  command.examples({"kestrune-data format Vorlan.xml", "kestrune-data format --check Vorlan.xml"});
  command.runs([options] { return format(*options); });
}
