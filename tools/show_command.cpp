#include "tools/commands.h"
#include "tools/document.h"
#include "tools/table.h"

#include <iostream>
#include <memory>

namespace {

struct Options {
  std::string file;
  std::string name;
};

// The depth is that of the classes, not of the file.
void printFolder(CXMLFolder &folder, const std::string &indent) {
  const std::vector<kestrune::MemberView> members = kestrune::MembersOf(folder);
  std::size_t widest = 0;
  for (const kestrune::MemberView &member : members)
    widest = std::max(widest, width(member.value->GetTag().View()));
  for (const kestrune::MemberView &member : members) {
    const CString tag = member.value->GetTag();
    if (member.folder == nullptr) {
      std::cout << indent << tag << std::string(widest - width(tag.View()) + 2, ' ') << shown(member.value->View())
                << '\n';
      continue;
    }
    std::cout << indent << tag << '\n';
    printFolder(*member.folder, indent + "  ");
    if (CXMLCollectionFolder *const list = member.collection) {
      for (int i = 0; i < list->Count(); ++i) {
        std::cout << indent << "  " << (*list)[i]->GetTag() << ' ' << i + 1 << '\n';
        printFolder(*(*list)[i], indent + "    ");
      }
    }
  }
}

/// Whether `name` is the key of an item, or its name, which chip models have besides a key.
bool isNamed(CXMLFolder &item, const CString &name) {
  return item.Key().CompareNoCase(name) == 0 || name.CompareNoCase(memberText(item, "Name").c_str()) == 0;
}

int show(const Options &options) {
  const OpenedDocument opened = openDocument(options.file);
  if (opened.failed())
    return couldNotWork(options.file, opened);
  const CString name(options.name.c_str());
  bool found = false;
  for (const kestrune::MemberView &member : kestrune::MembersOf(*opened.document)) {
    CXMLCollectionFolder *const list = member.collection;
    for (int i = 0; list != nullptr && i < list->Count(); ++i) {
      if (!isNamed(*(*list)[i], name))
        continue;
      std::cout << (found ? "\n" : "") << (*list)[i]->GetTag() << '\n';
      printFolder(*(*list)[i], "  ");
      found = true;
    }
  }
  if (!found)
    std::cerr << "kestrune-data: " << shown(options.file + ": no record is called '" + options.name + "'") << '\n';
  return found ? 0 : 1;
}

} // namespace

void addShowCommand(CLI::App &app, Run &run) {
  CLI::App *const command = app.add_subcommand("show", "Print all members of the records with a name or key");
  const auto options = std::make_shared<Options>();
  command->add_option("FILE", options->file, "File to read")->required();
  command->add_option("NAME", options->name, "Name or key, in any case")->required();
  command->callback([&run, options] { run = [options] { return show(*options); }; });
}
