#pragma once

#include "StepConversion.h"
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
/// Stores the value in the model; throws Failure where the attribute cannot hold it.
void apply(const Assignment& assignment, const StepConversion& conversion);
/// Notes what was stored but is not as the schema wants it.
void noteDepartures(const Assignment& assignment, std::vector<std::string>& notes);

} // namespace kpifc
