#pragma once

#include "CommandLine.h"

#include <vector>

namespace kpifc {

/// The description of each subcommand, with places of its own.
Command checkCommand();
Command completionCommand();
Command convertCommand();
Command diffCommand();
Command dumpCommand();
Command eraseCommand();
Command extractCommand();
Command getCommand();
Command headerCommand();
Command helpCommand();
Command infoCommand();
Command newCommand();
Command propsCommand();
Command schemaCommand();
Command setCommand();
Command showCommand();
Command treeCommand();

/// All of them, in the order in which help tells them.
std::vector<Command> allCommands();

} // namespace kpifc
