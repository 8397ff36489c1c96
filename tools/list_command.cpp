#include "tools/commands.h"
#include "tools/document.h"
#include "tools/table.h"

#include <algorithm>
#include <iostream>
#include <memory>

namespace {

/// What a table shows of the items of a collection: the members with these tags. A list is shown as its number of
/// items.
struct Columns {
  const char *itemTag;
  std::vector<const char *> tags;
};

const std::vector<Columns> &allColumns() {
  static const std::vector<Columns> columns = {
      {"VorlanModel",
       {"Name", "Key", "ModelNum", "Family", "minFWrelease", "maxFWrelease", "ROMend", "RAMend", "ClockingScheme",
        "NVMemoryTypes"}},
      {"LinkCompatibleModel", {"Name", "LinkCompatibleList"}},
      {"ClockingScheme", {"Id", "Description", "Algorithm", "Clocks"}},
      {"Transceiver", {"Name", "std_id", "ChannelTypeNumber", "std_xcvr_id", "support_level", "SchedulerMode"}},
      {"ManufacturerID", {"Number", "Name"}},
      {"DeviceClass", {"Number", "Name", "Category", "Profile", "Obsolete"}},
      {"DeviceSubClass", {"Number", "Name"}},
      {"ChannelType", {"Number", "Name"}},
  };
  return columns;
}

void printItems(CXMLCollectionFolder &list) {
  std::cout << '\n' << list.GetTag() << " (" << list.Count() << ")\n";
  if (list.Count() == 0)
    return;
  for (const Columns &columns : allColumns()) {
    if (kestrune::ItemClassOf(list).tag.Compare(columns.itemTag) != 0)
      continue;
    Table table({columns.tags.begin(), columns.tags.end()});
    for (int i = 0; i < list.Count(); ++i) {
      std::vector<std::string> row;
      for (const char *tag : columns.tags)
        row.push_back(shown(memberText(*list[i], tag), 60));
      table.add(std::move(row));
    }
    table.print(std::cout);
  }
}

void printDocument(const std::string &file, const OpenedDocument &opened) {
  CXMLContents &contents = opened.document->Contents;
  std::cout << file << ": " << opened.kind << ", " << shown(contents.FileDescription.View()) << '\n';
  for (const kestrune::MemberView &member : kestrune::MembersOf(*opened.document)) {
    if (member.collection != nullptr) {
      printItems(*member.collection);
    } else if (member.folder != nullptr && member.folder != &contents) {
      std::cout << '\n' << member.folder->GetTag() << '\n';
      for (const kestrune::MemberView &inner : kestrune::MembersOf(*member.folder))
        std::cout << "  " << inner.value->GetTag() << ": " << shown(inner.value->View()) << '\n';
    }
  }
}

using Files = std::shared_ptr<std::vector<std::string>>;

Files addFiles(CLI::App &command) {
  auto files = std::make_shared<std::vector<std::string>>();
  command.add_option("FILE", *files, "Files to read")->required();
  return files;
}

int list(const std::vector<std::string> &files) {
  int status = 0;
  bool first = true;
  for (const std::string &file : files) {
    const OpenedDocument opened = openDocument(file);
    if (opened.failed()) {
      status = couldNotWork(file, opened);
      continue;
    }
    std::cout << (first ? "" : "\n");
    printDocument(file, opened);
    first = false;
  }
  return status;
}

int check(const std::vector<std::string> &files) {
  int status = 0;
  for (const std::string &file : files) {
    const OpenedDocument opened = openDocument(file);
    if (opened.unreadable) {
      status = couldNotWork(file, opened);
    } else if (!opened.findings.empty()) {
      for (const std::string &text : failureTexts(file, opened))
        std::cout << shown(text) << '\n';
      status = std::max(status, 1);
    }
  }
  return status;
}

} // namespace

void addListCommand(CLI::App &app, Run &run) {
  CLI::App *const command = app.add_subcommand("list", "Print what kind of file each is and what it holds");
  const Files files = addFiles(*command);
  command->callback([&run, files] { run = [files] { return list(*files); }; });
}

void addCheckCommand(CLI::App &app, Run &run) {
  CLI::App *const command =
      app.add_subcommand("check", "Print what is wrong with each file, and nothing for a sound one");
  const Files files = addFiles(*command);
  command->callback([&run, files] { run = [files] { return check(*files); }; });
}
