#include "plan/Departures.h"
#include "plan/Planners.h"

#include <algorithm>

namespace kpifcgen::plan {

namespace {

using Collection = PropertiesPlan::Collection;

std::string rowOf(const facts::Entity& entity, std::size_t index) {
    return className(entity.name) + "::facts(), " + std::to_string(index);
}

std::size_t indexIn(const facts::ExplicitAttribute& attribute) {
    const auto& all = attribute.owner->explicitAttributes;
    std::size_t index = 0;
    while (&all[index] != &attribute) {
        ++index;
    }
    return index;
}

/// Redeclared attributes first, then explicit and inverse ones.
Collection planCollection(const facts::Entity& entity, const Context& context) {
    Collection collection{propertyBuilder(entity.name), {}};
    const auto add = [&](const std::string& attribute, const char* base, const std::string& arguments) {
        collection.properties.push_back({propertyClass(entity.name, attribute), base, arguments});
    };
    for (const auto& attribute : entity.derivedAttributes) {
        if (const facts::ExplicitAttribute* redeclared = attribute.redeclared) {
            add(redeclared->name, "RedeclaredProperty", rowOf(*redeclared->owner, indexIn(*redeclared)));
        }
    }
    for (std::size_t i = 0; i < entity.explicitAttributes.size(); ++i) {
        add(entity.explicitAttributes[i].name, "ExplicitProperty", rowOf(entity, i));
    }
    for (std::size_t i = 0; i < entity.inverseAttributes.size(); ++i) {
        const std::string& name = entity.inverseAttributes[i].name;
        const std::string row = rowOf(entity, i);
        if (const char* related = relatedThrough(context.schema.name, entity.name, name)) {
            add(name, "HierarchyProperty", row + ", " + literal(related));
        } else {
            add(name, "InverseProperty", row);
        }
    }
    return collection;
}

} // namespace

bool hasProperties(const facts::Entity& entity) {
    return !entity.explicitAttributes.empty() || !entity.inverseAttributes.empty() ||
           std::ranges::any_of(entity.derivedAttributes,
                               [](const facts::DerivedAttribute& one) { return one.redeclared != nullptr; });
}

PropertiesPlan planProperties(const Context& context) {
    PropertiesPlan plan;
    plan.headerPath = context.names.headerPath("Properties");
    plan.include = include("Properties", context);
    plan.baseInclude = include("Property", context);
    plan.sourcePath = "properties/Properties.cpp";
    plan.entitiesInclude = include("Entities", context);
    for (const auto& entity : context.schema.entities) {
        if (hasProperties(entity)) {
            plan.collections.push_back(planCollection(entity, context));
        }
    }
    return plan;
}

} // namespace kpifcgen::plan
