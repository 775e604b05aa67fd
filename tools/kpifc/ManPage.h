#pragma once

#include "CommandLine.h"

#include <string>
#include <vector>

namespace kpifc {

/// Pages for man(1), in roff with the macros of man(7): kpifc-COMMAND(1), and kpifc(1), which leads to the others.
std::string manPage(const Command& command);
std::string manPage(const std::vector<Command>& commands);

} // namespace kpifc
