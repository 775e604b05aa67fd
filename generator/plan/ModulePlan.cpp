#include "plan/ModulePlan.h"

#include "plan/Planners.h"

#include <algorithm>
#include <unordered_map>

namespace kpifcgen::plan {

namespace {

void checkHeaders(const Context& context) {
    const auto check = [&](const auto& declarations) {
        for (const auto& declaration : declarations) {
            if (context.names.isHeaderTaken(declaration.name)) {
                context.diagnostics.push_back(
                    {declaration.at, "the module has a header of its own named '" + declaration.name + "'"});
            }
        }
    };
    check(context.schema.enumerations);
    check(context.schema.selects);
    check(context.schema.entities);
}

/// Different declarations can lead to the same name: literal C_D of enumeration B and literal D of B_C.
void checkNames(const Context& context) {
    std::unordered_map<std::string, std::string> owners;
    const auto take = [&](const std::string& name, const auto& declaration) {
        const auto [entry, added] = owners.emplace(name, declaration.name);
        if (!added) {
            context.diagnostics.push_back({declaration.at, "the generated name '" + name + "' of '" + declaration.name +
                                                               "' is already one of '" + entry->second + "'"});
        }
    };
    for (const auto& enumeration : context.schema.enumerations) {
        take(className(enumeration.name), enumeration);
        take(enumUnsetConstant(enumeration.name), enumeration);
        for (const std::string& literal : enumeration.literals) {
            take(enumConstant(enumeration.name, literal), enumeration);
        }
    }
    for (const auto& select : context.schema.selects) {
        take(className(select.name), select);
    }
    for (const auto& entity : context.schema.entities) {
        take(className(entity.name), entity);
    }
}

std::set<std::string> classNames(const facts::Schema& schema) {
    std::set<std::string> names;
    const auto add = [&](const auto& declarations) {
        for (const auto& declaration : declarations) {
            names.insert(className(declaration.name));
        }
    };
    add(schema.enumerations);
    add(schema.selects);
    add(schema.entities);
    return names;
}

} // namespace

std::string include(std::string_view file, const Context& context) {
    return "<" + context.names.header(file) + ">";
}

std::string literal(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

void sortUnique(std::vector<std::string>& texts) {
    std::ranges::sort(texts);
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
}

std::optional<ModulePlan> planModule(const facts::Schema& schema, std::string_view schemaFile,
                                     facts::Diagnostics& diagnostics) {
    const Context context{schema, SchemaNames(schema.name), classNames(schema), diagnostics};
    checkHeaders(context);
    checkNames(context);
    ModulePlan plan;
    plan.frame = {std::string(schemaFile), context.names.space, context.names.exportMacro};
    for (const auto& enumeration : schema.enumerations) {
        plan.enumerations.push_back(planEnumeration(enumeration, context));
    }
    for (const auto& select : schema.selects) {
        plan.selects.push_back(planSelect(select, context));
    }
    for (const auto& entity : schema.entities) {
        plan.entities.push_back(planEntity(entity, context));
    }
    plan.schema = planSchema(context);
    plan.properties = planProperties(context);
    plan.descriptors = planDescriptors(plan);
    return diagnostics.empty() ? std::optional(std::move(plan)) : std::nullopt;
}

} // namespace kpifcgen::plan
