#include "tools/command_line.h"

#include <CLI/CLI.hpp>

Argument &Argument::required(bool isRequired) {
  m_option->required(isRequired);
  return *this;
}

Argument &Argument::called(const char *value) {
  m_option->type_name(value);
  return *this;
}

Argument &Argument::described(const char *text) {
  m_option->description(text);
  return *this;
}

Argument &Argument::separated() {
  m_option->delimiter(',');
  return *this;
}

Argument &Argument::each(const std::function<void(const std::string &)> &take) {
  m_option->each(take);
  return *this;
}

Argument &Argument::positive() {
  m_option->check(CLI::PositiveNumber);
  return *this;
}

Argument &Argument::excludes(const Argument &other) {
  m_option->excludes(other.m_option);
  return *this;
}

Argument &Argument::hidden() {
  m_option->group("");
  return *this;
}

Command::Command(CLI::App &app, Run &run, const char *name, const char *text)
    : m_command(*app.add_subcommand(name, text)), m_run(run) {}

Argument Command::option(const std::string &names, std::string &value, const char *text) {
  return Argument(*m_command.add_option(names, value, text));
}

Argument Command::option(const std::string &names, std::vector<std::string> &values, const char *text) {
  CLI::Option &option = *m_command.add_option(names, values, text);
  if (!option.get_positional())
    option.allow_extra_args(false);
  return Argument(option);
}

Argument Command::option(const std::string &names, int &value, const char *text) {
  return Argument(*m_command.add_option(names, value, text));
}

Argument Command::option(const std::string &names, std::size_t &value, const char *text) {
  return Argument(*m_command.add_option(names, value, text));
}

Argument Command::flag(const std::string &names, bool &value, const char *text) {
  return Argument(*m_command.add_flag(names, value, text));
}

Argument Command::flag(const std::string &names, const std::function<void()> &set, const char *text) {
  return Argument(*m_command.add_flag_callback(names, set, text));
}

Argument Command::choice(const std::string &names, const std::vector<std::string> &words,
                         const std::function<void(const std::string &)> &take, const char *text) {
  return Argument(*m_command.add_option_function<std::string>(names, take, text)->check(CLI::IsMember(words)));
}

Argument Command::argument(const char *name) { return Argument(*m_command.get_option(name)); }

void Command::hide() { m_command.group(""); }

void Command::examples(const std::vector<std::string> &lines) {
  std::string text = "Examples:";
  for (const std::string &line : lines)
    text += "\n  " + line;
  m_command.footer(text);
}

void Command::runs(const Run &work) {
  m_command.callback([this_run = &m_run, work] { *this_run = work; });
}
