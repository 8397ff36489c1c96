#include "tools/address.h"
#include "tools/commands.h"
#include "tools/files.h"
#include "tools/findings.h"
#include "tools/messages.h"
#include "tools/texts.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>

// The hidden command that the completion of the shell asks. It is given the command line up to the cursor and prints
// what can stand there: the first line has options for `compopt`, the others have a word each. Commands, options and
// arguments are those that the program has; only what an argument names is told here, by the argument's name.

namespace {

/// The words of a command line, as the shell understands quotes and backslashes.
struct CommandLine {
  std::vector<std::string> words{""}; ///< The last is the one at the cursor.
  std::size_t kept = 0;               ///< So much of the last word the shell keeps: it completes behind each = and :.
};

CommandLine parse(std::string_view line) {
  CommandLine parsed;
  char quote = 0;
  bool inWord = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char character = line[i];
    if (quote == 0 && (character == ' ' || character == '\t' || character == '\n')) {
      if (inWord) {
        parsed.words.emplace_back();
        parsed.kept = 0;
      }
      inWord = false;
      continue;
    }
    inWord = true;
    std::string &word = parsed.words.back();
    const bool isEscape = quote != '\'' && character == '\\' && i + 1 < line.size() &&
                          (quote == 0 || std::string_view("$`\"\\").find(line[i + 1]) != std::string_view::npos);
    if (isEscape) {
      word += line[++i];
    } else if (character == quote) {
      quote = 0;
    } else if (quote == 0 && (character == '\'' || character == '"')) {
      quote = character;
    } else {
      word += character;
      if (quote == 0 && (character == '=' || character == ':'))
        parsed.kept = word.size();
    }
  }
  return parsed;
}

/// What can stand at the cursor.
struct Answer {
  bool files = false;  ///< Any file, which the shell finds by itself.
  bool goesOn = false; ///< Something may follow without a blank.
  std::vector<std::string> words;
};

bool beginsWith(std::string_view text, std::string_view beginning) {
  return text.size() >= beginning.size() &&
         std::equal(beginning.begin(), beginning.end(), text.begin(),
                    [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

std::vector<const CLI::Option *> argumentsOf(const CLI::App &command) {
  return command.get_options([](const CLI::Option *option) { return option->get_positional(); });
}

/// What an option takes, or an empty text if it takes nothing.
std::string valueOf(const CLI::Option &option) {
  return option.get_items_expected_max() > 0 ? option.get_type_name() : std::string();
}

class Completion {
public:
  Completion(const CLI::App &app, CommandLine line) : m_app(app), m_line(std::move(line)) {}

  Answer answer() {
    Answer answer = all();
    const auto others = [&](const std::string &word) { return !beginsWith(word, current()); };
    answer.words.erase(std::remove_if(answer.words.begin(), answer.words.end(), others), answer.words.end());
    std::sort(answer.words.begin(), answer.words.end());
    answer.words.erase(std::unique(answer.words.begin(), answer.words.end()), answer.words.end());
    if (answer.words.size() == 1 && answer.words.front().back() == '/')
      answer.goesOn = true;
    for (std::string &word : answer.words)
      word.erase(0, m_line.kept);
    return answer;
  }

private:
  const std::string &current() const { return m_line.words.back(); }

  /// All that can stand there, whatever has been typed of it.
  Answer all() {
    const std::vector<std::string> &words = m_line.words;
    std::size_t at = 1;
    while (at + 1 < words.size() && words[at].starts_with('-'))
      ++at;
    if (at + 1 >= words.size())
      return {false, false, current().starts_with('-') ? optionsOf(m_app) : commands()};
    const std::vector<const CLI::App *> chosen =
        m_app.get_subcommands([&](const CLI::App *command) { return command->get_name() == words[at]; });
    if (chosen.empty())
      return {};
    m_command = chosen.front();
    bool isOption = true;
    for (++at; at + 1 < words.size(); ++at) {
      const std::string &word = words[at];
      const CLI::Option *const option =
          isOption && word.starts_with('-') ? m_command->get_option_no_throw(word.substr(0, word.find('='))) : nullptr;
      if (word == "--") {
        isOption = false;
      } else if (option == nullptr) {
        m_arguments.push_back(word);
      } else if (const std::size_t sign = word.find('='); sign != std::string::npos) {
        m_options[word.substr(0, sign)] = word.substr(sign + 1);
      } else if (const std::string value = valueOf(*option); value.empty()) {
        m_options[word];
      } else if (at + 2 == words.size()) {
        return named(value, false, "");
      } else {
        m_options[word] = words[at + 1];
        ++at;
      }
    }
    if (isOption && current().starts_with('-') && current() != "-") {
      const std::size_t sign = current().find('=');
      const CLI::Option *const option = m_command->get_option_no_throw(current().substr(0, sign));
      if (sign == std::string::npos)
        return {false, false, optionsOf(*m_command)};
      return option != nullptr ? named(valueOf(*option), false, current().substr(0, sign + 1)) : Answer();
    }
    std::size_t place = m_arguments.size();
    for (const CLI::Option *const argument : argumentsOf(*m_command)) {
      const auto most = static_cast<std::size_t>(argument->get_items_expected_max());
      if (place < most)
        return named(argument->get_name(true), true, "");
      place -= most;
    }
    return {};
  }

  std::vector<std::string> commands() const {
    std::vector<std::string> names;
    for (const CLI::App *const command : m_app.get_subcommands([](const CLI::App *) { return true; })) {
      if (!command->get_group().empty())
        names.push_back(command->get_name());
    }
    return names;
  }

  static std::vector<std::string> optionsOf(const CLI::App &app) {
    std::vector<std::string> names;
    for (const CLI::Option *const option : app.get_options()) {
      for (const std::string &name : option->get_lnames()) {
        if (!option->get_group().empty())
          names.push_back("--" + name);
      }
    }
    return names;
  }

  /// What an argument or the value of an option can be, by its name. `before` stands in the word before the value.
  Answer named(const std::string &name, bool isArgument, const std::string &before) {
    Answer answer;
    if (const std::size_t brace = name.find('{'); brace != std::string::npos) { // the words that it takes
      std::string word;
      for (const char letter : name.substr(brace + 1)) {
        if (letter != ',' && letter != '}')
          word += letter;
        else if (!word.empty())
          answer.words.push_back(before + std::exchange(word, ""));
      }
      return answer;
    }
    const std::string value = current().substr(before.size());
    const bool isModel = m_command->get_option_no_throw("MODEL") != nullptr;
    const bool hasFile = m_command->get_option_no_throw("FILE") != nullptr;
    if (name == "FILE" || name == "OUT" || name == "DIR" || name == "IN" || (name == "OTHER" && !isModel)) {
      answer.files = !value.starts_with('$');
      if (!answer.files)
        answer.words = macros();
    } else if (name == "COMMAND") {
      answer.words = commands();
    } else if (name == "KIND") {
      for (const Kind &kind : allKinds())
        answer.words.emplace_back(kind.root);
    } else if (name == "KD") {
      for (const Finding &finding : allFindings())
        answer.words.push_back(findingName(finding.number));
    } else if (name == "MODEL" || name == "OTHER") {
      const auto file = m_options.find("--file");
      read(file != m_options.end() ? file->second : "$StdVorlanTyp$");
      answer.words = under("VorlanModels", "Name");
    } else if (name == "NAME" && isArgument && !hasFile) {
      answer.words = macros();
    } else if (hasFile && !m_arguments.empty()) {
      read(m_arguments.front());
      answer = ofFile(name, isArgument, value);
    }
    const std::size_t comma = name.ends_with(",...") || name == "KD" ? value.rfind(',') : std::string::npos;
    const std::string list = before + (comma != std::string::npos ? value.substr(0, comma + 1) : "");
    for (std::string &word : answer.words)
      word.insert(0, list);
    return answer;
  }

  static std::vector<std::string> macros() {
    std::vector<std::string> names;
    for (const Kind &kind : allKinds())
      names.emplace_back(kind.macro);
    return names;
  }

  /// What the file that stands on the command line has.
  Answer ofFile(const std::string &name, bool isArgument, const std::string &value) const {
    if (name == "NAME" && isArgument)
      return {false, false, names()};
    if (name == "ADDRESS" || name == "COLLECTION")
      return {false, false, addresses(value, name == "COLLECTION")};
    if (name == "ADDRESS=TEXT")
      return {false, true, addresses(value, false)};
    if (name.starts_with("MEMBER"))
      return {false, name == "MEMBER=TEXT", members()};
    if (name == "COLLECTION,...") {
      std::vector<std::string> tags;
      for (const Member &member : main().members(main().root()))
        tags.push_back(member.shape->tag);
      return {false, false, tags};
    }
    if (name == "KEY" && !isArgument && m_arguments.size() > 1)
      return {false, false, under(m_arguments[1], "")};
    if (name == "SCHEME")
      return {false, false, under("ClockingSchemes", "")};
    const auto by = m_options.find("--by");
    const std::string tag = by == m_options.end() || by->second == "display" ? "Display"
                            : by->second == "encoding"                       ? "Encoding"
                                                                             : "Value";
    if (name == "CLOCK" && m_arguments.size() > 1)
      return {false, false, under("ClockingSchemes/" + addressStep(m_arguments[1]) + "/Clocks", tag)};
    if (name == "MULTIPLIER" && m_arguments.size() > 2) {
      const std::string clocks = "ClockingSchemes/" + addressStep(m_arguments[1]) + "/Clocks";
      for (const Record &clock : itemsAt(clocks)) {
        if (main().member(clock, tag).text() == m_arguments[2])
          return {false, false, under(clock.address + "/Multipliers", tag)};
      }
    }
    return {};
  }

  /// Reads a file, or none: asking for the names in it must neither wait for a pipe nor empty it.
  void read(std::string file) {
    if (const char *const home = std::getenv("HOME"); home != nullptr && file.starts_with("~/"))
      file.replace(0, 1, home);
    FileOptions options;
    options.asInstalled = m_options.contains("--as-installed");
    if (kindOfMacro(file) == nullptr && !std::filesystem::is_regular_file(hostPath(file)))
      throw CouldNotWork(file + ": no regular file");
    m_loaded = std::make_unique<Loaded>(file, options);
  }

  const Document &main() const { return m_loaded->main(); }

  /// The names and keys of all items.
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const std::unique_ptr<Document> &part : m_loaded->parts()) {
      part->forEachRecord([&](const Record &record) {
        if (record.shape->keyAttribute.empty())
          return;
        names.push_back(nameOf(*part, record));
        names.emplace_back(record.folder->Key().View());
      });
    }
    return names;
  }

  std::vector<Record> itemsAt(const std::string &address) const {
    std::vector<Record> items;
    for (const Found &found : find(main(), address)) {
      if (found.isMember() && found.member.collection != nullptr)
        items = main().items(found.record, found.member);
    }
    return items;
  }

  /// A member, or the key, of each item of a collection.
  std::vector<std::string> under(const std::string &address, const std::string &tag) const {
    std::vector<std::string> texts;
    for (const Record &item : itemsAt(address))
      texts.emplace_back(tag.empty() ? std::string(item.folder->Key().View())
                                     : std::string(main().member(item, tag).text()));
    return texts;
  }

  /// The tags of the members of all kinds of items.
  std::vector<std::string> members() const {
    std::vector<std::string> tags;
    std::vector<const RecordShape *> open{&shapeOf(*main().kind())};
    while (!open.empty()) {
      const RecordShape &shape = *open.back();
      open.pop_back();
      for (const MemberShape &member : shape.members) {
        if (member.folder != nullptr)
          open.push_back(member.folder.get());
        else
          tags.push_back(member.tag);
      }
    }
    return tags;
  }

  /// The roads that go on from what has been typed, by one step; behind =, the text that the member has.
  std::vector<std::string> addresses(const std::string &typed, bool onlyCollections) const {
    std::size_t end = 0; // behind the last slash between two steps
    std::size_t sign = std::string::npos;
    for (std::size_t i = 0; i < typed.size() && sign == std::string::npos; ++i) {
      if (typed[i] == '\\')
        ++i;
      else if (typed[i] == '/')
        end = i + 1;
      else if (typed[i] == '=')
        sign = i;
    }
    std::vector<std::string> roads;
    const std::string road = typed.substr(0, sign != std::string::npos ? sign : end);
    for (const Found &found : find(main(), road)) {
      if (sign != std::string::npos) {
        if (found.isMember() && found.member.folder == nullptr)
          roads.push_back(road + "=" + textInFile(found.record, found.member));
      } else if (found.isMember() && found.member.collection != nullptr) {
        for (const Record &item : main().items(found.record, found.member)) {
          roads.push_back(road + item.address.substr(found.address().size() + 1) + "/");
          if (typed.size() > end)
            roads.push_back(road + addressStep(nameOf(main(), item)) + "/");
        }
      } else {
        const Record record = found.isMember() ? main().folderOf(found.record, found.member) : found.record;
        for (const Member &member : main().members(record)) {
          if (!onlyCollections || member.folder != nullptr)
            roads.push_back(road + member.shape->tag + (member.folder != nullptr ? "/" : ""));
        }
      }
    }
    return roads;
  }

  const CLI::App &m_app;
  CommandLine m_line;
  const CLI::App *m_command = nullptr;
  std::vector<std::string> m_arguments;
  std::map<std::string, std::string> m_options;
  std::unique_ptr<Loaded> m_loaded;
};

int complete(const CLI::App &app, const std::string &line) {
  Answer answer;
  try {
    answer = Completion(app, parse(line)).answer();
  } catch (const std::exception &) { // where nothing can be said, nothing is offered
    return kNo;
  }
  std::cout << (answer.files ? "default" : answer.goesOn ? "filenames nospace" : "filenames") << '\n';
  for (const std::string &word : answer.words)
    std::cout << word << '\n';
  return kYes;
}

} // namespace

void addCompleteCommand(CLI::App &app, Run &run) {
  Command command(app, run, "complete", "Print what can stand at the end of a command line");
  command.hide(); // for the completion of the shell, not for people
  const auto line = std::make_shared<std::string>();
  command.option("LINE", *line, "The command line up to the cursor").required();
  command.runs([&app, line] { return complete(app, *line); });
}
