#include "tools/commands.h"

void addConvertCommand(CLI::App & /*app*/, Run & /*run*/) {}
