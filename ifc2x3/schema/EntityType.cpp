#include "schema/KpIFC2X3SchemaBuilder.h"

#include <memory>

using namespace KP_SDAI;

KpIfcEntityBase* KpIFC2X3SchemaBuilder::create(const KpIfcEntityFacts& facts) {
    static_assert(noexcept(facts.construct(nullptr)), "nobody would free the memory");
    return facts.construct(::operator new(facts.size));
}

void KpIFC2X3SchemaBuilder::buildNoProperties(KpIfcPropertyCollection*, const KpIfcEntityType*) {}

void KpIFC2X3SchemaBuilder::addEntityType(const EntityType& type) {
    const KpIfcEntityType* supertype = type.supertype ? *type.supertype : nullptr;
    KpIfcEntityType* entity = KpIfcEntityType::createEntityType(schema, type.name, true, type.factory, type.properties,
                                                                *type.staticType, supertype);
    entityDictionary->putAt(type.name, entity);
    entity->facts(&type.facts);
    addAttributes(*entity, type);

    auto code = std::make_unique<KpTypeCode>(kTypeEntity);
    KpAny name;
    name << type.facts.name;
    code->appendParameter(name);
    entity->type(code.release());
}

void KpIFC2X3SchemaBuilder::addAttributes(KpIfcEntityType& entity, const EntityType& type) {
    for (const ExplicitAttribute& row : type.explicitAttributes) {
        // What is optional in files, the facts of the entity's class tell; the dictionary has no optional attributes.
        auto* attribute = new KpIfcExplicitAttributeDefinition(row.name, nullptr, false);
        entity.appendAttribute(attribute);
        pendingAttributeTypes[attribute] = row.type;
    }
    for (const DerivedAttribute& row : type.derivedAttributes) {
        auto* attribute = new KpIfcDerivedAttributeDefinition(row.name, nullptr, nullptr);
        entity.appendAttribute(attribute);
        pendingDerivedAttributes[attribute] = {row.type, row.redeclaredIn, true};
    }
    for (const InverseAttribute& row : type.inverseAttributes) {
        auto* attribute =
            new KpIfcInverseAttributeDefinition(row.name, &entity, nullptr, nullptr, row.minimum, row.maximum, false);
        entity.appendAttribute(attribute);
        pendingInverseAttributes[attribute] = {row.entity, row.inverted};
    }
}
