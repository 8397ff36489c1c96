#include "tools/commands.h"

void addLinkedCommand(CLI::App & /*app*/, Run & /*run*/) {}
