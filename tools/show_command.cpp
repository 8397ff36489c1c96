#include "tools/commands.h"

void addShowCommand(CLI::App & /*app*/, Run & /*run*/) {}
