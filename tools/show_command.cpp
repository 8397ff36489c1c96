#include "tools/address.h"
#include "tools/commands.h"
#include "tools/meanings.h"
#include "tools/messages.h"
#include "tools/output.h"
#include "tools/table.h"
#include "tools/texts.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <set>

namespace {

struct Options {
  std::shared_ptr<FileOptions> files;
  std::shared_ptr<Output> output;
  std::vector<std::string> names;
  std::vector<std::string> members;
};

/// What programs get for the text of a member that they read as a number.
struct AsNumber {
  bool isRead = false; // whether they ask for a number at all
  std::string number;  // empty if they get none
};

AsNumber asNumber(const Record &record, const Member &member) {
  const Meaning *const meaning = findMeaning(record.shape->tag, member.shape->tag);
  if (meaning == nullptr || (meaning->mayBeUnassigned && member.text() == "Unassigned"))
    return {};
  const Judgement judgement = judge(*meaning, member.text());
  const bool isNumber = (meaning->reading >= Reading::kInt && meaning->reading <= Reading::kHexUnsigned) ||
                        meaning->reading == Reading::kDeviceNumber;
  return {isNumber || !judgement.number.empty(), judgement.number};
}

std::string placeText(Position place) { return std::to_string(place.line) + ":" + std::to_string(place.column); }

class Show {
public:
  explicit Show(const Options &options)
      : m_options(options), m_output(*options.output), m_file(options.files->files.front()),
        m_loaded(m_file, *options.files) {
    checkMembers();
  }

  int run() {
    std::vector<Loaded::Item> items;
    const Document &main = m_loaded.main();
    for (const Member &section : main.members(main.root())) {
      if (section.collection == nullptr)
        continue;
      for (Loaded::Item &item : m_loaded.items(section))
        items.push_back(std::move(item));
    }
    int status = kYes;
    std::set<const CXMLFolder *> shown;
    std::vector<const Loaded::Item *> answer;
    for (const std::string &name : m_options.names) {
      bool found = false;
      for (const Loaded::Item &item : items) {
        if (!isCalled(*item.document, item.record, name))
          continue;
        found = true;
        if (shown.insert(item.record.folder).second)
          answer.push_back(&item);
      }
      if (!found) {
        std::vector<std::string> candidates;
        std::vector<std::string> keys;
        for (const Loaded::Item &item : items) {
          candidates.push_back(nameOf(*item.document, item.record));
          keys.emplace_back(item.record.folder->Key().View());
        }
        complain(notFound(m_loaded.isAsInstalled() ? m_file : main.name(), name, candidates, keys));
        status = kNo;
      }
    }
    if (!m_output.quiet)
      print(answer);
    return status;
  }

private:
  /// Complains of a member that no record of this kind of file has.
  void checkMembers() const {
    std::vector<std::string> tags;
    std::vector<const RecordShape *> open{m_loaded.main().root().shape};
    while (!open.empty()) {
      const RecordShape &shape = *open.back();
      open.pop_back();
      for (const MemberShape &member : shape.members) {
        tags.push_back(member.tag);
        if (member.folder != nullptr)
          open.push_back(member.folder.get());
      }
    }
    for (const std::string &name : m_options.members) {
      if (std::none_of(tags.begin(), tags.end(), [&](const std::string &tag) { return sameText(tag, name); }))
        throw CouldNotWork(notFound("--members: a record", name, tags));
    }
  }

  bool isWanted(const MemberShape &member) const {
    const auto &names = m_options.members;
    return names.empty() ||
           std::any_of(names.begin(), names.end(), [&](const std::string &name) { return sameText(name, member.tag); });
  }

  void print(const std::vector<const Loaded::Item *> &items) const {
    if (m_output.isJson()) {
      Json files = Json::array();
      for (const std::unique_ptr<Document> &part : m_loaded.parts())
        files.push_back(jsonText(part->name()));
      Json records = Json::array();
      for (const Loaded::Item *const item : items) {
        Json record{{"file", jsonText(item->document->name())}};
        record.update(describe(*item->document, item->record, m_options.members.empty()));
        records.push_back(std::move(record));
      }
      printJson({{"files", std::move(files)}, {"records", std::move(records)}});
      return;
    }
    if (m_output.isTsv()) {
      printTsv({"File", "Record", "Member", "Text", "Number", "From", "Line", "Column"});
      for (const Loaded::Item *const item : items)
        printRows(*item->document, item->record);
      return;
    }
    if (!items.empty())
      std::cout << filesLine(m_loaded);
    const char *between = "";
    for (const Loaded::Item *const item : items) {
      const Document &document = *item->document;
      const std::string place = document.name() + ":" + placeText(document.outline().place(item->record.element));
      std::cout << between << inked(m_output, Ink::kBold, shown(place)) << ": " << item->record.shape->tag << ' '
                << shown(nameOf(document, item->record)) << '\n';
      std::vector<std::vector<std::string>> rows;
      addRows(document, item->record, "", m_options.members.empty(), rows);
      if (!rows.empty()) {
        Table table(rows.front());
        std::for_each(rows.begin() + 1, rows.end(), [&](auto &row) { table.add(std::move(row)); });
        table.print(std::cout);
      }
      between = "\n";
    }
  }

  // The depth is that of the classes, not of the file.
  void addRows(const Document &document, const Record &record, const std::string &indent, bool all,
               std::vector<std::vector<std::string>> &rows) const {
    for (const Member &member : document.members(record)) {
      const bool takes = all || isWanted(*member.shape);
      const std::string place = member.isInFile() ? placeText(document.place(member)) : "default";
      const std::size_t at = rows.size();
      if (member.folder == nullptr) {
        if (!takes)
          continue;
        const AsNumber number = asNumber(record, member);
        const std::string behind = !number.isRead ? "" : number.number.empty() ? "  no number" : "  = " + number.number;
        rows.push_back({place, indent + member.shape->tag, shown(textInFile(record, member)) + behind});
      } else if (member.collection == nullptr) {
        addRows(document, document.folderOf(record, member), indent + "  ", takes, rows);
      } else {
        for (const Record &item : document.items(record, member)) {
          const std::size_t first = rows.size();
          addRows(document, item, indent + "    ", takes, rows);
          if (takes || rows.size() > first)
            rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(first),
                        {placeText(document.outline().place(item.element)), indent + "  " + item.shape->tag, ""});
        }
      }
      if (member.folder != nullptr && (takes || rows.size() > at))
        rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(at), {place, indent + member.shape->tag, ""});
    }
  }

  void printRows(const Document &document, const Record &top) const {
    document.forEachMember(top, [&](const Record &record, const Member &member) {
      if (member.folder != nullptr)
        return;
      std::string road = Found{record, member}.address().substr(top.address.size() + 1);
      const std::vector<std::string> steps = stepsOf(road);
      const auto &names = m_options.members;
      if (!names.empty() && std::none_of(steps.begin(), steps.end(), [&](const std::string &step) {
            return std::any_of(names.begin(), names.end(),
                               [&](const std::string &name) { return sameText(name, step); });
          }))
        return;
      const Position place = member.isInFile() ? document.place(member) : Position();
      printTsv({document.name(), top.address, road, textInFile(record, member), asNumber(record, member).number,
                member.isInFile() ? "file" : "default", member.isInFile() ? std::to_string(place.line) : "",
                member.isInFile() ? std::to_string(place.column) : ""});
    });
  }

  static void addPlace(Json &json, Position place) {
    json["line"] = place.line;
    json["column"] = place.column;
  }

  // The depth is that of the classes, not of the file.
  Json describe(const Document &document, const Record &record, bool all) const {
    Json json{{"record", record.shape->tag}, {"address", jsonText(record.address)}};
    if (record.element != Outline::kNone)
      addPlace(json, document.outline().place(record.element));
    json["members"] = Json::array();
    for (const Member &member : document.members(record)) {
      const bool takes = all || isWanted(*member.shape);
      Json entry{{"member", member.shape->tag}, {"from", member.isInFile() ? "file" : "default"}};
      if (member.isInFile())
        addPlace(entry, document.place(member));
      bool hasContent = takes;
      if (member.folder == nullptr) {
        entry["text"] = jsonText(textInFile(record, member));
        const AsNumber number = asNumber(record, member);
        if (number.isRead)
          entry["number"] = number.number.empty() ? Json() : Json(number.number);
      } else if (member.collection == nullptr) {
        entry["folder"] = describe(document, document.folderOf(record, member), takes);
        hasContent = takes || !entry["folder"]["members"].empty();
      } else {
        entry["items"] = Json::array();
        for (const Record &item : document.items(record, member)) {
          Json inside = describe(document, item, takes);
          if (takes || !inside["members"].empty())
            entry["items"].push_back(std::move(inside));
        }
        hasContent = takes || !entry["items"].empty();
      }
      if (hasContent)
        json["members"].push_back(std::move(entry));
    }
    return json;
  }

  const Options &m_options;
  const Output &m_output;
  const std::string &m_file;
  Loaded m_loaded;
};

} // namespace

void addShowCommand(CLI::App &app, Run &run) {
  Command command(app, run, "show", "Print all members of the records with a name, key or number, each with its place");
  const auto options = std::make_shared<Options>();
  options->files = addFiles(command, FileUse::kRead);
  options->output = addOutput(command);
  command
      .option("NAME", options->names,
              "Name, key or number in any case and base; * stands for any characters and ? for one")
      .required();
  command.option("--members", options->members, "Print only these members").called("MEMBER,...").separated();
  command.examples({"kestrune-data show Vorlan.xml 'Vorlan 2208-XT'",
                    "kestrune-data show Vorlan.xml 0x20 'Vorlan 18*' --members ModelNum,ROMend"});
  command.runs([options] { return Show(*options).run(); });
}
