#include "tools/commands.h"

void addDiffCommand(CLI::App & /*app*/, Run & /*run*/) {}
