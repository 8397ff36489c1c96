#include "tools/address.h"
#include "tools/report/assets.h"
#include "tools/report/memory_map.h"
#include "tools/report/pack.h"
#include "tools/report/records.h"
#include "tools/report/report.h"
#include "tools/report/sections.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace {

/// A hash as a content security policy takes it.
std::string hashSource(std::string_view hexadecimal) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hexadecimal.size(); i += 2)
    bytes += static_cast<char>(std::stoi(std::string(hexadecimal.substr(i, 2)), nullptr, 16));
  return "'sha256-" + base64(bytes) + "'";
}

/// Whatever a file might smuggle in, a browser runs and loads nothing but what this program wrote.
std::string securityPolicy() {
  return "default-src 'none'; base-uri 'none'; form-action 'none'; img-src data:; style-src " + hashSource(kStyleHash) +
         "; script-src " + hashSource(kScriptHash);
}

void writeHead(Html &html, const std::string &title) {
  const auto head = html.in("head");
  html.empty("meta", {{"charset", "utf-8"}}).line();
  html.empty("meta", {{"http-equiv", "Content-Security-Policy"}, {"content", securityPolicy()}}).line();
  html.empty("meta", {{"name", "viewport"}, {"content", "width=device-width, initial-scale=1"}});
  html.empty("meta", {{"name", "color-scheme"}, {"content", "light dark"}});
  html.empty("meta", {{"name", "generator"}, {"content", "kestrune-data " KESTRUNE_VERSION}}).line();
  html.empty("link", {{"rel", "icon"}, {"href", "data:,"}}).line();
  html.element("title", title).line();
  html.own("<style>").own(kStyle).own("</style>\n<script>").own(kScript).own("</script>\n");
}

void writeCollection(Html &html, const Report &report, const ReportFile &file, const Member &collection) {
  using Writer = void (*)(Html &, const Report &, const ReportFile &, const Member &);
  static const std::map<std::string_view, Writer> kWriters = {{"VorlanModel", writeModels},
                                                              {"ClockingScheme", writeSchemes},
                                                              {"LinkCompatibleModel", writeLinks},
                                                              {"Transceiver", writeTransceivers}};
  const auto writer = kWriters.find(collection.shape->folder->tag);
  const auto block = html.in("div", {{"class", "collection"}});
  (writer != kWriters.end() ? writer->second : writeTable)(html, report, file, collection);
  writeDropped(html, report, file, collection);
  for (const std::unique_ptr<Document> &document : file.loaded->parts()) {
    const std::vector<std::string> &removed = report.remarks->removed(*document, collection.shape->tag);
    if (removed.empty())
      continue;
    html.element("h4", "Removed since " + readable(report.remarks->since(*document)->name, 300));
    const auto list = html.in("ul", {{"class", "names"}});
    for (const std::string &name : removed) {
      const auto entry = html.in("li");
      html.element("del", readable(name, 200));
    }
  }
}

/// "Chip data", or "Chip data: Vorlan.xml" where there are several files of that kind.
std::string titleOf(const Report &report, const ReportFile &file) {
  const Document &document = file.loaded->main();
  const auto isOfKind = [&](const ReportFile &other) {
    return other.loaded != nullptr && other.loaded->main().kind() == document.kind();
  };
  const std::string kind = capitalised(document.kind()->name);
  return std::count_if(report.files.begin(), report.files.end(), isOfKind) > 1
             ? kind + ": " + readable(fileNameOf(document), 100)
             : kind;
}

/// Whether the report wants anything of a collection; of schemes and links also for the models that it wants.
bool isShown(const Report &report, const ReportFile &file, const Member &collection) {
  if (report.only.empty() || !itemsOf(report, file, collection).empty())
    return true;
  const std::string &tag = collection.shape->folder->tag;
  const Document &document = file.loaded->main();
  return (tag == "ClockingScheme" || tag == "LinkCompatibleModel") &&
         !itemsOf(report, file, document.member(document.root(), "VorlanModels")).empty();
}

/// The collections of a file of which there is something to show.
std::vector<Member> shownCollections(const Report &report, const ReportFile &file) {
  std::vector<Member> shown;
  for (const Member &member : file.loaded->main().members(file.loaded->main().root())) {
    if (member.collection != nullptr && isShown(report, file, member))
      shown.push_back(member);
  }
  return shown;
}

bool isShown(const Report &report, const ReportFile &file) {
  return report.only.empty() || file.loaded == nullptr || !shownCollections(report, file).empty();
}

void writeFile(Html &html, const Report &report, const ReportFile &file) {
  const auto section = html.in("section", {{"id", file.id}});
  if (file.loaded == nullptr) {
    html.element("h2", readable(file.name, 300));
    html.element("p", {{"class", "wrong"}}, "It could not be read: " + readable(file.failure));
    return;
  }
  const Loaded &loaded = *file.loaded;
  const Document &document = loaded.main();
  html.element("h2", titleOf(report, file));
  {
    const auto line = html.in("p", {{"class", "files"}});
    html.text(readable(partNames(loaded)));
    html.text(", format version " + std::to_string(document.versionNeeded()));
    html.text(loaded.isAsInstalled() ? ", as programs get it" : "");
  }
  for (const std::unique_ptr<Document> &part : loaded.parts()) {
    const auto &findings = report.remarks->findings(*part);
    if (findings.empty())
      continue;
    const auto block = html.in("details", {{"class", "all-findings"}});
    html.element("summary", counted(findings.size(), "finding", "findings") + " in " + readable(part->name(), 300));
    writeFindings(html, findings, fileNameOf(*part));
  }
  for (const Member &member : document.members(document.root())) {
    if (member.collection != nullptr) {
      if (isShown(report, file, member))
        writeCollection(html, report, file, member);
    } else if (member.folder != nullptr) {
      const Record record = document.folderOf(document.root(), member);
      const Item item{&document, record, document.members(record), {}};
      const auto details = html.in("details", {{"class", "header"}});
      {
        const auto summary = html.in("summary");
        html.text(member.shape->tag);
        if (!report.remarks->changes(document, record.address).changes.empty())
          html.text(" ").element("span", {{"class", "badge change"}}, "changed");
      }
      writeRemarks(html, report, item);
      writeRecord(html, report, item);
    }
  }
}

/// Whether the page tells what changed.
bool isCompared(const Report &report) {
  return std::any_of(report.files.begin(), report.files.end(), [&](const ReportFile &file) {
    return file.loaded != nullptr &&
           std::any_of(file.loaded->parts().begin(), file.loaded->parts().end(),
                       [&](const auto &part) { return report.remarks->since(*part) != nullptr; });
  });
}

void writeNavigation(Html &html, const Report &report) {
  const auto navigation = html.in("nav", {{"aria-label", "Contents"}});
  const auto list = html.in("ul");
  if (isCompared(report)) {
    const auto entry = html.in("li");
    html.element("a", {{"href", "#changes"}}, "What changed");
  }
  for (const ReportFile &file : report.files) {
    if (!isShown(report, file))
      continue;
    const auto entry = html.in("li");
    html.element("a", {{"href", "#" + file.id}},
                 file.loaded != nullptr ? titleOf(report, file) : readable(file.name, 100));
    if (file.loaded == nullptr)
      continue;
    const auto inner = html.in("ul");
    for (const Member &member : shownCollections(report, file)) {
      const auto part = html.in("li");
      html.element("a", {{"href", "#" + anchorOf(file, member.shape->tag, "")}}, member.shape->tag);
    }
  }
}

/// How much changed since the other files, as diff counts it.
void writeSince(Html &html, const Report &report) {
  if (!isCompared(report))
    return;
  html.element("h2", {{"id", "changes"}}, "What changed");
  for (const ReportFile &file : report.files) {
    if (file.loaded == nullptr)
      continue;
    for (const std::unique_ptr<Document> &part : file.loaded->parts()) {
      const Remarks::Since *const since = report.remarks->since(*part);
      if (since == nullptr)
        continue;
      const std::string name = readable(part->name(), 300);
      if (since->name.empty()) {
        html.element("p", name + " is new: there is no older file of that name");
        continue;
      }
      html.element("p", name + " since " + readable(since->name, 300) + ": " + countsText(since->comparison.total()));
      const auto list = html.in("ul", {{"class", "since"}});
      for (const auto &[tag, counts] : since->comparison.sections)
        html.element("li", tag + ": " + countsText(counts));
    }
  }
  for (const std::string &name : report.gone)
    html.element("p", readable(name, 300) + " is gone: there is no file of that name any more");
}

/// Each finding that the page names, once.
void writeExplanations(Html &html, const Report &report) {
  std::map<int, const Finding *> findings;
  for (const ReportFile &file : report.files) {
    if (file.loaded == nullptr)
      continue;
    for (const std::unique_ptr<Document> &part : file.loaded->parts()) {
      for (const Remarks::Remark &remark : report.remarks->findings(*part))
        findings.emplace(remark.finding->number, remark.finding);
    }
  }
  if (findings.empty())
    return;
  const auto section = html.in("section", {{"id", "findings"}});
  html.element("h2", "What the findings mean");
  for (const auto &[number, finding] : findings) {
    const auto block = html.in("div", {{"class", "explanation"}, {"id", findingName(number)}});
    html.element("h3", findingName(number) + ": " + finding->title);
    html.element("p", finding->library).element("p", finding->result).element("p", finding->mend);
    html.element("h4", "Wrong").element("pre", finding->wrong).element("h4", "Right").element("pre", finding->right);
  }
}

} // namespace

bool Report::wants(const Document &document, const Record &record) const {
  return only.empty() || std::any_of(only.begin(), only.end(),
                                     [&](const std::string &name) { return isCalled(document, record, name); });
}

std::string anchorOf(const ReportFile &file, std::string_view collection, std::string_view part) {
  return file.id + "-" + std::string(collection) + (part.empty() ? "" : "-") + std::string(part);
}

std::string fileNameOf(const Document &document) { return std::filesystem::path(document.name()).filename(); }

std::string reportPage(const Report &report) {
  Html html;
  html.own("<!DOCTYPE html>\n");
  {
    const auto page = html.in("html", {{"lang", "en"}});
    writeHead(html, "What the data files say");
    const auto body = html.in("body");
    html.element("a", {{"class", "skip"}, {"href", "#main"}}, "To the content");
    {
      const auto header = html.in("header");
      html.element("h1", "What the data files say");
      writeNavigation(html, report);
    }
    const auto main = html.in("main", {{"id", "main"}});
    for (const std::string &line : report.remarks->useless())
      html.element("p", {{"class", "wrong"}}, readable(line));
    writeSince(html, report);
    for (const ReportFile &file : report.files) {
      if (isShown(report, file))
        writeFile(html, report, file);
    }
    writeExplanations(html, report);
  }
  return html.line().take();
}

std::string memoryMapFile(const Document &document, const Record &model) {
  const MemoryMap map = memoryMapOf(model, document.members(model));
  MapScale scale;
  scale.include(map);
  Html html;
  drawMap(html, map, scale, "map-", "Memory map of " + readable(nameOf(document, model), 100), kPictureStyle);
  return html.line().take();
}
