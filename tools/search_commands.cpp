#include "tools/commands.h"
#include "tools/document.h"
#include "tools/table.h"

#include <iostream>
#include <memory>
#include <sstream>

namespace {

struct ClockOptions {
  std::string file;
  int scheme = 0;
  std::string clock;
  std::string multiplier;
};

int findClock(const ClockOptions &options) {
  const OpenedDocument opened = openDocument(options.file);
  if (opened.failed())
    return couldNotWork(options.file, opened);
  auto *const document = dynamic_cast<CVorlanTyp4 *>(opened.document.get());
  if (document == nullptr)
    return couldNotWork(options.file + ": is not a chip data file");
  CClock *clock = nullptr;
  CMultiplier *multiplier = nullptr;
  if (!document->ClockingSchemes.FindByDisplay(options.scheme, options.clock.c_str(), options.multiplier.c_str(),
                                               &clock, &multiplier)) {
    const std::string missing =
        clock != nullptr ? " has no multiplier '" + options.multiplier + "' for this clock" : " has no such clock";
    std::cerr << "kestrune-data: " << shown(options.file + ": scheme " + std::to_string(options.scheme) + missing)
              << '\n';
    return 1;
  }
  // A value that is not a number throws, and then nothing of the answer is printed.
  std::ostringstream answer;
  answer << "clock       " << shown(clock->Display()) << ", " << clock->Value() << " kHz, encoding "
         << shown(clock->Encoding()) << '\n'
         << "multiplier  " << shown(multiplier->Display()) << ", " << multiplier->Value() << ", encoding "
         << shown(multiplier->Encoding()) << '\n';
  std::cout << answer.str();
  return 0;
}

int clock(const ClockOptions &options) {
  try {
    return findClock(options);
  } catch (CKRXException *exception) {
    const std::string message = static_cast<const char *>(exception->GetFormattedMessage());
    exception->Delete();
    return couldNotWork(options.file + ": " + message);
  }
}

struct LinkedOptions {
  int model = 0;
  int other = 0;
};

int linked(const LinkedOptions &options) {
  // The query itself answers "not compatible" where it cannot read the file.
  constexpr const char *kFile = "$StdVorlanTyp$";
  OpenedDocument opened;
  CVorlanTyp3 document;
  opened.result = document.LoadFromFile(kFile);
  opened.takeReport(document);
  if (opened.failed())
    return couldNotWork(kFile, opened);
  const bool compatible = isLinkCompatible(options.model, options.other);
  std::cout << "model " << options.model << (compatible ? " is" : " is not") << " link compatible with model "
            << options.other << '\n';
  return compatible ? 0 : 1;
}

} // namespace

void addClockCommand(CLI::App &app, Run &run) {
  CLI::App *const command = app.add_subcommand("clock", "Find a clock and a multiplier of a clocking scheme");
  const auto options = std::make_shared<ClockOptions>();
  command->add_option("FILE", options->file, "Chip data file")->required();
  command->add_option("SCHEME", options->scheme, "Number of the scheme")->required();
  command->add_option("CLOCK", options->clock, "The clock as it is displayed, such as '10 MHz'")->required();
  command->add_option("MULTIPLIER", options->multiplier, "The multiplier as it is displayed, such as 1/2")->required();
  command->callback([&run, options] { run = [options] { return clock(*options); }; });
}

void addLinkedCommand(CLI::App &app, Run &run) {
  CLI::App *const command =
      app.add_subcommand("linked", "Print whether two models of the standard chip data file are link compatible");
  const auto options = std::make_shared<LinkedOptions>();
  command->add_option("MODEL", options->model, "Model number")->required();
  command->add_option("OTHER", options->other, "The other model's number")->required();
  command->callback([&run, options] { run = [options] { return linked(*options); }; });
}
