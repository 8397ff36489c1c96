#include "tools/address.h"
#include "tools/commands.h"
#include "tools/files.h"
#include "tools/messages.h"
#include "tools/output.h"

#include <iostream>

namespace {

/// A text as it stands on one line, from which it can be told.
std::string onOneLine(std::string_view text) {
  std::string line;
  for (const char character : text) {
    if (character == '\\')
      line += "\\\\";
    else if (character == '\n')
      line += "\\n";
    else if (character == '\r')
      line += "\\r";
    else if (character == '\t')
      line += "\\t";
    else
      line += character;
  }
  return line;
}

void print(const Document &document, const std::string &before) {
  document.forEachMember([&](const Record &record, const Member &member) {
    if (member.folder == nullptr)
      std::cout << before << Found{record, member}.address() << " = " << onOneLine(member.text()) << '\n';
  });
}

int dump(const FileOptions &options) {
  const std::vector<std::string> files = withoutFolders(options.files);
  int status = kYes;
  for (const std::string &file : files) {
    try {
      const Loaded loaded(file, options);
      for (const std::unique_ptr<Document> &part : loaded.parts())
        print(*part, files.size() > 1 || loaded.parts().size() > 1 ? part->name() + ":" : "");
    } catch (const CouldNotWork &reason) {
      complain(reason.what());
      status = kCouldNotWork;
    }
  }
  return status;
}

} // namespace

void addDumpCommand(CLI::App &app, Run &run) {
  CLI::App *const command =
      app.add_subcommand("dump", "Print every member as a line, ADDRESS = TEXT, in the order of the file");
  const auto files = addFiles(*command, FileUse::kReadMany);
  addExamples(*command, {"kestrune-data dump Vorlan.xml | grep ROMend", "git config diff.kestrune.textconv 'kestrune-data dump'"});
  command->callback([&run, files] { run = [files] { return dump(*files); }; });
}
