#include "schema/KpIFC2X3SchemaBuilder.h"

void KpIFC2X3SchemaBuilder::buildDictionary() {
    initSchemaVersion(KP_SDAI::kIfcSchemaMajor2, KP_SDAI::kIfcSchemaMinor3);
    addAnonymousSimpleTypes();
    addSimpleDefinedTypes();
    addEnumerationTypes();
    addEntityTypes();
    addSelectTypes();
    addAggregationTypes();
}
