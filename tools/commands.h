#pragma once

#include "tools/command_line.h"

// The commands of kestrune-data. Each adds itself to the program with its options and, when it is chosen, puts what it
// does into `run`.

void addListCommand(CLI::App &app, Run &run);
void addShowCommand(CLI::App &app, Run &run);
void addGetCommand(CLI::App &app, Run &run);
void addDumpCommand(CLI::App &app, Run &run);
void addSetCommand(CLI::App &app, Run &run);
void addAddCommand(CLI::App &app, Run &run);
void addRemoveCommand(CLI::App &app, Run &run);
void addFormatCommand(CLI::App &app, Run &run);
void addConvertCommand(CLI::App &app, Run &run);
void addDiffCommand(CLI::App &app, Run &run);
void addClockCommand(CLI::App &app, Run &run);
void addLinkedCommand(CLI::App &app, Run &run);
void addResolveCommand(CLI::App &app, Run &run);
void addSchemaCommand(CLI::App &app, Run &run);
void addCheckCommand(CLI::App &app, Run &run);
void addReportCommand(CLI::App &app, Run &run);
void addCompleteCommand(CLI::App &app, Run &run);
