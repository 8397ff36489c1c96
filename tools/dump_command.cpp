#include "tools/address.h"
#include "tools/commands.h"
#include "tools/messages.h"
#include "tools/output.h"
#include "tools/texts.h"

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

void print(const Document &document, const Record &top, const std::string &before) {
  document.forEachMember(top, [&](const Record &record, const Member &member) {
    if (member.folder == nullptr)
      std::cout << before << onOneLine(Found{record, member}.address()) << " = "
                << onOneLine(textInFile(record, member)) << '\n';
  });
}

/// The first file and, as installed, the items of others that programs get with it, each line after its file's name.
void print(const Loaded &loaded, bool isOnlyFile) {
  const auto before = [&](const Document &document) {
    return isOnlyFile && !loaded.isAsInstalled() ? "" : onOneLine(document.name()) + ":";
  };
  const Document &main = loaded.main();
  print(main, main.root(), before(main));
  if (!loaded.isAsInstalled())
    return;
  for (const Member &member : main.members(main.root())) {
    if (member.collection == nullptr)
      continue;
    for (const Loaded::Item &item : loaded.items(member)) {
      if (item.document != &main)
        print(*item.document, item.record, before(*item.document));
    }
  }
}

int dump(const FileOptions &options, const Output &output) {
  return forEachFile(options, [&](const std::string &file, bool isOnly) {
    const Loaded loaded(file, options);
    if (!output.quiet)
      print(loaded, isOnly);
    return kYes;
  });
}

} // namespace

void addDumpCommand(CLI::App &app, Run &run) {
  Command command(app, run, "dump", "Print every member as a line, ADDRESS = TEXT, in the order of the file");
  const auto files = addFiles(command, FileUse::kReadMany);
  const auto output = addOutput(command, {.json = false, .tsv = false});
  command.examples(
      {"kestrune-data dump Vorlan.xml | grep ROMend", "git config diff.kestrune.textconv 'kestrune-data dump'"});
  command.runs([files, output] { return dump(*files, *output); });
}
