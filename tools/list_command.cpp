#include "tools/address.h"
#include "tools/commands.h"
#include "tools/messages.h"
#include "tools/output.h"
#include "tools/table.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>

namespace {

/// What a table shows of the items of a collection, unless --columns says otherwise. A list is shown as its number of
/// items.
struct Columns {
  const char *itemTag;
  std::vector<std::string> names;
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

struct Options {
  std::shared_ptr<FileOptions> files;
  std::shared_ptr<Output> output;
  std::vector<std::string> only;
  std::vector<std::string> columns;
  std::vector<std::string> where;
  bool count = false;
};

/// The text that MEMBER has to match.
struct Condition {
  std::string member;
  std::string pattern;
};

using Road = std::vector<const MemberShape *>;

std::string nameOf(const Road &road) {
  std::string name;
  for (const MemberShape *const step : road)
    name += (name.empty() ? "" : "/") + step->tag;
  return name;
}

/// The text at the end of a road through the members of a record; the number of items of a collection.
std::string textAt(const Document &document, const Record &record, const std::vector<Member> &members, const Road &road,
                   std::size_t from = 0) {
  const auto member =
      std::find_if(members.begin(), members.end(), [&](const Member &one) { return one.shape == road[from]; });
  if (member == members.end())
    return {};
  if (from + 1 < road.size()) {
    const Record folder = document.folderOf(record, *member);
    return textAt(document, folder, document.members(folder), road, from + 1);
  }
  return member->collection != nullptr ? std::to_string(member->collection->Count()) : std::string(member->text());
}

bool isAmong(const std::vector<std::string> &names, const std::string &name) {
  return std::any_of(names.begin(), names.end(), [&](const std::string &one) { return sameText(one, name); });
}

class List {
public:
  explicit List(const Options &options) : m_options(options), m_output(*options.output) {
    for (const std::string &text : options.where) {
      const std::size_t sign = text.find('=');
      if (sign == 0 || sign == std::string::npos)
        throw CouldNotWork("--where: '" + text + "' is not MEMBER=TEXT");
      m_conditions.push_back({text.substr(0, sign), text.substr(sign + 1)});
    }
    checkNames();
    m_isWhole = options.only.empty() && options.columns.empty() && options.where.empty() && !options.count;
  }

  int run() {
    if (m_output.isTsv() && !m_output.quiet)
      printTsv(tsvHeadings());
    Json files = Json::array();
    const int status = forEachFile(*m_options.files, [&](const std::string &file, bool isOnly) {
      const Loaded loaded(file, *m_options.files);
      m_hasSeveralFiles = !isOnly;
      answer(file, loaded, files);
      return kYes;
    });
    if (m_output.isJson() && !m_output.quiet)
      printJson({{"files", std::move(files)}});
    if (!m_found && status == kYes && !m_missing.empty())
      complain(m_missing);
    return std::max<int>(status, m_found ? kYes : kNo);
  }

private:
  /// A collection of a file with what is to be shown of it.
  struct Shown {
    Member collection;
    std::vector<Road> columns;
    std::vector<std::pair<Road, std::string>> conditions;
  };

  /// Names that no kind of file has are an error; others only leave some files without an answer.
  void checkNames() const {
    std::vector<std::string> sections;
    std::vector<std::string> tags;
    for (const Kind &kind : allKinds()) {
      for (const MemberShape &section : shapeOf(kind).members) {
        sections.push_back(section.tag);
        if (!section.isCollection())
          continue;
        for (const MemberShape &member : section.folder->members) {
          tags.push_back(member.tag);
          for (const MemberShape *inner : insideOf(member))
            tags.push_back(member.tag + "/" + inner->tag);
        }
      }
    }
    for (const std::string &name : m_options.only) {
      if (!isAmong(sections, name))
        throw CouldNotWork(notFound("--only: a data file", name, sections));
    }
    std::vector<std::pair<std::string, std::string>> members;
    for (const std::string &name : m_options.columns)
      members.emplace_back("--columns", name);
    for (const Condition &condition : m_conditions)
      members.emplace_back("--where", condition.member);
    for (const auto &[option, name] : members) {
      const bool isKnown = std::any_of(tags.begin(), tags.end(), [&name = name](const std::string &tag) {
        return sameText(tag, name) || sameText(tag.substr(tag.find('/') + 1), name);
      });
      if (!isKnown)
        throw CouldNotWork(notFound(option + ": an item", name, tags));
    }
  }

  static std::vector<const MemberShape *> insideOf(const MemberShape &member) {
    std::vector<const MemberShape *> inside;
    if (member.folder != nullptr && !member.isCollection()) {
      for (const MemberShape &inner : member.folder->members)
        inside.push_back(&inner);
    }
    return inside;
  }

  bool isWanted(const MemberShape &section) const {
    return m_options.only.empty() || isAmong(m_options.only, section.tag);
  }

  std::vector<Road> columnsOf(const RecordShape &item) const {
    std::vector<std::string> names = m_options.columns;
    for (const Columns &columns : allColumns()) {
      if (names.empty() && columns.itemTag == item.tag)
        names = columns.names;
    }
    std::vector<Road> roads;
    for (const std::string &name : names) {
      if (Road road = roadTo(item, name); !road.empty())
        roads.push_back(std::move(road));
    }
    return roads;
  }

  /// What is to be shown of a collection; nothing where it has none of the columns, or not each member that has to
  /// match.
  std::optional<Shown> shownOf(const Member &collection) const {
    const RecordShape &item = *collection.shape->folder;
    Shown shown{collection, columnsOf(item), {}};
    for (const Condition &condition : m_conditions) {
      Road road = roadTo(item, condition.member);
      if (road.empty())
        return std::nullopt;
      shown.conditions.emplace_back(std::move(road), condition.pattern);
    }
    if (shown.columns.empty())
      return std::nullopt;
    return shown;
  }

  /// The headings of all tables together, since there is one line of them.
  std::vector<std::string> tsvHeadings() const {
    std::vector<std::string> headings{"File", "Collection"};
    if (m_options.count) {
      headings.emplace_back("Count");
      return headings;
    }
    for (const std::string &name : tsvColumns())
      headings.push_back(name);
    return headings;
  }

  std::vector<std::string> tsvColumns() const {
    if (!m_options.columns.empty())
      return m_options.columns;
    std::vector<std::string> names;
    for (const Kind &kind : allKinds()) {
      for (const MemberShape &section : shapeOf(kind).members) {
        if (!section.isCollection() || !isWanted(section))
          continue;
        for (const Road &road : columnsOf(*section.folder)) {
          if (const std::string name = nameOf(road); std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
        }
      }
    }
    return names;
  }

  /// Calls `take` with the file and the texts in the columns of each item that is to be shown; returns their number.
  template <class Take>
  static std::size_t forEachItem(const Loaded &loaded, const Shown &shown, Take take) {
    std::size_t count = 0;
    for (const Loaded::Item &item : loaded.items(shown.collection)) {
      const std::vector<Member> members = item.document->members(item.record);
      const auto text = [&](const Road &road) { return textAt(*item.document, item.record, members, road); };
      if (!std::all_of(shown.conditions.begin(), shown.conditions.end(),
                       [&](const auto &condition) { return matches(text(condition.first), condition.second); }))
        continue;
      ++count;
      std::vector<std::string> row;
      std::transform(shown.columns.begin(), shown.columns.end(), std::back_inserter(row), text);
      take(*item.document, std::move(row));
    }
    return count;
  }

  void answer(const std::string &file, const Loaded &loaded, Json &files) {
    const Document &main = loaded.main();
    Json json;
    bool isNamed = false;
    const auto heading = [&] {
      if (!isNamed)
        printHeading(file, loaded, json);
      isNamed = true;
    };
    if (m_isWhole)
      heading();
    m_found = m_found || (m_options.only.empty() && m_options.columns.empty() && m_conditions.empty());
    for (const Member &section : main.members(main.root())) {
      if (!isWanted(*section.shape))
        continue;
      if (section.collection != nullptr) {
        answerCollection(file, loaded, section, heading, json);
      } else if (m_options.columns.empty() && m_conditions.empty() && !m_options.count) {
        heading();
        answerFolder(main, section, json);
      }
    }
    if (isNamed)
      files.push_back(std::move(json));
    if (m_missing.empty()) {
      std::vector<std::string> sections;
      for (const MemberShape &section : main.root().shape->members)
        sections.push_back(section.tag);
      m_missing = !m_conditions.empty()    ? file + ": no item matches"
                  : m_options.only.empty() ? file + ": no item has these members"
                                           : notFound(file, m_options.only.front(), sections);
    }
  }

  void printHeading(const std::string &file, const Loaded &loaded, Json &json) {
    int version = 1;
    for (const std::unique_ptr<Document> &part : loaded.parts())
      version = std::max(version, part->versionNeeded());
    const Kind &kind = *loaded.main().kind();
    if (m_output.quiet)
      return;
    if (m_output.isJson()) {
      json["file"] = jsonText(loaded.isAsInstalled() ? file : loaded.main().name());
      for (const std::unique_ptr<Document> &part : loaded.parts())
        json["parts"].push_back(jsonText(part->name()));
      json["root"] = kind.root;
      json["kind"] = kind.name;
      json["version"] = version;
      json["sections"] = Json::object();
      json["collections"] = Json::array();
    } else if (m_output.isText()) {
      std::cout << (m_isFirst ? "" : "\n") << filesLine(loaded);
      if (!m_options.count)
        std::cout << inked(m_output, Ink::kBold, shown(loaded.isAsInstalled() ? file : loaded.main().name())) << ": "
                  << kind.name << ", version " << version << '\n'
                  << std::flush;
      m_isFirst = m_options.count && !loaded.isAsInstalled();
    }
  }

  void answerFolder(const Document &document, const Member &section, Json &json) {
    m_found = true;
    if (m_output.quiet || m_output.isTsv())
      return;
    const Record folder = document.folderOf(document.root(), section);
    std::vector<std::vector<std::string>> rows;
    for (const Member &member : document.members(folder)) {
      if (m_output.isJson())
        json["sections"][section.shape->tag][member.shape->tag] = jsonText(member.text());
      rows.push_back({member.shape->tag, shown(member.text())});
    }
    if (m_output.isJson() || rows.empty())
      return;
    std::cout << '\n' << inked(m_output, Ink::kBold, section.shape->tag) << '\n';
    Table table(rows.front());
    std::for_each(rows.begin() + 1, rows.end(), [&](auto &row) { table.add(row); });
    table.print(std::cout);
  }

  template <class Heading>
  void answerCollection(const std::string &file, const Loaded &loaded, const Member &collection, Heading heading,
                        Json &json) {
    const std::optional<Shown> what = shownOf(collection);
    if (!what)
      return;
    const std::string &tag = collection.shape->tag;
    const bool isCounting = m_options.count || m_output.quiet;
    const std::vector<std::string> tsvNames = m_output.isTsv() ? tsvColumns() : std::vector<std::string>();
    std::vector<std::string> names;
    for (const Road &road : what->columns)
      names.push_back(nameOf(road));
    std::vector<std::string> headings = names;
    if (loaded.isAsInstalled())
      headings.emplace_back("File");
    Table table(headings);
    Json items = Json::array();
    const std::size_t count = forEachItem(loaded, *what, [&](const Document &from, std::vector<std::string> row) {
      if (isCounting)
        return;
      if (m_output.isTsv()) {
        std::vector<std::string> fields{from.name(), tag};
        for (const std::string &name : tsvNames) {
          const auto at = std::find_if(names.begin(), names.end(), [&](const std::string &one) {
            return sameText(one, name) || sameText(one.substr(one.find('/') + 1), name);
          });
          fields.push_back(at != names.end() ? row[static_cast<std::size_t>(at - names.begin())] : "");
        }
        printTsv(fields);
      } else if (m_output.isJson()) {
        Json item{{"file", jsonText(from.name())}, {"members", Json::object()}};
        for (std::size_t i = 0; i < names.size(); ++i)
          item["members"][names[i]] = jsonText(row[i]);
        items.push_back(std::move(item));
      } else {
        for (std::string &cell : row)
          cell = shown(cell, 60);
        if (loaded.isAsInstalled())
          row.push_back(shown(std::filesystem::path(from.name()).filename().string()));
        table.add(std::move(row));
      }
    });
    if (count == 0 && !m_conditions.empty())
      return;
    m_found = true;
    heading();
    if (m_output.quiet)
      return;
    if (m_output.isJson()) {
      Json entry{{"collection", tag}, {"count", count}};
      if (!m_options.count)
        entry["items"] = std::move(items);
      json["collections"].push_back(std::move(entry));
    } else if (m_output.isTsv()) {
      if (m_options.count)
        printTsv({loaded.isAsInstalled() ? file : loaded.main().name(), tag, std::to_string(count)});
    } else if (m_options.count) {
      const std::string &name = loaded.isAsInstalled() ? file : loaded.main().name();
      std::cout << (m_hasSeveralFiles ? shown(name) + ":" : "") << tag << "  " << count << '\n';
    } else {
      std::cout << '\n' << inked(m_output, Ink::kBold, tag) << " (" << count << ")\n";
      if (count > 0)
        table.print(std::cout);
    }
  }

  const Options &m_options;
  const Output &m_output;
  std::vector<Condition> m_conditions;
  bool m_isWhole = true; // all of each file is to be shown
  bool m_isFirst = true;
  bool m_hasSeveralFiles = false;
  bool m_found = false;
  std::string m_missing; // why a file had nothing to show
};

} // namespace

void addListCommand(CLI::App &app, Run &run) {
  Command command(app, run, "list", "Print what kind of file each is and what it holds");
  const auto options = std::make_shared<Options>();
  options->files = addFiles(command, FileUse::kReadMany);
  options->output = addOutput(command);
  command.option("--only", options->only, "Only these collections or sections").called("COLLECTION,...").separated();
  command.option("--columns", options->columns, "Show these members of each item; Channel/comm_rate is one inside")
      .called("MEMBER,...")
      .separated();
  command.option("--where", options->where, "Only items whose member is this text, in any case; * and ? match")
      .called("MEMBER=TEXT");
  command.flag("--count", options->count, "Print only the number of items of each collection");
  command.examples({"kestrune-data list Vorlan.xml --only VorlanModels --where 'Name=*2208*'",
                    "kestrune-data list '$StdXcvrTyp$' --columns Name,std_id,comm_rate"});
  command.runs([options] { return List(*options).run(); });
}
