#include "tools/commands.h"

void addAddCommand(CLI::App & /*app*/, Run & /*run*/) {}
