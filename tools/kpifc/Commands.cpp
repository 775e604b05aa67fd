#include "Commands.h"

namespace kpifc {

std::vector<Command> allCommands() {
    return {
        infoCommand(),  checkCommand(),   treeCommand(),   showCommand(),       getCommand(),  propsCommand(),
        dumpCommand(),  diffCommand(),    headerCommand(), convertCommand(),    setCommand(),  newCommand(),
        eraseCommand(), extractCommand(), schemaCommand(), completionCommand(), helpCommand(),
    };
}

} // namespace kpifc
