#include "tools/commands.h"

void addSchemaCommand(CLI::App & /*app*/, Run & /*run*/) {}
