#include "tools/files.h"

#include "kestrune/platform/drives.h"
#include "tools/command_line.h"
#include "tools/messages.h"
#include "tools/table.h"

#include <algorithm>
#include <filesystem>
#include <iostream>

namespace {

/// Makes NAME=VALUE a macro that names may use, and returns its name.
std::string defineMacro(const std::string &definition) {
  const std::size_t sign = definition.find('=');
  if (sign == 0 || sign == std::string::npos)
    throw WrongUsage("-D: '" + definition + "' is not NAME=VALUE");
  std::string name = definition.substr(0, sign);
  if (name.front() != '$')
    name = "$" + name + "$";
  CMacroString().AddMacro(name.c_str(), definition.substr(sign + 1).c_str());
  return name;
}

/// Loads all of it, as programs do.
long loadWhole(CXMLTopLevelFolder &document, const CString &name) {
  if (auto *const chipData = dynamic_cast<CVorlanTyp4 *>(&document))
    return chipData->LoadFromFile(name);
  if (auto *const transceivers = dynamic_cast<CStdXcvr3 *>(&document))
    return transceivers->LoadFromFile(name);
  return document.LoadFromFile(name, nullptr);
}

bool equalMembers(CXMLFolder &a, CXMLFolder &b) {
  std::vector<std::pair<CXMLFolder *, CXMLFolder *>> open{{&a, &b}};
  while (!open.empty()) {
    const auto [x, y] = open.back();
    open.pop_back();
    const auto left = kestrune::MembersOf(*x);
    const auto right = kestrune::MembersOf(*y);
    for (std::size_t i = 0; i < std::min(left.size(), right.size()); ++i) {
      if (left[i].folder == nullptr && left[i].value->Compare(*right[i].value) != 0)
        return false;
      if (left[i].folder != nullptr)
        open.emplace_back(left[i].folder, right[i].folder);
      if (left[i].collection == nullptr)
        continue;
      if (left[i].collection->Count() != right[i].collection->Count())
        return false;
      for (int item = 0; item < left[i].collection->Count(); ++item)
        open.emplace_back((*left[i].collection)[item], (*right[i].collection)[item]);
    }
  }
  return true;
}

/// Reads a file, of which everything has to be loaded unless the options say otherwise. Throws CouldNotWork.
std::unique_ptr<Document> openPart(const std::string &file, const std::string &inputName, const FileOptions &options) {
  auto document = std::make_unique<Document>(readSource(file, inputName));
  if (!document->failure().empty() && (!options.evenInPart || document->result() != KRX_E_DUPLICATE_KEY))
    throw CouldNotWork(document->failure());
  return document;
}

} // namespace

std::vector<CString> filesOf(const Kind &kind, const CString &name) {
  if (kind.root == std::string_view("VorlanTyp"))
    return kestrune::FilesOfChipData(name);
  if (kind.root == std::string_view("StdXcvr"))
    return kestrune::FilesOfTransceivers(name);
  CFilename path;
  CFilename(name).GetAbsolute(path, nullptr);
  return {path};
}

std::shared_ptr<std::vector<std::string>> addMacros(Command &command) {
  const auto definitions = std::make_shared<std::vector<std::string>>();
  auto names = std::make_shared<std::vector<std::string>>();
  command.option("-D", *definitions, "Define a macro that names may use")
      .called("NAME=VALUE")
      .each([definitions, names](const std::string &definition) { names->push_back(defineMacro(definition)); });
  return names;
}

std::shared_ptr<FileOptions> addFiles(Command &command, FileUse use) {
  auto options = std::make_shared<FileOptions>();
  if (use == FileUse::kReadMany) {
    command.option("FILE", options->files, "Files; - is the standard input, a folder stands for its data files")
        .required();
  } else {
    options->files.resize(1);
    command.option("FILE", options->files.front(), "File; - is the standard input").required();
  }
  command.option("--name", options->inputName, "What messages call the standard input").called("NAME");
  if (use != FileUse::kWrite)
    command.flag("--as-installed", options->asInstalled,
                 "Read what programs get: with a replacement, add-ons and the user's file");
  addMacros(command);
  return options;
}

Loaded::Loaded(const std::string &file, const FileOptions &options) {
  const std::string inputName = file == "-" ? options.inputName : "";
  const Kind *kind = kindOfMacro(file);
  if (kind == nullptr && !options.asInstalled) {
    m_parts.push_back(openPart(file, inputName, options));
    return;
  }
  CString name(file.c_str());
  if (kind == nullptr) {
    m_parts.push_back(openPart(file, inputName, options));
    kind = main().kind();
    if (main().path().empty())
      throw CouldNotWork(main().name() + ": the standard input has no folder with other files");
    name = std::filesystem::absolute(main().path()).c_str();
    m_parts.clear();
  }
  for (const CString &path : filesOf(*kind, name)) {
    std::string hostPath;
    if (path.IsEmpty() || !kestrune::platform::ToHostPath(path, hostPath))
      throw CouldNotWork(file + ": there is no file behind this name: '" + std::string(path.View()) + "'");
    try {
      m_parts.push_back(openPart(hostPath, {}, options));
    } catch (const CouldNotWork &reason) {
      throw CouldNotWork(file == hostPath ? reason.what() : file + ": " + reason.what());
    }
  }
  m_merged = kind->make(kind->newest());
  loadWhole(*m_merged, name);
}

Loaded::Loaded(Loaded &&) noexcept = default;
Loaded &Loaded::operator=(Loaded &&) noexcept = default;
Loaded::~Loaded() = default;

void Loaded::match(const Member &collection, std::vector<Item> *taken, std::vector<Item> *dropped) const {
  CXMLCollectionFolder *merged = nullptr;
  if (m_merged != nullptr) {
    for (const kestrune::MemberView &member : kestrune::MembersOf(*m_merged)) {
      if (member.collection != nullptr && member.value->GetTag().View() == collection.shape->tag)
        merged = member.collection;
    }
  }
  // What programs get is the items of the files in their order, but for those that were left out.
  int next = 0;
  for (const std::unique_ptr<Document> &part : m_parts) {
    const Member list = part->member(part->root(), collection.shape->tag);
    for (Record &item : part->items(part->root(), list)) {
      const bool isTaken =
          merged == nullptr ||
          (next < merged->Count() && (part == m_parts.front() || equalMembers(*(*merged)[next], *item.folder)));
      next += isTaken ? 1 : 0;
      if (std::vector<Item> *const target = isTaken ? taken : dropped)
        target->push_back({part.get(), std::move(item)});
    }
  }
}

std::vector<Loaded::Item> Loaded::items(const Member &collection) const {
  std::vector<Item> items;
  match(collection, &items, nullptr);
  return items;
}

std::vector<Loaded::Item> Loaded::dropped(const Member &collection) const {
  std::vector<Item> items;
  match(collection, nullptr, &items);
  return items;
}

int forEachFile(const FileOptions &options, const std::function<int(const std::string &file, bool isOnly)> &work) {
  int status = kYes;
  const auto guarded = [&status](const auto &step) {
    try {
      step();
    } catch (const CouldNotWork &reason) {
      complain(reason.what());
      status = kCouldNotWork;
    }
  };
  std::vector<std::string> files;
  for (const std::string &named : options.files) {
    guarded([&] {
      const std::vector<std::string> some = withoutFolders({named});
      files.insert(files.end(), some.begin(), some.end());
    });
  }
  for (const std::string &file : files) {
    guarded([&] { status = std::max(status, work(file, files.size() == 1)); });
    std::cout.flush();
  }
  return status;
}

std::unique_ptr<Document> Loaded::merged() const {
  std::string text;
  if (kestrune::SaveToText(*m_merged, text) < 0)
    throw CouldNotWork(main().name() + ": what programs get cannot be written as a file");
  return std::make_unique<Document>(Source{main().name(), {}, std::move(text)});
}

std::string partNames(const Loaded &loaded) {
  std::string names;
  for (const std::unique_ptr<Document> &part : loaded.parts())
    names += (names.empty() ? "" : ", ") + part->name();
  return names;
}

std::string filesLine(const std::vector<std::string> &files) {
  std::string names;
  for (const std::string &file : files)
    names += (names.empty() ? "" : ", ") + shown(file);
  return "Files: " + names + "\n";
}

std::string filesLine(const Loaded &loaded) {
  if (!loaded.isAsInstalled())
    return {};
  std::vector<std::string> files;
  files.reserve(loaded.parts().size());
  for (const std::unique_ptr<Document> &part : loaded.parts())
    files.push_back(part->name());
  return filesLine(files);
}
