#include "kestrune/kestrune_xml.h"
#include "tools/commands.h"

#include <cerrno>
#include <csignal>
#include <exception>
#include <iostream>
#include <system_error>

namespace {

constexpr int kCouldNotWork = 2;

/// What is wrong with the arguments.
std::string usageError(const CLI::App &app, const CLI::ParseError &error) {
  if (!app.get_subcommands().empty())
    return error.what();
  const std::vector<std::string> rest = app.remaining();
  return rest.empty() ? "no command is given" : "there is no command '" + rest.front() + "'";
}

int runProgram(int argc, char **argv) {
  CLI::App app("Reads the hardware description files of the Kestrune device network.\n"
               "A FILE that is a path means that file and nothing else. A FILE that is a macro, such as\n"
               "'$StdVorlanTyp$', means what programs get: with a replacement, add-ons and the user's file.",
               "kestrune-data");
  app.footer("Status:\n"
             "  0  yes: found, or the files are sound\n"
             "  1  no: not found, or check has found faults\n"
             "  2  could not work: wrong usage, or a file that is missing or cannot be read");
  app.require_subcommand(1);
  Run run;
  addListCommand(app, run);
  addCheckCommand(app, run);
  addShowCommand(app, run);
  addClockCommand(app, run);
  addLinkedCommand(app, run);
  int status = 0;
  try {
    app.parse(argc, argv);
    status = run();
  } catch (const CLI::Success &help) {
    app.exit(help);
  } catch (const CLI::ParseError &error) {
    std::cerr << "kestrune-data: " << usageError(app, error) << "\nRun kestrune-data --help for the commands.\n";
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
    std::cerr << "kestrune-data: " << message << '\n';
  } catch (const std::ios_base::failure &) {
    const int reason = errno;
    std::cout.exceptions(std::ios::goodbit); // the end of the process flushes once more
    std::cerr << "kestrune-data: standard output: " << std::generic_category().message(reason) << '\n';
  } catch (const std::exception &error) {
    std::cerr << "kestrune-data: " << error.what() << '\n';
  }
  CoUninitialize();
  return status;
}
