#include "tools/commands.h"

void addClockCommand(CLI::App & /*app*/, Run & /*run*/) {}
