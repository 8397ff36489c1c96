#include "kestrune/xml/replacing_save.h"
#include "tools/address.h"
#include "tools/commands.h"
#include "tools/messages.h"
#include "tools/report/records.h"
#include "tools/report/report.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sys/stat.h>

namespace {

struct Options {
  std::shared_ptr<FileOptions> files;
  std::string out;
  std::vector<std::string> only;
  std::vector<std::string> compare;
  std::string picture;
  std::string against;
};

/// A file that stands where the report shall go has to be an older report or picture: a wrong word on the command line
/// must not cost a data file.
void checkTarget(const std::string &path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size == 0)
    return;
  std::ifstream file(path);
  std::string begin(15, '\0');
  file.read(begin.data(), static_cast<std::streamsize>(begin.size()));
  if (!begin.starts_with("<!DOCTYPE html>") && !begin.starts_with("<svg"))
    throw CouldNotWork(path + ": this file is no report, and is left as it is");
}

void write(const std::string &path, const std::string &text) {
  if (path.empty() || path == "-") {
    std::cout << text;
    return;
  }
  std::string reason;
  if (kestrune::ReplaceFile(path.c_str(), text, &reason) < 0)
    throw CouldNotWork(path + ": " + reason);
}

bool isSameFile(const std::string &a, const std::string &b) {
  std::error_code ignored;
  return !a.empty() && !b.empty() && std::filesystem::equivalent(a, b, ignored);
}

/// Whether a file was read as a part of another one already, such as an add-on in a folder.
bool isPartOfAnother(const std::vector<ReportFile> &files, const ReportFile &file) {
  if (file.loaded == nullptr)
    return false;
  const std::string &path = file.loaded->main().path();
  for (const ReportFile &other : files) {
    if (&other == &file || other.loaded == nullptr)
      continue;
    const auto &parts = other.loaded->parts();
    const bool isFirst = isSameFile(parts.front()->path(), path);
    if ((isFirst && &other < &file) || (!isFirst && std::any_of(parts.begin(), parts.end(), [&](const auto &part) {
          return isSameFile(part->path(), path);
        })))
      return true;
  }
  return false;
}

/// Reads the files. Returns whether all of them could be read.
bool readFiles(const Options &options, Report &report) {
  bool areAllRead = true;
  for (const std::string &name : withoutFolders(options.files->files)) {
    ReportFile file;
    file.name = name;
    try {
      file.loaded = std::make_unique<Loaded>(name, *options.files);
    } catch (const CouldNotWork &reason) {
      complain(reason.what());
      file.failure = reason.what();
      areAllRead = false;
    }
    report.files.push_back(std::move(file));
  }
  std::vector<bool> isPart;
  for (const ReportFile &file : report.files)
    isPart.push_back(isPartOfAnother(report.files, file));
  std::size_t place = 0;
  std::erase_if(report.files, [&](const ReportFile &) { return isPart[place++]; });
  // Chip data first, then in the order of the kinds.
  std::stable_sort(report.files.begin(), report.files.end(), [](const ReportFile &a, const ReportFile &b) {
    const auto rank = [](const ReportFile &file) {
      return file.loaded != nullptr ? file.loaded->main().kind() : allKinds().data() + allKinds().size();
    };
    return rank(a) < rank(b);
  });
  for (std::size_t i = 0; i < report.files.size(); ++i)
    report.files[i].id = "f" + std::to_string(i + 1);
  return areAllRead;
}

/// The member of a file that is a collection of such records; its shape is null if the file has none.
Member collectionOf(const Document &document, std::string_view itemTag) {
  for (const Member &member : document.members(document.root())) {
    if (member.collection != nullptr && member.shape->folder->tag == itemTag)
      return member;
  }
  return {};
}

/// What records of one file have to know of another.
void lookAround(Report &report) {
  for (const ReportFile &file : report.files) {
    if (file.loaded == nullptr)
      continue;
    const Document &document = file.loaded->main();
    if (const Member types = collectionOf(document, "ChannelType"); types.shape != nullptr) {
      for (const Record &type : document.items(document.root(), types)) {
        const auto number = numberIn(*type.shape, document.member(type, "Number"));
        if (number)
          report.channelTypes.emplace(static_cast<long long>(*number), nameOf(document, type));
      }
    }
    if (const Member transceivers = collectionOf(document, "Transceiver"); transceivers.shape != nullptr) {
      std::size_t place = 0;
      for (const Loaded::Item &item : file.loaded->items(transceivers)) {
        const std::string id = anchorOf(file, transceivers.shape->tag, std::to_string(place++));
        if (report.wants(*item.document, item.record))
          report.anchors.emplace(nameOf(*item.document, item.record), id);
      }
    }
  }
}

/// The first model of that name in any of the files. Throws NotFound.
std::pair<const Document *, Record> modelNamed(const Report &report, const std::string &name) {
  std::vector<std::string> candidates;
  for (const ReportFile &file : report.files) {
    const Member models = file.loaded != nullptr ? collectionOf(file.loaded->main(), "VorlanModel") : Member();
    if (models.shape == nullptr)
      continue;
    for (const Loaded::Item &item : file.loaded->items(models)) {
      if (isCalled(*item.document, item.record, name))
        return {item.document, item.record};
      candidates.push_back(nameOf(*item.document, item.record));
    }
  }
  throw NotFound(notFound("the chip data", name, candidates));
}

/// Every name of --only means something.
void checkNames(const Report &report) {
  for (const std::string &name : report.only) {
    bool isFound = false;
    std::vector<std::string> candidates;
    for (const ReportFile &file : report.files) {
      if (file.loaded == nullptr)
        continue;
      const Document &document = file.loaded->main();
      for (const Member &member : document.members(document.root())) {
        if (member.collection == nullptr)
          continue;
        for (const Loaded::Item &item : file.loaded->items(member)) {
          isFound = isFound || isCalled(*item.document, item.record, name);
          candidates.push_back(nameOf(*item.document, item.record));
        }
      }
    }
    if (!isFound)
      throw NotFound(notFound("the report", name, candidates));
  }
  for (const std::string &name : report.compare)
    modelNamed(report, name);
}

bool hasFileCalled(const Report &report, const std::string &name) {
  return std::any_of(report.files.begin(), report.files.end(), [&](const ReportFile &file) {
    if (file.loaded == nullptr)
      return std::filesystem::path(hostPath(file.name)).filename() == name;
    const auto &parts = file.loaded->parts();
    return std::any_of(parts.begin(), parts.end(), [&](const auto &part) { return fileNameOf(*part) == name; });
  });
}

/// Tells what changed since the file of the same name in a folder, or that there is none. Returns whether there is one.
bool compareWithin(const std::filesystem::path &folder, const Document &now, Remarks &remarks) {
  const std::filesystem::path before = folder / fileNameOf(now);
  std::unique_ptr<Document> document;
  std::error_code ignored;
  if (std::filesystem::exists(before, ignored))
    document = openDocument(before.string());
  if (document != nullptr)
    checkSameKind(*document, now);
  remarks.compare(now, document.get());
  return document != nullptr;
}

/// Tells what changed since a file, or since the files of a folder that are called as those of the report.
void compareWith(const std::string &against, const FileOptions &files, Report &report) {
  const std::filesystem::path path = hostPath(against);
  std::error_code ignored;
  bool isCompared = false;
  if (std::filesystem::is_directory(path, ignored)) {
    for (const ReportFile &file : report.files) {
      if (file.loaded == nullptr)
        continue;
      for (const std::unique_ptr<Document> &part : file.loaded->parts()) {
        isCompared = compareWithin(path, *part, *report.remarks) || isCompared;
      }
    }
    if (!isCompared)
      throw CouldNotWork(against + ": it has no file of the report");
    // Where a whole folder was given, what only the older one has is gone.
    const bool isWhole = std::any_of(files.files.begin(), files.files.end(), [](const std::string &name) {
      return std::filesystem::is_directory(hostPath(name));
    });
    for (const std::string &name : isWhole ? withoutFolders({against}) : std::vector<std::string>()) {
      if (!hasFileCalled(report, std::filesystem::path(hostPath(name)).filename()))
        report.gone.push_back(name);
    }
    return;
  }
  if (against == "-" && std::count(files.files.begin(), files.files.end(), "-") > 0)
    throw CouldNotWork("the standard input can only be one of the two files");
  const std::unique_ptr<Document> document = openDocument(against, files.inputName);
  // One of several of the kind is the one of that name.
  const Loaded *now = nullptr;
  for (const ReportFile &file : report.files) {
    if (file.loaded == nullptr || file.loaded->main().kind() != document->kind())
      continue;
    if (now == nullptr || fileNameOf(file.loaded->main()) == fileNameOf(*document))
      now = file.loaded.get();
  }
  if (now == nullptr)
    throw CouldNotWork(against + ": this is a file of " + document->kind()->name + ", and no other one is");
  report.remarks->compare(now->main(), document.get());
  // The files that programs read with it have their older ones beside that.
  for (const std::unique_ptr<Document> &part : now->parts()) {
    if (part.get() != &now->main() && against != "-")
      compareWithin(path.parent_path(), *part, *report.remarks);
  }
}

int report(const Options &options) {
  Report report;
  report.only = options.only;
  report.compare = options.compare;
  if (!options.out.empty() && options.out != "-")
    checkTarget(options.out);
  const bool areAllRead = readFiles(options, report);
  try {
    if (!options.picture.empty()) {
      const auto [document, model] = modelNamed(report, options.picture);
      write(options.out, memoryMapFile(*document, model));
      return areAllRead ? kYes : kCouldNotWork;
    }
    checkNames(report);
  } catch (const NotFound &reason) {
    complain(reason.what());
    return kCouldNotWork;
  }
  lookAround(report);
  std::vector<const Document *> documents;
  for (const ReportFile &file : report.files) {
    if (file.loaded != nullptr) {
      for (const std::unique_ptr<Document> &part : file.loaded->parts())
        documents.push_back(part.get());
    }
  }
  report.remarks = std::make_unique<Remarks>(documents);
  if (!options.against.empty())
    compareWith(options.against, *options.files, report);
  write(options.out, reportPage(report));
  return areAllRead ? kYes : kCouldNotWork;
}

} // namespace

void addReportCommand(CLI::App &app, Run &run) {
  Command command(
      app, run, "report",
      "Make a page for the browser of what the files say: memory maps, clocks, links, transceivers, findings");
  const auto options = std::make_shared<Options>();
  options->files = addFiles(command, FileUse::kReadMany);
  options->files->evenInPart = true;
  command.option("-o,--output", options->out, "Write the page to this file instead of the standard output")
      .called("OUT.html");
  command.option("--only", options->only, "Show these records alone, by name, key or number; * and ? match")
      .separated()
      .called("NAME,...");
  command.option("--compare-models", options->compare, "Show the memory maps of these models side by side")
      .separated()
      .called("NAME,...");
  command.option("--against", options->against, "Mark what changed since this file, or since the files of this folder")
      .called("OLD");
  command.option("--picture", options->picture, "Instead of the page, make the memory map of a model as an SVG file")
      .called("MODEL");
  command.examples({"kestrune-data report --as-installed /opt/kestrune/Types -o report.html",
                    "kestrune-data report Vorlan.xml --against old/Vorlan.xml -o changes.html"});
  command.runs([options] { return report(*options); });
}
