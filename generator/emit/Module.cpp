#include "emit/Emitters.h"

#include <algorithm>
#include <iterator>

namespace kpifcgen::emit {

std::vector<File> emitModule(const plan::ModulePlan& plan) {
    std::vector<File> files;
    const auto add = [&](std::vector<File> more) { std::ranges::move(more, std::back_inserter(files)); };
    for (const auto& enumeration : plan.enumerations) {
        add(emitEnumeration(enumeration, plan.frame));
    }
    for (const auto& select : plan.selects) {
        add(emitSelect(select, plan.frame));
    }
    for (const auto& entity : plan.entities) {
        add(emitEntity(entity, plan.frame));
    }
    add(emitSchema(plan.schema, plan.frame));
    add(emitProperties(plan.properties, plan.frame));
    add(emitDescriptors(plan.descriptors, plan.frame));
    return files;
}

} // namespace kpifcgen::emit
