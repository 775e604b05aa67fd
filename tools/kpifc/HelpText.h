#pragma once

#include "CommandLine.h"

#include <string>
#include <vector>

/// What help tells, in lines that fit the terminal.
namespace kpifc {

/// Something that help tells of besides commands.
struct Topic {
    const char* name;
    const char* summary;
    std::string text; ///< as Command::text
};
std::vector<Topic> topics(const std::vector<Command>& commands);

std::string helpOf(const Command& command);
std::string helpOf(const Topic& topic);
std::string helpOfAll(const std::vector<Command>& commands);
/// All commands with a line for each.
std::string overview(const std::vector<Command>& commands);

/// "-o, --output FILE", without what is not told.
std::string spelling(const Option& option);

} // namespace kpifc
