#pragma once

#include "Failure.h"

#include <CLI/App.hpp>

#include <functional>

namespace kpifc {

/// What the chosen subcommand does. Throws Failure where it could not be done.
using Action = std::function<ExitCode()>;

/// Each adds its subcommand to the application; parsing one sets `action`.
void addInfo(CLI::App& app, Action& action);
void addCheck(CLI::App& app, Action& action);
void addConvert(CLI::App& app, Action& action);
void addDump(CLI::App& app, Action& action);
void addTree(CLI::App& app, Action& action);
void addShow(CLI::App& app, Action& action);
void addGet(CLI::App& app, Action& action);
void addSet(CLI::App& app, Action& action);
void addNew(CLI::App& app, Action& action);
void addErase(CLI::App& app, Action& action);
void addExtract(CLI::App& app, Action& action);
void addProps(CLI::App& app, Action& action);
void addHeader(CLI::App& app, Action& action);
void addDiff(CLI::App& app, Action& action);
void addReport(CLI::App& app, Action& action);
void addSchema(CLI::App& app, Action& action);

} // namespace kpifc
