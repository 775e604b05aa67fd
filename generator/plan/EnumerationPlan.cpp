#include "plan/Planners.h"

namespace kpifcgen::plan {

EnumerationPlan planEnumeration(const facts::Enumeration& enumeration, const Context& context) {
    const std::string& name = enumeration.name;
    const auto count = enumeration.literals.size();
    EnumerationPlan plan;
    plan.files.headerPath = context.names.headerPath(name);
    plan.files.sourcePath = typeSource(name);
    plan.files.include = include(name, context);
    plan.files.headerIncludes = {include("Enumeration", context)};
    plan.name = name;
    plan.className = className(name);
    plan.summary = "EXPRESS enumeration with " + std::to_string(count) + (count == 1 ? " literal." : " literals.");
    for (const std::string& literal : enumeration.literals) {
        plan.literals.push_back({enumConstant(name, literal), literal});
    }
    plan.unsetConstant = enumUnsetConstant(name);
    plan.literalTable = enumLiteralTable(name);
    plan.facts = enumFacts(name);
    plan.descriptor = enumDescriptor(name);
    plan.descriptorName = context.names.space + "::" + name;
    return plan;
}

} // namespace kpifcgen::plan
