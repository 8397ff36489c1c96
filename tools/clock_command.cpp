#include "tools/address.h"
#include "tools/commands.h"
#include "tools/files.h"
#include "tools/messages.h"
#include "tools/output.h"
#include "tools/table.h"

#include <cstdlib>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>

namespace {

enum class By { kDisplay, kEncoding, kValue };

struct Options {
  std::shared_ptr<FileOptions> files;
  std::shared_ptr<Output> output;
  std::string scheme;
  std::string clock;
  std::string multiplier;
  By by = By::kDisplay;
};

/// An entry of a scheme as it is printed.
struct Row {
  std::vector<std::pair<const char *, std::string>> fields;
};

double numberIn(const std::string &text) {
  char *end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0')
    throw CouldNotWork("--by value: '" + text + "' is not a number");
  return number;
}

/// What programs find by one of the three searches; null where they find nothing.
template <class Items>
auto found(Items &items, By by, const std::string &wanted) {
  switch (by) {
  case By::kEncoding:
    return items.FindByEncoding(wanted.c_str());
  case By::kValue:
    return items.Find(numberIn(wanted));
  default:
    return items.FindByDisplay(wanted.c_str());
  }
}

std::string textOf(CXMLFolder &record, const char *tag) {
  for (const kestrune::MemberView &member : kestrune::MembersOf(record)) {
    if (member.value->GetTag().View() == tag)
      return std::string(member.value->View());
  }
  return {};
}

const char *tagOf(By by) { return by == By::kEncoding ? "Encoding" : by == By::kValue ? "Value" : "Display"; }

/// An entry with its own texts.
Row rowOf(CXMLFolder &entry) {
  Row row;
  for (const char *const tag : {"Display", "Value", "Encoding", "Description"})
    row.fields.emplace_back(tag, textOf(entry, tag));
  return row;
}

class ClockSearch {
public:
  ClockSearch(const Options &options, const Loaded &loaded)
      : m_options(options), m_output(*options.output), m_loaded(loaded) {}

  int run() {
    auto *const document = dynamic_cast<CVorlanTyp4 *>(m_loaded.main().folder());
    if (document == nullptr)
      throw CouldNotWork(m_loaded.main().name() + ": is not a chip data file");
    const auto number = numberOf(m_options.scheme);
    if (!number)
      throw CouldNotWork("SCHEME: '" + m_options.scheme + "' is not a number");
    CClockingSchemes &schemes = document->ClockingSchemes;
    CClockingScheme *const scheme =
        *number == static_cast<int>(*number) ? schemes.Find(static_cast<int>(*number)) : nullptr;
    if (scheme == nullptr)
      return isMissing(m_loaded.main().name(), "clocking scheme '" + m_options.scheme + "'", schemes, "Id");
    const std::string road = m_loaded.main().name() + ": scheme " + m_options.scheme;
    if (m_options.clock.empty())
      return choices(*scheme->Clocks(), "clocks", nullptr);
    CClock *const clock = found(*scheme->Clocks(), m_options.by, m_options.clock);
    if (clock == nullptr)
      return isMissing(road, "clock '" + m_options.clock + "'", *scheme->Clocks(), tagOf(m_options.by));
    if (m_options.multiplier.empty())
      return choices(*clock->Multipliers(), "multipliers", clock);
    CMultiplier *const multiplier = found(*clock->Multipliers(), m_options.by, m_options.multiplier);
    if (multiplier == nullptr)
      return isMissing(road + ", clock '" + m_options.clock + "'", "multiplier '" + m_options.multiplier + "'",
                       *clock->Multipliers(), tagOf(m_options.by));
    return pair(*clock, *multiplier);
  }

private:
  static int isMissing(const std::string &where, const std::string &what, CXMLCollectionFolder &items,
                       const char *tag) {
    std::string there;
    for (int i = 0; i < items.Count(); ++i)
      there += (i == 0 ? "; there are: " : ", ") + textOf(*items[i], tag);
    complain(where + " has no " + what + there);
    return kNo;
  }

  Json jsonHead() const {
    Json files = Json::array();
    for (const std::unique_ptr<Document> &part : m_loaded.parts())
      files.push_back(jsonText(part->name()));
    return {{"files", std::move(files)}, {"scheme", m_options.scheme}};
  }

  static Json jsonOf(const Row &row) {
    Json json = Json::object();
    for (const auto &[tag, text] : row.fields)
      json[tag] = jsonText(text);
    return json;
  }

  void printTsvRow(const char *what, const Row &row) const {
    std::vector<std::string> fields{what};
    for (const auto &field : row.fields)
      fields.push_back(field.second);
    printTsv(fields);
  }

  void printTsvHead() const { printTsv({"Entry", "Display", "Value", "Encoding", "Description"}); }

  int choices(CXMLCollectionFolder &items, const char *name, CXMLFolder *clock) const {
    if (m_output.quiet)
      return kYes;
    Table table({"Display", "Value", "Encoding", "Description"});
    Json json = jsonHead();
    if (clock != nullptr)
      json["clock"] = jsonOf(rowOf(*clock));
    json[name] = Json::array();
    if (m_output.isTsv())
      printTsvHead();
    for (int i = 0; i < items.Count(); ++i) {
      const Row row = rowOf(*items[i]);
      json[name].push_back(jsonOf(row));
      if (m_output.isTsv())
        printTsvRow(clock != nullptr ? "multiplier" : "clock", row);
      std::vector<std::string> cells;
      for (const auto &field : row.fields)
        cells.push_back(shown(field.second, 60));
      table.add(std::move(cells));
    }
    if (m_output.isJson()) {
      printJson(json);
    } else if (m_output.isText()) {
      std::cout << filesLine(m_loaded) << inked(m_output, Ink::kBold, name) << " (" << items.Count() << ")\n";
      if (items.Count() > 0)
        table.print(std::cout);
    }
    return kYes;
  }

  int pair(CClock &clock, CMultiplier &multiplier) const {
    // A value that is not a number throws, and then nothing of the answer is printed.
    std::ostringstream answer;
    answer << "clock       " << shown(clock.Display()) << ", " << clock.Value() << " kHz, encoding "
           << shown(clock.Encoding()) << '\n'
           << "multiplier  " << shown(multiplier.Display()) << ", " << multiplier.Value() << ", encoding "
           << shown(multiplier.Encoding()) << '\n';
    if (m_output.quiet)
      return kYes;
    if (m_output.isJson()) {
      Json json = jsonHead();
      json["clock"] = jsonOf(rowOf(clock));
      json["multiplier"] = jsonOf(rowOf(multiplier));
      printJson(json);
    } else if (m_output.isTsv()) {
      printTsvHead();
      printTsvRow("clock", rowOf(clock));
      printTsvRow("multiplier", rowOf(multiplier));
    } else {
      std::cout << filesLine(m_loaded) << answer.str();
    }
    return kYes;
  }

  const Options &m_options;
  const Output &m_output;
  const Loaded &m_loaded;
};

int clock(const Options &options) {
  const Loaded loaded(options.files->files.front(), *options.files);
  try {
    return ClockSearch(options, loaded).run();
  } catch (CKRXException *exception) {
    const std::string message = static_cast<const char *>(exception->GetFormattedMessage());
    exception->Delete();
    throw CouldNotWork(loaded.main().name() + ": " + message);
  }
}

} // namespace

void addClockCommand(CLI::App &app, Run &run) {
  Command command(app, run, "clock", "Find a clock and a multiplier of a clocking scheme, or print what there is");
  const auto options = std::make_shared<Options>();
  options->files = addFiles(command, FileUse::kRead);
  command.option("SCHEME", options->scheme, "Number of the scheme").required();
  command.option("CLOCK", options->clock, "Clock as it is displayed, such as '10 MHz'; without it, all of them");
  command.option("MULTIPLIER", options->multiplier,
                 "Multiplier as it is displayed, such as 1/2; without it, all of the clock");
  static const std::map<std::string, By> kBy = {
      {"display", By::kDisplay}, {"encoding", By::kEncoding}, {"value", By::kValue}};
  command
      .choice("--by", options->by, kBy, "What CLOCK and MULTIPLIER are: display, encoding or value (of a clock in kHz)")
      .called("WHAT");
  options->output = addOutput(command);
  command.examples(
      {"kestrune-data clock Vorlan.xml 5 '10 MHz' 1/2", "kestrune-data clock Vorlan.xml 5 10000 --by value"});
  command.runs([options] { return clock(*options); });
}
