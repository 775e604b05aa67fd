#pragma once

#include "Output.h"
#include "TreeItems.h"

namespace kpifc {

/// Prints the structure for people: a line for each item, indented by its level.
void printText(const BuildingTree& tree, const KP_SDAI::KpIfcModel& model, const TreeOptions& options, Output& output);
/// Prints it for programs, as one JSON object.
void printJson(const BuildingTree& tree, const KP_SDAI::KpIfcModel& model, const TreeOptions& options, Output& output);

} // namespace kpifc
