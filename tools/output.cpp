#include "tools/output.h"

#include "tools/command_line.h"

#include <cstdlib>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <unistd.h>

std::shared_ptr<Output> addOutput(Command &command, OutputOptions which) {
  auto output = std::make_shared<Output>();
  std::optional<Argument> json;
  if (which.json)
    json = command.flag(
        "--json", [output] { output->form = Output::Form::kJson; }, "Print one JSON document");
  if (which.tsv) {
    Argument tsv = command.flag(
        "--tsv", [output] { output->form = Output::Form::kTsv; },
        "Print a header line and lines of fields with tabs between them");
    if (json)
      tsv.excludes(*json);
  }
  command.flag("--quiet,-q", output->quiet, "Print nothing; the status is the answer");
  static const std::map<std::string, Output::Color> kColors = {
      {"auto", Output::Color::kAuto}, {"always", Output::Color::kAlways}, {"never", Output::Color::kNever}};
  command
      .choice("--color", output->color, kColors,
              "When to print in colour: auto (on a terminal, without NO_COLOR), always or never")
      .called("WHEN");
  return output;
}

std::string inked(const Output &output, Ink ink, const std::string &text) {
  static const bool forTerminal = [] {
    const char *const noColor = std::getenv("NO_COLOR");
    return isatty(STDOUT_FILENO) == 1 && (noColor == nullptr || *noColor == '\0');
  }();
  const bool wanted = output.color == Output::Color::kAlways || (output.color == Output::Color::kAuto && forTerminal);
  if (!wanted || ink == Ink::kPlain || text.empty())
    return text;
  static const std::map<Ink, const char *> kCodes = {
      {Ink::kRed, "31"}, {Ink::kYellow, "33"}, {Ink::kGreen, "32"}, {Ink::kCyan, "36"}, {Ink::kBold, "1"}};
  return std::string("\x1B[") + kCodes.at(ink) + "m" + text + "\x1B[0m";
}

void printJson(const Json &document) {
  std::cout << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

void printTsv(const std::vector<std::string> &fields) {
  const char *separator = "";
  for (const std::string &field : fields) {
    std::cout << separator;
    separator = "\t";
    for (const char character : field) {
      switch (character) {
      case '\t':
        std::cout << "\\t";
        break;
      case '\n':
        std::cout << "\\n";
        break;
      case '\\':
        std::cout << "\\\\";
        break;
      default:
        std::cout << character;
      }
    }
  }
  std::cout << '\n';
}

Json jsonText(std::string_view text) { return std::string(text); }
