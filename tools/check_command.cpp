#include "tools/commands.h"

void addCheckCommand(CLI::App & /*app*/, Run & /*run*/) {}
