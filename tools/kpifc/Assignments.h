#pragma once

#include "Targets.h"

#include <KpIfcCore/KpIfcAttributeDefinition.h>
#include <KpIfcCore/KpStepValue.h>

#include <string>
#include <vector>

namespace kpifc {

/// What is to be set to what.
struct Assignment {
    KP_SDAI::KpIfcEntityBase* instance;
    const KP_SDAI::KpIfcExplicitAttributeDefinition* attribute;
    std::string target; ///< for messages
    KP_SDAI::KpStepValue value;
};

/// Reads "#15.FamilyName='Meier'"; throws Failure where it is none or the attribute may not be set.
Assignment parseAssignment(const std::string& text, Targets& targets);
/// Stores all values in the model; throws Failure where an attribute cannot hold its value. Returns what was stored but
/// is not as the schema wants it, for tellAll().
std::vector<std::string> applyAll(const std::vector<Assignment>& assignments, const KP_SDAI::KpIfcModel& model);
/// Tells on standard error.
void tellAll(const std::vector<std::string>& notes);

} // namespace kpifc
