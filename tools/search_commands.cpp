#include "tools/commands.h"
#include "tools/document.h"
#include "tools/table.h"

#include <iostream>
#include <memory>

namespace {

struct ClockOptions {
  std::string file;
  int scheme = 0;
  std::string clock;
  std::string multiplier;
};

int findClock(const ClockOptions &options) {
  const OpenedDocument opened = openDocument(options.file);
  auto *const document = dynamic_cast<CVorlanTyp4 *>(opened.document.get());
  if (opened.failed() || document == nullptr) {
    const std::string reason =
        opened.failed() ? failureText(options.file, opened) : options.file + " is no chip data file";
    std::cerr << "kestrune-data: " << shown(reason) << '\n';
    return 2;
  }
  CClock *clock = nullptr;
  CMultiplier *multiplier = nullptr;
  const bool found = document->ClockingSchemes.FindByDisplay(options.scheme, options.clock.c_str(),
                                                             options.multiplier.c_str(), &clock, &multiplier);
  if (clock != nullptr) {
    std::cout << "clock       " << shown(clock->Display()) << ", " << clock->Value() << " kHz, encoding "
              << shown(clock->Encoding()) << '\n';
  }
  if (found) {
    std::cout << "multiplier  " << shown(multiplier->Display()) << ", " << multiplier->Value() << ", encoding "
              << shown(multiplier->Encoding()) << '\n';
    return 0;
  }
  std::cerr << "kestrune-data: scheme " << options.scheme << " has no such "
            << (clock != nullptr ? "multiplier for this clock" : "clock") << '\n';
  return 1;
}

struct LinkedOptions {
  int model = 0;
  int other = 0;
};

int linked(const LinkedOptions &options) {
  // The query itself answers "not compatible" where it cannot read the file.
  constexpr const char *kFile = "$StdVorlanTyp$";
  OpenedDocument opened;
  opened.result = CVorlanTyp3().LoadFromFile(kFile);
  if (opened.failed()) {
    opened.reason = reasonOf(opened.result);
    std::cerr << "kestrune-data: " << shown(failureText(kFile, opened)) << '\n';
    return 2;
  }
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
  command->callback([&run, options] { run = [options] { return findClock(*options); }; });
}

void addLinkedCommand(CLI::App &app, Run &run) {
  CLI::App *const command =
      app.add_subcommand("linked", "Tell whether two models of the standard chip data file are link compatible");
  const auto options = std::make_shared<LinkedOptions>();
  command->add_option("MODEL", options->model, "Model number")->required();
  command->add_option("OTHER", options->other, "The other model's number")->required();
  command->callback([&run, options] { run = [options] { return linked(*options); }; });
}
