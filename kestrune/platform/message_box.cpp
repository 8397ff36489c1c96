#include "kestrune/platform/message_box.h"

#include "kestrune/platform/ascii.h"
#include "kestrune/platform/hook.h"
#include "kestrune/platform/lasting.h"

#include <cstdio>
#include <span>
#include <string>
#include <unistd.h>

namespace {

struct Button {
  int id;
  const char *name;
};

constexpr Button kOk[] = {{IDOK, "OK"}};
constexpr Button kOkCancel[] = {{IDOK, "OK"}, {IDCANCEL, "Cancel"}};
constexpr Button kAbortRetryIgnore[] = {{IDABORT, "Abort"}, {IDRETRY, "Retry"}, {IDIGNORE, "Ignore"}};
constexpr Button kYesNoCancel[] = {{IDYES, "Yes"}, {IDNO, "No"}, {IDCANCEL, "Cancel"}};
constexpr Button kYesNo[] = {{IDYES, "Yes"}, {IDNO, "No"}};
constexpr Button kRetryCancel[] = {{IDRETRY, "Retry"}, {IDCANCEL, "Cancel"}};

std::span<const Button> buttonsOf(UINT nType) {
  switch (nType & 0xFU) {
  case MB_OKCANCEL:
    return kOkCancel;
  case MB_ABORTRETRYIGNORE:
    return kAbortRetryIgnore;
  case MB_YESNOCANCEL:
    return kYesNoCancel;
  case MB_YESNO:
    return kYesNo;
  case MB_RETRYCANCEL:
    return kRetryCancel;
  default:
    return kOk;
  }
}

/// Reads one line of the standard input without its line end; false at the end of the input.
bool readLine(std::string &line) {
  line.clear();
  int c = std::getchar();
  if (c == EOF)
    return false;
  for (; c != EOF && c != '\n'; c = std::getchar())
    line += static_cast<char>(c);
  return true;
}

/// Asks until the answer is a button or the start of its name; an empty answer selects the default.
int ask(std::span<const Button> buttons, const Button &preset) {
  std::string line;
  do {
    const char *separator = "";
    for (const Button &button : buttons) {
      std::fprintf(stderr, "%s%s", separator, button.name);
      separator = ", ";
    }
    std::fprintf(stderr, "? [%s] ", preset.name);
    if (!readLine(line))
      return preset.id;
    const std::string answer = kestrune::platform::AsciiLower(line);
    for (const Button &button : buttons)
      if (!answer.empty() && kestrune::platform::AsciiLower(button.name).starts_with(answer))
        return button.id;
  } while (!line.empty());
  return preset.id;
}

int showByDefault(const char *text, UINT nType) {
  std::fprintf(stderr, "%s\n", text);
  const auto buttons = buttonsOf(nType);
  const std::size_t index = (nType >> 8U) & 0xFU;
  const Button &preset = buttons[index < buttons.size() ? index : 0];
  if (buttons.size() == 1 || ::isatty(STDIN_FILENO) == 0 || ::isatty(STDERR_FILENO) == 0)
    return preset.id;
  return ask(buttons, preset);
}

constinit kestrune::platform::Lasting<kestrune::platform::Hook<kestrune::platform::MessageBoxHandler>> theHandler;

[[gnu::destructor]] void releaseHandler() { theHandler->set(nullptr); }

} // namespace

namespace kestrune::platform {

void SetMessageBoxHandler(MessageBoxHandler handler) { theHandler->set(std::move(handler)); }

} // namespace kestrune::platform

int AfxMessageBox(const char *text, UINT nType, UINT nIDHelp) {
  if (text == nullptr)
    text = "";
  if (const auto handler = theHandler->get())
    return (*handler)(text, nType, nIDHelp);
  return showByDefault(text, nType);
}
