#pragma once

#include "CommandLine.h"

#include <string>
#include <vector>

namespace kpifc {

/// Scripts that tell a shell which words can stand where in a command line of kpifc.
std::string bashCompletion(const std::vector<Command>& commands);
std::string zshCompletion(const std::vector<Command>& commands);
std::string fishCompletion(const std::vector<Command>& commands);

} // namespace kpifc
