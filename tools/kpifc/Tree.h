#pragma once

#include "Output.h"
#include "TreeItems.h"

namespace kpifc {

/// Prints the structure for people: a line for each item, indented by its level.
void printText(const BuildingTree& tree, const KP_SDAI::KpIfcModel& model, const TreeOptions& options, Output& output);
/// Prints it for programs, as one JSON object in a line, which begins with `opening` (FileLabels).
void printJson(const BuildingTree& tree, const KP_SDAI::KpIfcModel& model, const TreeOptions& options,
               const std::string& opening, Output& output);

} // namespace kpifc
