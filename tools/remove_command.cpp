#include "tools/commands.h"

void addRemoveCommand(CLI::App & /*app*/, Run & /*run*/) {}
