#include "ExtractionRules.h"

using namespace KP_SDAI;

namespace kpifc {

namespace {

using Kind = ExtractionRule::Kind;

struct Whole {
    const char* entity;
    const char* whole;
    const char* parts;
    bool isPlace;
};

constexpr Whole kWholes[] = {
    {"IfcRelDecomposes", "RelatingObject", "RelatedObjects", true},
    {"IfcRelContainedInSpatialStructure", "RelatingStructure", "RelatedElements", true},
    {"IfcRelVoidsElement", "RelatingBuildingElement", "RelatedOpeningElement", true},
    {"IfcRelProjectsElement", "RelatingElement", "RelatedFeatureElement", true},
    {"IfcRelFillsElement", "RelatingOpeningElement", "RelatedBuildingElement", false},
    {"IfcRelConnectsPortToElement", "RelatedElement", "RelatingPort", true},
};

struct Members {
    const char* entity;
    const char* members;
    Kind kind;
};

constexpr Members kMembers[] = {
    {"IfcRelDefines", "RelatedObjects", Kind::statement},
    {"IfcRelAssociates", "RelatedObjects", Kind::statement},
    {"IfcStyledItem", "Item", Kind::addition},
    {"IfcPresentationLayerAssignment", "AssignedItems", Kind::addition},
    {"IfcShapeAspect", "PartOfProductDefinitionShape", Kind::addition},
    {"IfcMaterialDefinitionRepresentation", "RepresentedMaterial", Kind::addition},
    {"IfcMaterialProperties", "Material", Kind::addition},
    {"IfcMaterialClassificationRelationship", "ClassifiedMaterial", Kind::addition},
};

/// Null where the schema has no such explicit attribute.
const KpIfcAttributeFacts* row(const KpIfcEntityType* entity, const char* name) {
    const auto* found = entity ? entity->findAttribute(name) : nullptr;
    const auto* attribute = found ? found->as<KpIfcExplicitAttributeDefinition>() : nullptr;
    return attribute ? attribute->facts() : nullptr;
}

} // namespace

ExtractionRules::ExtractionRules(const KpIfcSchema& schema)
    : root(schema.findEntity("IfcRoot")), object(schema.findEntity("IfcObject")),
      project(schema.findEntity("IfcProject")) {
    for (const Whole& each : kWholes) {
        const KpIfcEntityType* const entity = schema.findEntity(each.entity);
        const KpIfcAttributeFacts* const whole = row(entity, each.whole);
        const KpIfcAttributeFacts* const parts = row(entity, each.parts);
        if (whole && parts) {
            m_entries.push_back({entity, {Kind::link, nullptr, whole, parts, each.isPlace}});
        }
    }
    for (const Members& each : kMembers) {
        const KpIfcEntityType* const entity = schema.findEntity(each.entity);
        if (const KpIfcAttributeFacts* const members = row(entity, each.members)) {
            m_entries.push_back({entity, {each.kind, members}});
        }
    }
    if (const KpIfcEntityType* const relationship = schema.findEntity("IfcRelationship")) {
        m_entries.push_back({relationship, {Kind::link}});
    }
}

const ExtractionRule& ExtractionRules::of(const KpIfcEntityType* entity) {
    const auto [place, isNew] = m_rules.try_emplace(entity);
    if (isNew) {
        for (const Entry& entry : m_entries) {
            if (entity->isKindOf(entry.entity)) {
                place->second = entry.rule;
                break;
            }
        }
    }
    return place->second;
}

} // namespace kpifc
