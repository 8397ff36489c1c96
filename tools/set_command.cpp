#include "tools/change.h"
#include "tools/commands.h"

namespace {

struct Options {
  ChangeOptions change;
  std::vector<std::string> assignments;
};

int set(const Options &options) {
  return carryOut(options.change, true, [&](const Document &document) {
    return assign(document, resolve(document, {}, options.assignments, options.change.force), options.change.force);
  });
}

} // namespace

void addSetCommand(CLI::App &app, Run &run) {
  Command command(app, run, "set", "Give members other texts: all of them, or none");
  const auto options = std::make_shared<Options>();
  addChange(command, options->change, "Take texts that check calls an error");
  command.option("ADDRESS=TEXT", options->assignments, "Roads to members, with their new texts").required();
  command.examples({"kestrune-data set Vorlan.xml VorlanModels/KVO-2208X-S32H/ROMend=0x7FFF",
                    "kestrune-data set --dry-run Vorlan.xml ClockingSchemes/5/Clocks/10000/Encoding=6"});
  command.runs([options] { return set(*options); });
}
