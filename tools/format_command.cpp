#include "tools/commands.h"

void addFormatCommand(CLI::App & /*app*/, Run & /*run*/) {}
