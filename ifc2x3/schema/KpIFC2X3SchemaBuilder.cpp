#include "schema/KpIFC2X3SchemaBuilder.h"

using namespace KP_SDAI;

void KpIFC2X3SchemaBuilder::buildDictionary() {
    initSchemaVersion(kIfcSchemaMajor2, kIfcSchemaMinor3);
    addAnonymousSimpleTypes();
    addSimpleDefinedTypes();
    addEntityTypes();
}

void KpIFC2X3SchemaBuilder::addAnonymousSimpleTypes() {
    anonymousTypeDictionary->putAt("string(22)fixed",
                                   new KpIfcDefinedType("string(22)fixed", new KpIfcStringType(true, 22), true));
    // BINARY(32) is carried by the string type, as its values are texts in memory.
    anonymousTypeDictionary->putAt("binary(32)",
                                   new KpIfcDefinedType("binary(32)", new KpIfcStringType(false, 32), true));
}

void KpIFC2X3SchemaBuilder::addSimpleDefinedType(const SimpleDefinedType& type) {
    auto* defined = new KpIfcDefinedType(type.name, nullptr, true);
    typeDictionary->putAt(type.name, defined);
    pendingUnderlyingTypes[defined] = type.underlying;
}

/// Shared by all entity types while no properties are presented.
static void buildNoProperties(KpIfcPropertyCollection*, const KpIfcEntityType*) {}

void KpIFC2X3SchemaBuilder::addEntityType(const EntityType& type) {
    const KpIfcEntityType* supertype = type.supertype ? *type.supertype : nullptr;
    KpIfcEntityType* entity = KpIfcEntityType::createEntityType(schema, type.name, true, type.factory,
                                                                buildNoProperties, *type.staticType, supertype);
    entityDictionary->putAt(type.name, entity);
    entity->facts(&type.facts());

    auto* code = new KpTypeCode(kTypeEntity);
    KpAny name;
    name << type.facts().name;
    code->appendParameter(name);
    entity->type(code);
}
