#include "kestrune/platform/drives.h"
#include "tools/address.h"
#include "tools/commands.h"
#include "tools/files.h"
#include "tools/meanings.h"
#include "tools/messages.h"
#include "tools/output.h"
#include "tools/table.h"

#include <algorithm>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <sys/stat.h>

namespace {

constexpr const char *kStandardFile = "$StdVorlanTyp$";

struct Options {
  std::string model;
  std::string other;
  std::string file;
  std::shared_ptr<Output> output;
};

struct Model {
  std::string name;
  std::string key;
  std::optional<int> number;
};

/// Which models can be linked, as programs find it out.
struct Links {
  std::vector<std::string> files;     // that took part
  std::vector<Model> models;          // in the order of the files
  std::map<int, std::set<int>> lists; // what each entry of the table lists
  std::string name;                   // as messages call it
  bool isAsInstalled = false;

  bool hasLink(int from, int to) const {
    const auto list = lists.find(from);
    return from == to || (list != lists.end() && list->second.contains(to));
  }

  std::string nameOf(int number) const {
    const auto found =
        std::find_if(models.begin(), models.end(), [&](const Model &model) { return model.number == number; });
    return found != models.end() ? found->name : std::string();
  }
};

/// A number in exactly the form in which the table is searched.
std::optional<int> exactNumber(std::string_view text) {
  const Number number = readNumber(text, 10, false);
  if (!number.whole || number.beyond || std::to_string(number.value) != text)
    return std::nullopt;
  return static_cast<int>(number.value);
}

void addModel(CVorlanModel &model, Links &links) {
  const Number number = readNumber(model.ModelNum.View(), 0, false);
  links.models.push_back(
      {std::string(model.Name.View()), std::string(model.Key().View()),
       number.whole && number.end > 0 ? std::optional(static_cast<int>(number.value)) : std::nullopt});
}

void addTable(CLinkCompatibleModels &table, Links &links) {
  for (int i = 0; i < table.Count(); ++i) {
    const std::optional<int> from = exactNumber(table[i]->Name.View());
    if (!from || links.lists.contains(*from))
      continue;
    std::set<int> &list = links.lists[*from];
    std::string_view rest = table[i]->LinkCompatibleList.View();
    while (!rest.empty()) {
      const std::size_t end = std::min(rest.find_first_of(";,\n"), rest.size());
      if (const std::optional<int> to = exactNumber(rest.substr(0, end)))
        list.insert(*to);
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }
}

/// The add-ons of a file, and theirs, which is how far the class behind the query goes.
void addAddOns(const std::string &path, std::vector<std::string> &files) {
  const std::size_t point = path.find('.', path.rfind('/') + 1);
  const std::string stem = path.substr(0, point);
  CString extension(point != std::string::npos ? path.substr(point).c_str() : "");
  extension.MakeLower();
  for (int number = 1;; ++number) {
    const std::string name = stem + "-" + std::to_string(number) + std::string(extension.View());
    std::string found;
    struct stat status {};
    if (!kestrune::platform::ToHostPath(name.c_str(), found, &status))
      return;
    files.push_back(found);
    addAddOns(found, files);
  }
}

/// What isLinkCompatible reads: the standard file itself, whatever takes its place elsewhere, with its add-ons.
Links standardLinks() {
  CFilename path;
  CFilename(kStandardFile).GetAbsolute(path, nullptr);
  std::string host;
  if (!kestrune::platform::ToHostPath(path, host))
    throw CouldNotWork(std::string(kStandardFile) + ": there is no file behind this name: '" +
                       std::string(path.View()) + "'");
  try {
    openDocument(host);
  } catch (const CouldNotWork &reason) {
    throw CouldNotWork(std::string(kStandardFile) + ": " + reason.what());
  }
  CVorlanTyp3 document;
  const long result = document.LoadFromFile(kStandardFile);
  Links links;
  links.name = kStandardFile;
  links.isAsInstalled = true;
  links.files.push_back(host);
  addAddOns(host, links.files);
  if (result < 0)
    throw CouldNotWork(std::string(kStandardFile) + ": " + links.files.back() + ": " + kestrune::ResultText(result) +
                       " (" + kestrune::ResultName(result) + ")");
  for (int i = 0; i < document.VorlanModels3.Count(); ++i)
    addModel(*document.VorlanModels3[i], links);
  addTable(document.LinkCompatibleModels3, links);
  return links;
}

Links linksOf(const std::string &file) {
  const Loaded loaded(file, {});
  const Document &main = loaded.main();
  auto *const document = dynamic_cast<CVorlanTyp4 *>(main.folder());
  if (document == nullptr)
    throw CouldNotWork(main.name() + ": is not a chip data file");
  Links links;
  links.name = loaded.isAsInstalled() ? file : main.name();
  links.isAsInstalled = loaded.isAsInstalled();
  for (const std::unique_ptr<Document> &part : loaded.parts())
    links.files.push_back(part->name());
  for (const Loaded::Item &item : loaded.items(main.member(main.root(), "VorlanModels")))
    addModel(dynamic_cast<CVorlanModel &>(*item.record.folder), links);
  addTable(document->LinkCompatibleModels4, links);
  return links;
}

class Linked {
public:
  explicit Linked(const Options &options)
      : m_options(options), m_output(*options.output),
        m_links(options.file.empty() ? standardLinks() : linksOf(options.file)) {}

  int run() const {
    const std::optional<int> model = numberOfModel(m_options.model);
    if (m_options.other.empty())
      return model ? partners(*model) : kNo;
    const std::optional<int> other = numberOfModel(m_options.other);
    return model && other ? question(*model, *other) : kNo;
  }

private:
  /// The number that an argument means: that of a model or of the table, or that of the model of this name or key.
  std::optional<int> numberOfModel(const std::string &text) const {
    const std::optional<long long> number = ::numberOf(text);
    const bool isNumber = number && *number == static_cast<int>(*number);
    const auto isKnown = [&](int wanted) {
      return m_links.lists.contains(wanted) || std::any_of(m_links.models.begin(), m_links.models.end(),
                                                           [&](const Model &model) { return model.number == wanted; });
    };
    if (isNumber && isKnown(static_cast<int>(*number)))
      return static_cast<int>(*number);
    std::vector<std::string> names;
    std::vector<const Model *> found;
    for (const Model &model : m_links.models) {
      names.push_back(model.name);
      const bool isNew =
          std::none_of(found.begin(), found.end(), [&](const Model *one) { return one->number == model.number; });
      if ((sameText(model.name, text) || sameText(model.key, text)) && isNew)
        found.push_back(&model);
    }
    if (found.empty() && isNumber)
      return static_cast<int>(*number);
    if (found.empty()) {
      complain(notFound(m_links.name, text, names));
      return std::nullopt;
    }
    if (found.size() > 1 || !found.front()->number) {
      std::string all;
      for (const Model *const model : found)
        all += (all.empty() ? "" : ", ") + (model->number ? std::to_string(*model->number) : std::string("no number"));
      complain(m_links.name + ": '" + text + "' has " + (found.size() > 1 ? "several numbers: " : "") + all);
      return std::nullopt;
    }
    return found.front()->number;
  }

  std::string called(int number) const {
    const bool isModel = std::any_of(m_links.models.begin(), m_links.models.end(),
                                     [&](const Model &model) { return model.number == number; });
    return std::to_string(number) + " (" + (isModel ? shown(m_links.nameOf(number)) : "no model has this number") + ")";
  }

  void printFiles() const {
    if (m_links.isAsInstalled)
      std::cout << filesLine(m_links.files);
  }

  static const char *direction(bool to, bool from) { return to && from ? "both" : to ? "to" : from ? "from" : "none"; }

  Json jsonHead(int model) const {
    Json files = Json::array();
    for (const std::string &file : m_links.files)
      files.push_back(jsonText(file));
    return {{"files", std::move(files)}, {"model", jsonModel(model)}};
  }

  Json jsonModel(int number) const {
    const std::string name = m_links.nameOf(number);
    return {{"number", std::to_string(number)}, {"name", name.empty() ? Json() : jsonText(name)}};
  }

  void printTsvRow(int model, int other, const char *direction) const {
    printTsv({std::to_string(model), m_links.nameOf(model), std::to_string(other), m_links.nameOf(other), direction});
  }

  int question(int model, int other) const {
    const bool to = m_links.hasLink(model, other);
    const bool from = m_links.hasLink(other, model);
    if (m_output.quiet)
      return to ? kYes : kNo;
    if (m_output.isJson()) {
      Json json = jsonHead(model);
      json["other"] = jsonModel(other);
      json["linked"] = to;
      json["direction"] = direction(to, from);
      printJson(json);
    } else if (m_output.isTsv()) {
      printTsv({"Model", "Name", "Other", "OtherName", "Direction"});
      printTsvRow(model, other, direction(to, from));
    } else {
      printFiles();
      std::cout << "model " << called(model) << (to ? " is" : " is not") << " link compatible with model "
                << called(other);
      if (to != from)
        std::cout << ", but " << other << (from ? " is" : " is not") << " with " << model;
      std::cout << '\n';
    }
    return to ? kYes : kNo;
  }

  int partners(int model) const {
    std::set<int> others;
    for (const auto &[from, list] : m_links.lists) {
      if (from == model)
        others.insert(list.begin(), list.end());
      else if (list.contains(model))
        others.insert(from);
    }
    others.erase(model);
    if (m_output.quiet)
      return others.empty() ? kNo : kYes;
    Json json = jsonHead(model);
    json["partners"] = Json::array();
    if (m_output.isTsv())
      printTsv({"Model", "Name", "Other", "OtherName", "Direction"});
    if (m_output.isText()) {
      printFiles();
      std::cout << "model " << called(model) << (others.empty() ? " has no partners" : ", partners:") << '\n';
    }
    Table table({"Direction", "Model", "Name"});
    for (const int other : others) {
      const char *const way = direction(m_links.hasLink(model, other), m_links.hasLink(other, model));
      Json partner = jsonModel(other);
      partner["direction"] = way;
      json["partners"].push_back(std::move(partner));
      table.add({way, std::to_string(other), shown(m_links.nameOf(other), 60)});
      if (m_output.isTsv())
        printTsvRow(model, other, way);
    }
    if (m_output.isJson())
      printJson(json);
    else if (m_output.isText() && !others.empty())
      table.print(std::cout);
    return others.empty() ? kNo : kYes;
  }

  const Options &m_options;
  const Output &m_output;
  Links m_links;
};

} // namespace

void addLinkedCommand(CLI::App &app, Run &run) {
  Command command(app, run, "linked", "Print whether two chip models are link compatible, or all partners of one");
  const auto options = std::make_shared<Options>();
  command.option("MODEL", options->model, "Number, name or key of a model").required();
  command.option("OTHER", options->other,
                 "The other model; without it, all partners: to those that the model lists, from those that list it");
  command.option("--file", options->file, "Ask this chip data file instead of $StdVorlanTyp$").called("FILE");
  addMacros(command);
  options->output = addOutput(command);
  command.examples({"kestrune-data linked 66 'Vorlan 2208'", "kestrune-data linked 8 --file Vorlan.xml"});
  command.runs([options] { return Linked(*options).run(); });
}
