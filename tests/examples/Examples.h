#pragma once

#include "Runner.h"

#include <string>

/// A command for WorkFolder::run() that finds the examples by their names.
inline std::string withExamples(const std::string& command) {
    return "PATH=" + quoted(KP_EXAMPLES) + ":$PATH; " + command;
}
