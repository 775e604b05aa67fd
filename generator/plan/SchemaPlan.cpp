#include "facts/Text.h"
#include "plan/Departures.h"
#include "plan/DictionaryNames.h"
#include "plan/Planners.h"

#include <algorithm>
#include <set>

namespace kpifcgen::plan {

namespace {

using Row = SchemaPlan::Row;

/// The builder's constant for "?" and for the bounds of what is no set.
constexpr auto noBound = "kNoBound";

std::string bound(std::optional<int> value) {
    return value ? std::to_string(*value) : noBound;
}

class SchemaPlanner {
public:
    explicit SchemaPlanner(const Context& context) : m_context(context), m_schema(context.schema) {}

    SchemaPlan plan() {
        m_plan.builderClass = m_context.names.builderClass;
        m_plan.umbrellaPath = m_context.names.headerPath("Entities");
        m_plan.entityIncludes = includes(m_schema.entities);
        planSimpleTypes();
        planEnumerations();
        planEntities();
        planSelects();
        planAggregations();
        return std::move(m_plan);
    }

private:
    std::vector<std::string> includes(const auto& declarations) const {
        std::vector<std::string> all;
        for (const auto& declaration : declarations) {
            all.push_back(include(declaration.name, m_context));
        }
        sortUnique(all);
        return all;
    }

    void planSimpleTypes() {
        m_plan.simpleTypesStep = {schemaSource("SimpleDefinedTypes"), {}};
        for (const auto& type : m_schema.definedTypes) {
            if (const auto* simple = std::get_if<facts::SimpleType>(&type.type)) {
                m_plan.simpleTypes.push_back({literal(type.name), literal(dictionaryName(*simple))});
            } else if (const auto* defined = std::get_if<const facts::DefinedType*>(&type.type)) {
                m_plan.simpleTypes.push_back({literal(type.name), literal(lowerCase((*defined)->name))});
            }
        }
    }

    void planEnumerations() {
        m_plan.enumerationsStep = {schemaSource("EnumerationTypes"), includes(m_schema.enumerations)};
        std::vector<std::string> names;
        for (const auto& enumeration : m_schema.enumerations) {
            names.push_back(enumeration.name);
        }
        std::ranges::sort(names);
        for (const std::string& name : names) {
            m_plan.enumerations.push_back({literal(lowerCase(name)), "&" + enumFacts(name)});
        }
    }

    void planEntities() {
        m_plan.entitiesStep = {schemaSource("EntityTypes"),
                               {include("Entities", m_context), include("Properties", m_context)}};
        for (const facts::Entity* entity : m_schema.supertypesFirst) {
            const std::string name = className(entity->name);
            const facts::Entity* supertype = entity->supertype;
            SchemaPlan::EntityRow row;
            row.entity = {literal(upperCase(entity->name)),
                          "createEntity<" + name + ">",
                          "&" + entityTypeOf(name),
                          supertype ? "&" + entityTypeOf(className(supertype->name)) : "nullptr",
                          name + "::facts()",
                          hasProperties(*entity) ? propertyBuilder(entity->name) : std::string(emptyPropertyBuilder)};
            for (const auto& attribute : entity->explicitAttributes) {
                row.explicitAttributes.push_back({literal(attribute.name), literal(attributeTypeName(attribute.type))});
            }
            for (const auto& attribute : entity->derivedAttributes) {
                row.derivedAttributes.push_back(derivedRow(attribute));
            }
            for (const auto& attribute : entity->inverseAttributes) {
                row.inverseAttributes.push_back(inverseRow(attribute));
            }
            m_plan.entities.push_back(std::move(row));
        }
    }

    Row derivedRow(const facts::DerivedAttribute& attribute) {
        if (const auto* aggregation = std::get_if<const facts::Aggregation*>(&attribute.type)) {
            checkHasClass(attribute, **aggregation);
        }
        const std::string redeclaredIn = attribute.redeclared ? attribute.redeclared->owner->name : "";
        return {literal(derivedAttributeName(attribute)), literal(attributeTypeName(attribute.type)),
                literal(redeclaredIn)};
    }

    Row inverseRow(const facts::InverseAttribute& attribute) {
        const std::string inverted = literal(attribute.inverted->name);
        if (!attribute.aggregation) {
            return {literal(attribute.name), noBound, noBound, literal(""), inverted};
        }
        checkHasClass(attribute, *attribute.aggregation);
        const facts::Bounds& bounds = attribute.aggregation->bounds;
        return {literal(attribute.name), bound(bounds.low), bound(bounds.high),
                literal(lowerCase(attribute.target->name)), inverted};
    }

    /// Explicit attributes were checked with their classes.
    void checkHasClass(const auto& attribute, const facts::Aggregation& aggregation) {
        if (aggregation.kind == facts::AggregateKind::Bag) {
            m_context.diagnostics.push_back({attribute.at, "attribute '" + attribute.name +
                                                               "': the dictionary has no class for a '" +
                                                               aggregation.spelling + "'"});
        }
    }

    void planSelects() {
        m_plan.selectsStep = {schemaSource("SelectTypes"), includes(m_schema.selects)};
        for (const auto& select : m_schema.selects) {
            SchemaPlan::SelectRow row;
            row.select = {literal(select.name), "&" + selectTypeOf(className(select.name))};
            for (const facts::TypeRef& member : select.members) {
                row.members.push_back(literal(memberTypeName(member)));
            }
            m_plan.selects.push_back(std::move(row));
        }
    }

    void planAggregations() {
        m_plan.aggregationsStep = {schemaSource("AggregationTypes"), {}};
        for (const auto& type : m_schema.definedTypes) {
            if (const auto* aggregation = std::get_if<const facts::Aggregation*>(&type.type)) {
                m_plan.namedAggregations.push_back(aggregationRow(type.name, **aggregation));
            }
        }
        std::set<std::string> names;
        for (const auto& aggregation : m_schema.aggregations) {
            const std::string name = aggregationName(aggregation);
            const bool isAttributeType = aggregation.inExplicit || aggregation.inDerived || aggregation.inInverse;
            if (isAttributeType && names.insert(name).second) {
                m_plan.anonymousAggregations.push_back(aggregationRow(name, aggregation));
            }
        }
        for (const auto& [schema, keyword, low, high, element] : extraAggregations(m_schema.name)) {
            facts::Aggregation aggregation;
            aggregation.kind = *facts::aggregateKind(keyword);
            aggregation.bounds = {low, high};
            aggregation.element = facts::SimpleType{*facts::simpleKind(element), std::nullopt, false};
            m_plan.anonymousAggregations.push_back(aggregationRow(aggregationName(aggregation), aggregation));
        }
    }

    static Row aggregationRow(std::string_view name, const facts::Aggregation& aggregation) {
        return {literal(name), "AggregationKind::" + std::string(facts::spell(aggregation.kind)),
                bound(aggregation.bounds.low), bound(aggregation.bounds.high),
                literal(elementTypeName(aggregation.element))};
    }

    const Context& m_context;
    const facts::Schema& m_schema;
    SchemaPlan m_plan;
};

} // namespace

SchemaPlan planSchema(const Context& context) {
    return SchemaPlanner(context).plan();
}

} // namespace kpifcgen::plan
