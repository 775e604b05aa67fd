#include "Schema.h"
#include "SchemaNames.h"
#include "SchemaUses.h"

#include <KpIfcCore/KpIfcEnumerationType.h>
#include <KpIfcCore/KpIfcExpressText.h>
#include <KpIfcCore/KpIfcSelectType.h>

#include <nlohmann/json.hpp>

#include <sstream>

using namespace KP_SDAI;
using Json = nlohmann::ordered_json;

namespace kpifc::schema_json {

namespace {

std::string textOf(const Json& object) {
    return object.dump(2) + '\n';
}

template <class Types>
Json namesOf(const Types& types) {
    Json names = Json::array();
    for (const auto* type : types) {
        names.push_back(type->displayName());
    }
    return names;
}

const char* kindName(KpIfcAttributeKind kind) {
    switch (kind) {
    case KpIfcAttributeKind::explicitAttribute: return "explicit";
    case KpIfcAttributeKind::derivedAttribute: return "derived";
    case KpIfcAttributeKind::inverseAttribute: return "inverse";
    }
    return nullptr;
}

Json attributeOf(const KpIfcAttributeDefinition& attribute) {
    const auto* explicitOne = attribute.as<KpIfcExplicitAttributeDefinition>();
    Json object = {{"name", attribute.displayName()},
                   {"kind", kindName(attribute.kind())},
                   {"declared_in", attribute.owner()->displayName()},
                   {"type", attribute.typeText()},
                   {"optional", explicitOne && explicitOne->isOptionalInFiles()}};
    if (const auto* derived = attribute.as<KpIfcDerivedAttributeDefinition>()) {
        if (const KpIfcExplicitAttributeDefinition* redeclared = derived->redeclaredAttribute()) {
            object["redeclares"] = std::string(redeclared->owner()->displayName()) + '.' + redeclared->name();
        }
    }
    if (const auto* inverse = attribute.as<KpIfcInverseAttributeDefinition>()) {
        if (const KpIfcExplicitAttributeDefinition* inverted = inverse->invertedAttribute()) {
            object["inverts"] = std::string(inverted->owner()->displayName()) + '.' + inverted->name();
        }
    }
    return object;
}

Json uniqueRulesOf(const KpIfcEntityType& entity) {
    Json rules = Json::array();
    for (const KpIfcEntityType* declaring = &entity; declaring; declaring = declaring->superType()) {
        const KpIfcEntityFacts* facts = declaring->facts();
        for (std::uint32_t i = 0; facts && i < facts->uniqueRuleCount; ++i) {
            Json attributes = Json::array();
            std::istringstream names(facts->uniqueRules[i].attributes);
            for (std::string name; names >> name;) {
                attributes.push_back(name);
            }
            rules.push_back({{"label", facts->uniqueRules[i].label},
                             {"declared_in", declaring->displayName()},
                             {"attributes", std::move(attributes)}});
        }
    }
    return rules;
}

Json usesOf(const KpIfcSchema& schema, const KpIfcNameType& type) {
    const SchemaUses uses(schema, type);
    Json attributes = Json::array();
    for (const auto& [entity, own] : uses.entities) {
        for (const KpIfcAttributeDefinition* attribute : own) {
            attributes.push_back({{"entity", entity->displayName()},
                                  {"name", attribute->displayName()},
                                  {"kind", kindName(attribute->kind())}});
        }
    }
    return {{"types", namesOf(uses.types)}, {"selects", namesOf(uses.selects)}, {"attributes", std::move(attributes)}};
}

} // namespace

std::string overview(const KpIfcSchema& schema) {
    const KpIfcSchemaCounts counts = schema.counts();
    const SchemaNames names(schema);
    return textOf({{"schema", schema.name()},
                   {"version", std::to_string(schema.majorVersion()) + '.' + std::to_string(schema.minorVersion())},
                   {"counts",
                    {{"entities", counts.entities},
                     {"abstract_entities", counts.abstractEntities},
                     {"explicit_attributes", counts.explicitAttributes},
                     {"derived_attributes", counts.derivedAttributes},
                     {"inverse_attributes", counts.inverseAttributes},
                     {"defined_types", counts.definedTypes},
                     {"enumerations", counts.enumerations},
                     {"literals", counts.literals},
                     {"selects", counts.selects},
                     {"anonymous_aggregations", counts.anonymousAggregations}}},
                   {"names",
                    {{"entities", names.entities},
                     {"defined_types", names.types},
                     {"enumerations", names.enumerations},
                     {"selects", names.selects}}}});
}

std::string entity(const KpIfcEntityType& entity) {
    Json supertypes = Json::array();
    for (const KpIfcEntityType* above = entity.superType(); above; above = above->superType()) {
        supertypes.push_back(above->displayName());
    }
    Json attributes = Json::array();
    for (const KpIfcAttributeDefinition* attribute : entity.allAttributes()) {
        attributes.push_back(attributeOf(*attribute));
    }
    return textOf({{"schema", entity.schema()->name()},
                   {"name", entity.displayName()},
                   {"kind", "entity"},
                   {"abstract", entity.isAbstract()},
                   {"supertypes", std::move(supertypes)},
                   {"subtypes", namesOf(entity.subTypes())},
                   {"attributes", std::move(attributes)},
                   {"unique_rules", uniqueRulesOf(entity)},
                   {"used_by", usesOf(*entity.schema(), entity)}});
}

std::string type(const KpIfcSchema& schema, const KpIfcDefinedType& type) {
    Json object = {{"schema", schema.name()}, {"name", type.displayName()}};
    if (const KpIfcEnumerationType* enumeration = type.enumeration()) {
        object["kind"] = "enumeration";
        object["literals"] = Json::array();
        for (const KpAnsiString& literal : enumeration->literals()) {
            object["literals"].push_back(literal.view());
        }
    } else if (const KpIfcSelectType* select = type.select()) {
        object["kind"] = "select";
        object["members"] = namesOf(select->members());
        object["flattened_members"] = namesOf(select->flattenedMembers());
    } else {
        object["kind"] = "defined_type";
    }
    object["definition"] = definitionText(type);
    object["used_by"] = usesOf(schema, type);
    return textOf(object);
}

} // namespace kpifc::schema_json
