#include "kestrune/names/default_macros.h"
#include "kestrune/platform/drives.h"
#include "tools/commands.h"
#include "tools/files.h"
#include "tools/messages.h"
#include "tools/output.h"
#include "tools/table.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <sys/stat.h>

namespace {

struct Options {
  std::string name;
  std::string base;
  bool store = false;
  bool macros = false;
  std::shared_ptr<std::vector<std::string>> defined; // by -D
  std::shared_ptr<Output> output;
};

/// The table of macros that all names share.
class MacroTable : public CMacroString {
public:
  using CMacroString::FindMacro;
  using CMacroString::GetMacroName;
  using CMacroString::GetMacroValue;
  using CMacroString::GetValue;
};

struct Macro {
  std::string name;
  std::string value;
  std::string expanded;
  std::string source;
};

/// A step on the way from a name to its path.
struct Step {
  std::string what;
  std::string text; // the name after it
};

std::string stringOf(const CString &text) { return std::string(text.View()); }

/// A path of the host in drive form; any other name as it is.
std::string driveForm(const std::string &name) {
  if (!name.starts_with('/'))
    return name;
  CFilename full;
  CFilename(name.c_str()).GetAbsolute(full, nullptr);
  return stringOf(full);
}

/// The environment variable that stands in for an unknown macro, without the blanks at the ends of its name.
const char *fromEnvironment(std::string_view macro) {
  const std::size_t first = macro.find_first_not_of(" $");
  if (first == std::string_view::npos)
    return nullptr;
  const char *const text =
      std::getenv(std::string(macro.substr(first, macro.find_last_not_of(" $") + 1 - first)).c_str());
  return text != nullptr && *text != '\0' ? text : nullptr;
}

class Resolution {
public:
  explicit Resolution(const Options &options) : m_options(options), m_output(*options.output) {}

  int run() {
    int status = kYes;
    Json json = Json::object();
    if (!m_options.name.empty())
      status = m_options.store ? store(json) : resolve(json);
    if (m_options.macros)
      printMacros(json);
    if (m_output.isJson() && !m_output.quiet)
      printJson(json);
    return status;
  }

private:
  std::string sourceOf(const std::string &name) const {
    const bool isDefined = std::any_of(m_options.defined->begin(), m_options.defined->end(), [&](const auto &one) {
      return CString(one.c_str()).CompareNoCase(name.c_str()) == 0;
    });
    return isDefined ? "-D" : kestrune::IsSetInRegistry(name.c_str()) ? "registry" : "default";
  }

  void add(const std::string &what, const std::string &text) {
    if (m_steps.empty() || m_steps.back().text != text)
      m_steps.push_back({what, text});
  }

  /// Puts in the first macro of `text`, one value at a time, as often as the library would. Returns whether each had a
  /// value in the table.
  bool expand(std::string &text) {
    constexpr std::size_t kMostSteps = 100;
    const MacroTable table;
    while (m_steps.size() < kMostSteps) {
      const std::size_t open = text.find('$');
      const std::size_t close = open != std::string::npos ? text.find('$', open + 1) : open;
      if (close == std::string::npos)
        return true;
      const std::string name = text.substr(open, close + 1 - open);
      CString whole;
      if (table.GetValue(name.c_str(), whole, 10)) {
        const std::string value = stringOf(table.GetMacroValue(table.FindMacro(name.c_str())));
        // A value with a lone $ would find its partner behind itself.
        const bool isEven = std::count(value.begin(), value.end(), '$') % 2 == 0;
        text.replace(open, name.size(), isEven ? value : stringOf(whole));
        add(name + ", " + sourceOf(name), text);
        continue;
      }
      const char *const value = fromEnvironment(name);
      text.replace(open, name.size(), value != nullptr ? value : "");
      m_steps.push_back({name + (value != nullptr ? ", environment" : ", unknown: left out"), text});
      if (value == nullptr)
        m_unknown.insert(name);
      return false;
    }
    CString rest;
    const bool isComplete = CMacroString(text.c_str()).Explode(rest, 10);
    text = stringOf(rest);
    add("all other macros", text);
    return isComplete;
  }

  /// The full path by the rules of CFilename::GetAbsolute, which has the last word.
  CFilename absolute(const std::string &name) {
    add("given", name);
    std::string work = name.find('$') == std::string::npos ? driveForm(name) : name;
    add("the host's path in drive form", work);
    if (work.starts_with(".\\"))
      work.erase(0, 2);
    const bool isComplete = expand(work);
    CFilename result;
    CFilename(name.c_str()).GetAbsolute(result, m_options.base.empty() ? nullptr : m_options.base.c_str());
    const std::string full = stringOf(result);
    const std::string form = driveForm(work);
    const bool isFull = isComplete && CFilename(form.c_str()).IsAbsolute();
    const bool isOnDrive = form.size() >= 3 && form[1] == ':' && form[2] != '\\';
    if (isFull)
      add("in its normal form", full);
    else if (form.empty())
      add("the base, for an empty name", full);
    else if (isOnDrive)
      add("in the current folder of drive " + form.substr(0, 1) + ":", full);
    else if (form.starts_with("\\"))
      add(form.starts_with("\\\\") ? "a network name" : "on the current drive", full);
    else
      add(m_options.base.empty() ? "in the current folder" : "in the base " + m_options.base, full);
    return result;
  }

  /// The file that programs read when they load one of the standard files.
  std::string readInstead(const std::string &path) const {
    const Kind *const kind = kindOfMacro(m_options.name);
    if (kind == nullptr)
      return {};
    const std::vector<CString> files = filesOf(*kind, m_options.name.c_str());
    return !files.empty() && files.front().CompareNoCase(path.c_str()) != 0 ? stringOf(files.front()) : std::string();
  }

  int complainOfUnknown() const {
    std::vector<std::string> names;
    const MacroTable table;
    names.reserve(static_cast<std::size_t>(table.GetMacroCount()));
    for (int i = 0; i < table.GetMacroCount(); ++i)
      names.push_back(stringOf(table.GetMacroName(i)));
    for (const std::string &name : m_unknown)
      complain(notFound("the table of macros", name, names));
    return m_unknown.empty() ? kYes : kNo;
  }

  int resolve(Json &json) {
    const std::string path = stringOf(absolute(m_options.name));
    std::string host;
    const bool hasHost = kestrune::platform::ToHostPath(path.c_str(), host);
    struct stat status {};
    std::string found;
    const bool exists = hasHost && kestrune::platform::ToHostPath(path.c_str(), found, &status);
    const std::string instead = readInstead(path);
    if (m_output.isJson()) {
      json["name"] = jsonText(m_options.name);
      json["path"] = jsonText(path);
      json["host"] = hasHost ? jsonText(host) : Json();
      json["exists"] = exists;
      json["instead"] = instead.empty() ? Json() : jsonText(instead);
      addSteps(json);
    } else if (!m_output.quiet) {
      if (hasHost)
        m_steps.push_back({exists ? "on this machine" : "on this machine, where nothing is", host});
      else
        m_steps.push_back({"on this machine", "nowhere: no drive of this machine has it"});
      if (!instead.empty())
        m_steps.push_back({"programs read instead", instead});
      printSteps(path);
    }
    return complainOfUnknown();
  }

  int store(Json &json) {
    // What is not a macro name is stored as the full path that it means.
    const bool isStored = m_options.name.starts_with('$');
    CFilename full(m_options.name.c_str());
    if (!isStored) {
      CFilename(m_options.name.c_str()).GetAbsolute(full, m_options.base.empty() ? nullptr : m_options.base.c_str());
      add("given", m_options.name);
      add("full path", stringOf(full));
    }
    CFilename base;
    if (!m_options.base.empty())
      CFilename(m_options.base.c_str()).GetAbsolute(base, nullptr);
    CFilename stored;
    full.GetRelative(stored, base.IsEmpty() ? nullptr : static_cast<const char *>(base));
    const std::string text = stringOf(stored);
    if (isStored)
      add("already in the form to be stored", text);
    else if (text == stringOf(full))
      m_steps.push_back({"no macro and no base fits", text});
    else if (text.find('$') != std::string::npos)
      add("with the longest macro", text);
    else
      add("relative to " + stringOf(base), text);
    if (m_output.isJson()) {
      json["name"] = jsonText(m_options.name);
      json["stored"] = jsonText(text);
      addSteps(json);
    } else if (!m_output.quiet) {
      printSteps(text);
    }
    return kYes;
  }

  void addSteps(Json &json) const {
    json["steps"] = Json::array();
    for (const Step &step : m_steps)
      json["steps"].push_back({{"step", jsonText(step.what)}, {"text", jsonText(step.text)}});
  }

  /// The answer on the first line, and below it how it came about.
  void printSteps(const std::string &answer) const {
    std::cout << shown(answer) << '\n';
    std::vector<std::vector<std::string>> rows;
    for (const Step &step : m_steps)
      rows.push_back({shown(step.what), shown(step.text)});
    Table table(rows.front());
    std::for_each(rows.begin() + 1, rows.end(), [&](auto &row) { table.add(row); });
    table.print(std::cout);
  }

  std::vector<Macro> macros() const {
    std::vector<Macro> all;
    const MacroTable table;
    for (int i = 0; i < table.GetMacroCount(); ++i) {
      const std::string name = stringOf(table.GetMacroName(i));
      CString expanded;
      CMacroString(name.c_str()).Explode(expanded, 10);
      all.push_back({name, stringOf(table.GetMacroValue(i)), stringOf(expanded), sourceOf(name)});
    }
    // The one name that the library itself asks for without having it in the table.
    constexpr const char *kReplacement = "$PFDT$";
    const char *const replacement = fromEnvironment(kReplacement);
    if (replacement != nullptr && table.FindMacro(kReplacement) < 0)
      all.push_back({kReplacement, replacement, replacement, "environment"});
    return all;
  }

  void printMacros(Json &json) const {
    if (m_output.quiet)
      return;
    Table table({"Macro", "Value", "Expanded", "Source"});
    json["macros"] = Json::array();
    for (const Macro &macro : macros()) {
      table.add({shown(macro.name), shown(macro.value), shown(macro.expanded), macro.source});
      json["macros"].push_back({{"name", jsonText(macro.name)},
                                {"value", jsonText(macro.value)},
                                {"expanded", jsonText(macro.expanded)},
                                {"source", macro.source}});
    }
    if (m_output.isText()) {
      std::cout << (m_options.name.empty() ? "" : "\n");
      table.print(std::cout);
    }
  }

  const Options &m_options;
  const Output &m_output;
  std::vector<Step> m_steps;
  std::set<std::string> m_unknown; // macros that have no value anywhere
};

} // namespace

void addResolveCommand(CLI::App &app, Run &run) {
  Command command(app, run, "resolve", "Print the full path that a name means, and every step to it");
  const auto options = std::make_shared<Options>();
  command.option("NAME", options->name,
                 "Name of a file as data files and programs write it, such as '$StdTypes$/x.xml'");
  command.option("--base", options->base, "The folder that a relative name is looked up in").called("DIR");
  command.flag("--store", options->store, "Print the form in which the name is to be stored");
  command.flag("--macros", options->macros,
               "Print the table of macros, each with its source: default, registry, environment or -D");
  options->defined = addMacros(command);
  options->output = addOutput(command, {.tsv = false});
  command.examples({"kestrune-data resolve '$StdVorlanTyp$'", "kestrune-data resolve --macros"});
  command.runs([options] {
    if (options->name.empty() && !options->macros)
      throw WrongUsage("NAME is required");
    return Resolution(*options).run();
  });
}
