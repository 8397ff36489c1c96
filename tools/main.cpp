#include "kestrune/kestrune_xml.h"
#include "tools/commands.h"

#include <exception>
#include <iostream>

namespace {

constexpr int kCouldNotWork = 2;

int runProgram(int argc, char **argv) {
  CLI::App app("Reads the hardware description files of the Kestrune device network.\n"
               "A FILE is a path, or a name with macros such as '$StdVorlanTyp$'.",
               "kestrune-data");
  app.footer("Status: 0 success, 1 not found or a faulty file, 2 could not work.");
  app.require_subcommand(1);
  Run run;
  addListCommand(app, run);
  addCheckCommand(app, run);
  addShowCommand(app, run);
  addClockCommand(app, run);
  addLinkedCommand(app, run);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError &error) {
    return app.exit(error) == 0 ? 0 : kCouldNotWork;
  }
  const int status = run();
  // What was asked for has not arrived before the last byte is out.
  std::cout.flush();
  if (!std::cout) {
    std::cerr << "kestrune-data: cannot write to the standard output\n";
    return kCouldNotWork;
  }
  return status;
}

} // namespace

int main(int argc, char **argv) {
  CoInitialize(nullptr);
  int status = kCouldNotWork;
  try {
    status = runProgram(argc, argv);
  } catch (CException *exception) {
    char message[512];
    exception->GetErrorMessage(message, sizeof message);
    exception->Delete();
    std::cerr << "kestrune-data: " << message << '\n';
  } catch (const std::exception &error) {
    std::cerr << "kestrune-data: " << error.what() << '\n';
  }
  CoUninitialize();
  return status;
}
