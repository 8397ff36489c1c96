#include "tools/commands.h"

void addListCommand(CLI::App & /*app*/, Run & /*run*/) {}
