#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

// How a command tells the program what it is called with. The library behind it is slow to compile, and is only seen by
// the few files that ask it for more.

/// Does what a command was asked for, and returns the status (see messages.h).
using Run = std::function<int()>;

/// Why the arguments of a command do not go together.
struct WrongUsage : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// An argument or an option of a command.
class Argument {
public:
  explicit Argument(CLI::Option &option) : m_option(&option) {}

  Argument &required(bool isRequired = true);
  /// What the help calls the value of an option.
  Argument &called(const char *value);
  /// What the help says of it.
  Argument &described(const char *text);
  /// A value may hold several, with commas between them.
  Argument &separated();
  /// Calls `take` with each value.
  Argument &each(const std::function<void(const std::string &)> &take);
  Argument &positive();
  Argument &excludes(const Argument &other);
  /// Leaves it out of the help.
  Argument &hidden();

private:
  CLI::Option *m_option;
};

/// A command with its options, added to the program. The values are set when the arguments are read, so they have to
/// live until then; names are `ARGUMENT`, `--option` or `--option,-o`.
class Command {
public:
  Command(CLI::App &app, Run &run, const char *name, const char *text);

  Argument option(const std::string &names, std::string &value, const char *text);
  /// An option of this kind can be given several times, each with one value.
  Argument option(const std::string &names, std::vector<std::string> &values, const char *text);
  Argument option(const std::string &names, int &value, const char *text);
  Argument option(const std::string &names, std::size_t &value, const char *text);
  Argument flag(const std::string &names, bool &value, const char *text);
  Argument flag(const std::string &names, const std::function<void()> &set, const char *text);

  /// An option whose value is one of some words.
  template <class Value>
  Argument choice(const std::string &names, Value &value, const std::map<std::string, Value> &words, const char *text) {
    std::vector<std::string> allowed;
    allowed.reserve(words.size());
    for (const auto &[word, meaning] : words)
      allowed.push_back(word);
    return choice(
        names, allowed, [&value, words](const std::string &word) { value = words.at(word); }, text);
  }

  /// One that was added before.
  Argument argument(const char *name);
  /// Leaves the command out of the help.
  void hide();
  /// The examples at the end of its help, a line each.
  void examples(const std::vector<std::string> &lines);
  /// What the command does. What it cannot do it throws as CouldNotWork, and as WrongUsage.
  void runs(const Run &work);

private:
  Argument choice(const std::string &names, const std::vector<std::string> &words,
                  const std::function<void(const std::string &)> &take, const char *text);

  CLI::App &m_command;
  Run &m_run;
};
