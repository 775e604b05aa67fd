#include "plan/Planners.h"

namespace kpifcgen::plan {

DescriptorsPlan planDescriptors(const ModulePlan& plan) {
    DescriptorsPlan descriptors;
    descriptors.path = moduleSource("Descriptors");
    for (const char* const which : {"value", "pointer", "array"}) {
        for (const auto& select : plan.selects) {
            if (which != std::string("array") || !select.heldIn.empty()) {
                descriptors.selects.push_back("&" + selectDescriptor(select.className, which));
            }
        }
    }
    for (const auto& select : plan.selects) {
        if (!select.heldIn.empty()) {
            descriptors.aggregates.push_back("&" + selectDescriptor(select.className, select.heldIn));
        }
        descriptors.includes.push_back(select.files.include);
    }
    for (const auto& enumeration : plan.enumerations) {
        descriptors.enumerations.push_back("&" + enumeration.descriptor);
        descriptors.includes.push_back(enumeration.files.include);
    }
    sortUnique(descriptors.includes);
    return descriptors;
}

} // namespace kpifcgen::plan
