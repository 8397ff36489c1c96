#include "tools/commands.h"

void addSetCommand(CLI::App & /*app*/, Run & /*run*/) {}
