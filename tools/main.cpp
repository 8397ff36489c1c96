#include "kestrune/kestrune_xml.h"
#include "tools/commands.h"
#include "tools/messages.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <exception>
#include <iostream>
#include <system_error>

namespace {

constexpr const char *kDescription =
    "Reads, checks, compares and changes the hardware description files of the Kestrune device network.\n"
    "A FILE that is a path means that file and nothing else. A FILE that is a macro, such as\n"
    "'$StdVorlanTyp$', means what programs get: with a replacement, add-ons and the user's file.";

constexpr const char *kStatus =
    "Status:\n"
    "  0  yes, the same, sound\n"
    "  1  no, different, findings\n"
    "  2  could not work: wrong usage, a file that is missing or cannot be read, an output\n"
    "     that cannot be written; whatever else was found";

void addCommands(CLI::App &app, Run &run) {
  addListCommand(app, run);
  addShowCommand(app, run);
  addGetCommand(app, run);
  addDumpCommand(app, run);
  addSetCommand(app, run);
  addAddCommand(app, run);
  addRemoveCommand(app, run);
  addFormatCommand(app, run);
  addConvertCommand(app, run);
  addDiffCommand(app, run);
  addCheckCommand(app, run);
  addReportCommand(app, run);
  addClockCommand(app, run);
  addLinkedCommand(app, run);
  addResolveCommand(app, run);
  addSchemaCommand(app, run);
  addCompleteCommand(app, run);
}

std::vector<std::string> commandNames(const CLI::App &app) {
  std::vector<std::string> names;
  for (const CLI::App *const command :
       app.get_subcommands([](const CLI::App *command) { return !command->get_group().empty(); }))
    names.push_back(command->get_name());
  return names;
}

/// "help" and "help COMMAND" print what --help prints.
void addHelpCommand(CLI::App &app, Run &run) {
  Command command(app, run, "help", "Print the help of a command");
  const auto name = std::make_shared<std::string>();
  command.option("COMMAND", *name, "Command to explain");
  command.examples({"kestrune-data help", "kestrune-data help check"});
  command.runs([&app, name] {
    const std::vector<std::string> names = commandNames(app);
    if (!name->empty() && std::find(names.begin(), names.end(), *name) == names.end())
      throw CouldNotWork(notFound("kestrune-data", *name, names));
    std::cout << (name->empty() ? app.help() : app.get_subcommand(*name)->help("kestrune-data"));
    return kYes;
  });
}

std::string orNear(const std::string &message, const std::string &word, const std::vector<std::string> &candidates) {
  const std::vector<std::string> near = nearTo(word, candidates, 1);
  return near.empty() ? message : message + "; did you mean '" + near.front() + "'?";
}

/// What is wrong with the arguments.
std::string usageError(const CLI::App &app, const CLI::ParseError &error) {
  const std::vector<CLI::App *> chosen = app.get_subcommands();
  const CLI::App &command = chosen.empty() ? app : *chosen.front();
  std::vector<std::string> options;
  for (const CLI::Option *const option : command.get_options()) {
    for (const std::string &name : option->get_lnames())
      options.push_back("--" + name);
  }
  const std::vector<std::string> rest = app.remaining(true);
  for (const std::string &word : rest) {
    if (word.starts_with("--"))
      return orNear("there is no option '" + word.substr(0, word.find('=')) + "'", word.substr(0, word.find('=')),
                    options);
  }
  if (!chosen.empty())
    return error.what();
  return rest.empty() ? "no command is given"
                      : orNear("there is no command '" + rest.front() + "'", rest.front(), commandNames(app));
}

int runProgram(int argc, char **argv) {
  CLI::App app(kDescription, "kestrune-data");
  app.footer(kStatus);
  app.set_version_flag("--version", "kestrune-data " KESTRUNE_VERSION);
  app.require_subcommand(1);
  Run run;
  addCommands(app, run);
  addHelpCommand(app, run);
  int status = kYes;
  std::string usage;
  try {
    app.parse(argc, argv);
    status = run();
  } catch (const CLI::Success &help) {
    app.exit(help);
  } catch (const CLI::ParseError &error) {
    usage = usageError(app, error);
  } catch (const WrongUsage &error) {
    usage = error.what();
  }
  if (!usage.empty()) {
    complain(usage);
    std::cerr << "Run kestrune-data --help for the commands.\n";
    return kCouldNotWork;
  }
  std::cout.flush(); // the answer is given when its last byte is out
  return status;
}

} // namespace

int main(int argc, char **argv) {
  std::signal(SIGPIPE, SIG_DFL); // a reader that has seen enough ends the program in silence
  std::cout.exceptions(std::ios::badbit);
  CoInitialize(nullptr);
  int status = kCouldNotWork;
  try {
    status = runProgram(argc, argv);
  } catch (CException *exception) {
    char message[512];
    exception->GetErrorMessage(message, sizeof message);
    exception->Delete();
    complain(message);
  } catch (const std::ios_base::failure &) {
    const int reason = errno;
    std::cout.exceptions(std::ios::goodbit); // the end of the process flushes once more
    complain("standard output: " + std::generic_category().message(reason));
  } catch (const std::exception &error) {
    complain(error.what());
  }
  CoUninitialize();
  return status;
}
