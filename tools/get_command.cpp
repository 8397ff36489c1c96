#include "tools/address.h"
#include "tools/commands.h"
#include "tools/messages.h"
#include "tools/output.h"
#include "tools/texts.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

namespace {

/// The one member that an address means, or null after a message.
const FoundIn *onlyMember(const std::vector<FoundIn> &found, const std::string &file, const std::string &address) {
  if (found.size() > 1) {
    std::string all;
    for (const FoundIn &one : found) {
      const bool inOther = one.document != found.front().document;
      all += (all.empty() ? "" : ", ") + one.found.address() + (inOther ? " in " + one.document->name() : "");
    }
    complain(file + ": '" + address + "' means several: " + all);
    return nullptr;
  }
  if (!found.front().found.isMember() || found.front().found.member.folder != nullptr) {
    complain(file + ": '" + address + "' is a record and not a member");
    return nullptr;
  }
  return &found.front();
}

int get(const FileOptions &files, const std::vector<std::string> &addresses, const Output &output) {
  const std::string &file = files.files.front();
  const Loaded loaded(file, files);
  std::ostringstream answer;
  Json values = Json::array();
  int status = kYes;
  for (const std::string &address : addresses) {
    try {
      const std::vector<FoundIn> found = find(loaded, file, address);
      if (const FoundIn *const one = onlyMember(found, loaded.main().name(), address)) {
        const std::string text = textInFile(one->found.record, one->found.member);
        answer << text << '\n';
        values.push_back({{"file", jsonText(one->document->name())},
                          {"address", jsonText(one->found.address())},
                          {"text", jsonText(text)}});
        continue;
      }
    } catch (const NotFound &nothing) {
      complain(nothing.what());
    }
    status = kNo;
  }
  if (status != kYes || output.quiet)
    return status;
  if (output.isJson())
    printJson({{"values", values}});
  else
    std::cout << answer.str();
  return kYes;
}

} // namespace

void addGetCommand(CLI::App &app, Run &run) {
  Command command(app, run, "get", "Print the bare text of members");
  const auto files = addFiles(command, FileUse::kRead);
  const auto output = addOutput(command, {.tsv = false});
  const auto addresses = std::make_shared<std::vector<std::string>>();
  command.option("ADDRESS", *addresses, "Roads to members, such as VorlanModels/KVO-2208X-S32H/ROMend").required();
  command.examples({"kestrune-data get Vorlan.xml VorlanModels/KVO-2208X-S32H/ROMend",
                    "kestrune-data get Vorlan.xml ClockingSchemes/5/Clocks/10000/Multipliers/1.5/Encoding"});
  command.runs([files, addresses, output] { return get(*files, *addresses, *output); });
}
