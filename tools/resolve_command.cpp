#include "tools/commands.h"

void addResolveCommand(CLI::App & /*app*/, Run & /*run*/) {}
