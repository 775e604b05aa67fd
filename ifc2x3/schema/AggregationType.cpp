#include "schema/KpIFC2X3SchemaBuilder.h"

using namespace KP_SDAI;

void KpIFC2X3SchemaBuilder::addAggregationType(const AggregationType& type, Dictionary& dictionary) {
    const auto bound = [](int value) {
        return value == kNoBound ? new KpIfcIntegerBound() : new KpIfcIntegerBound(value);
    };
    KpIfcIntegerBound* lower = bound(type.lower);
    KpIfcIntegerBound* upper = bound(type.upper);
    KpIfcAggregationType* aggregation = nullptr;
    switch (type.kind) {
    case AggregationKind::list:
        // Also where the schema demands unique elements.
        aggregation = new KpIfcListType(nullptr, lower, upper, false);
        break;
    case AggregationKind::set: aggregation = new KpIfcSetType(nullptr, lower, upper); break;
    case AggregationKind::array: aggregation = new KpIfcArrayType(nullptr, lower, upper, false, false); break;
    }
    aggregation->type(new KpTypeCode(kTypeAggregate));
    dictionary.putAt(type.name, new KpIfcDefinedType(type.name, aggregation, true));
    pendingElementTypes[aggregation] = type.element;
}
