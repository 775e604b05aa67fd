#include "plan/Planners.h"

#include "facts/Text.h"

namespace kpifcgen::plan {

namespace {

/// The dictionary's name for what a defined type stands for: without width, numbers as reals; empty for an aggregation.
std::string underlyingName(const facts::TypeRef& type) {
    if (const auto* simple = std::get_if<facts::SimpleType>(&type)) {
        return std::string(
            facts::spell(simple->kind == facts::SimpleKind::Number ? facts::SimpleKind::Real : simple->kind));
    }
    const auto* defined = std::get_if<const facts::DefinedType*>(&type);
    return defined ? lowerCase((*defined)->name) : std::string();
}

} // namespace

SchemaPlan planSchema(const Context& context) {
    SchemaPlan plan;
    plan.builderClass = context.names.builderClass;
    plan.umbrellaPath = context.names.headerPath("Entities");
    plan.umbrellaInclude = include("Entities", context);
    for (const auto& entity : context.schema.entities) {
        plan.entityIncludes.push_back(include(entity.name, context));
    }
    sortUnique(plan.entityIncludes);
    plan.simpleTypesPath = schemaSource("SimpleDefinedTypes");
    for (const auto& type : context.schema.definedTypes) {
        if (std::string underlying = underlyingName(type.type); !underlying.empty()) {
            plan.simpleTypes.push_back({type.name, std::move(underlying)});
        }
    }
    plan.entityTypesPath = schemaSource("EntityTypes");
    for (const facts::Entity* entity : context.schema.supertypesFirst) {
        plan.entityTypes.push_back(
            {upperCase(entity->name), className(entity->name),
             entity->supertype ? entityTypeOf(className(entity->supertype->name)) : std::string()});
    }
    return plan;
}

} // namespace kpifcgen::plan
