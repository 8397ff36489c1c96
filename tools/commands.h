#pragma once

#include <CLI/CLI.hpp>
#include <functional>

// The commands of kestrune-data. Each adds itself to the program with its options and, when it is chosen, puts what it
// does into `run`, which returns the status: 0 for success, 1 where nothing was found, 2 where it could not work.

using Run = std::function<int()>;

void addListCommand(CLI::App &app, Run &run);
void addCheckCommand(CLI::App &app, Run &run);
void addShowCommand(CLI::App &app, Run &run);
void addClockCommand(CLI::App &app, Run &run);
void addLinkedCommand(CLI::App &app, Run &run);
