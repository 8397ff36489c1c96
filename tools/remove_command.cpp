#include "tools/change.h"
#include "tools/commands.h"

namespace {

struct Options {
  ChangeOptions change;
  std::string address;
};

int remove(const Options &options) {
  return carryOut(options.change, false, [&](const Document &document) {
    const Found found = findOne(document, options.address);
    if (found.isMember() || found.record.collection == nullptr)
      throw Refused{{document.name() + ": '" + options.address + "' is no record of a collection"}};
    // A collection deletes by key, and two models may have the same one.
    const std::string unique = "\x01";
    putKey(*found.record.folder, *found.record.shape, unique);
    found.record.collection->Delete(unique.c_str());
    return 1;
  });
}

} // namespace

void addRemoveCommand(CLI::App &app, Run &run) {
  Command command(app, run, "remove", "Remove a record of a collection");
  const auto options = std::make_shared<Options>();
  addChange(command, options->change, "Say nothing of the errors that this makes, such as links to the record");
  command.option("ADDRESS", options->address, "Road to the record").required();
  command.examples({"kestrune-data remove Vorlan.xml VorlanModels/KVO-2208X-S32H",
                    "kestrune-data remove Vorlan.xml ClockingSchemes/5/Clocks/10000"});
  command.runs([options] { return remove(*options); });
}
