#include "schema/KpIFC2X3SchemaBuilder.h"

using namespace KP_SDAI;

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
