#include "tools/address.h"
#include "tools/commands.h"
#include "tools/files.h"
#include "tools/messages.h"

#include <iostream>
#include <sstream>

namespace {

int get(const FileOptions &files, const std::vector<std::string> &addresses) {
  const Loaded loaded(files.files.front(), files);
  const Document &document = loaded.main();
  std::ostringstream answer;
  int status = kYes;
  for (const std::string &address : addresses) {
    std::vector<Found> found;
    try {
      found = find(document, address);
    } catch (const NotFound &nothing) {
      complain(nothing.what());
      status = kNo;
      continue;
    }
    if (found.size() > 1) {
      std::string all;
      for (const Found &one : found)
        all += (all.empty() ? "" : ", ") + one.address();
      complain(document.name() + ": '" + address + "' means several: " + all);
      status = kNo;
    } else if (!found.front().isMember() || found.front().member.folder != nullptr) {
      complain(document.name() + ": '" + address + "' is a record and not a member");
      status = kNo;
    } else {
      answer << found.front().member.text() << '\n';
    }
  }
  if (status == kYes)
    std::cout << answer.str();
  return status;
}

} // namespace

void addGetCommand(CLI::App &app, Run &run) {
  CLI::App *const command = app.add_subcommand("get", "Print the bare text of members");
  const auto files = addFiles(*command, FileUse::kRead);
  const auto addresses = std::make_shared<std::vector<std::string>>();
  command->add_option("ADDRESS", *addresses, "Roads to members, such as VorlanModels/KVO-2208X-S32H/ROMend")->required();
  addExamples(*command, {"kestrune-data get Vorlan.xml VorlanModels/KVO-2208X-S32H/ROMend",
                         "kestrune-data get Vorlan.xml ClockingSchemes/5/Clocks/10000/Multipliers/1.5/Encoding"});
  command->callback([&run, files, addresses] { run = [files, addresses] { return get(*files, *addresses); }; });
}
