#pragma once

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

class Command;

// What commands print, in the three forms that they share.

using Json = nlohmann::ordered_json;

/// The form of a command's answer.
struct Output {
  enum class Form { kText, kJson, kTsv };
  enum class Color { kAuto, kAlways, kNever };
  Form form = Form::kText;
  Color color = Color::kAuto;
  bool quiet = false; ///< Nothing but the status.

  bool isJson() const { return form == Form::kJson; }
  bool isTsv() const { return form == Form::kTsv; }
  bool isText() const { return form == Form::kText; }
};

/// Gives a command the options --json and --tsv, if they make sense for it, --quiet and --color.
struct OutputOptions {
  bool json = true;
  bool tsv = true;
};
std::shared_ptr<Output> addOutput(Command &command, OutputOptions which = {});

/// A text in a colour, where colours are wanted: `auto` means on a terminal, unless NO_COLOR is set.
enum class Ink { kPlain, kRed, kYellow, kGreen, kCyan, kBold };
std::string inked(const Output &output, Ink ink, const std::string &text);

/// Prints the one document that --json stands for.
void printJson(const Json &document);

/// A line of fields with tabs between them; a tab, line feed or backslash in a field is \t, \n or \\.
void printTsv(const std::vector<std::string> &fields);

/// A text from a file as JSON can carry it; bytes that are not UTF-8 become U+FFFD.
Json jsonText(std::string_view text);
