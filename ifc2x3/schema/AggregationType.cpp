#include "schema/KpIFC2X3SchemaBuilder.h"

#include <memory>

using namespace KP_SDAI;

void KpIFC2X3SchemaBuilder::addAggregationType(const AggregationType& type, Dictionary& dictionary) {
    const auto bound = [](int value) {
        return value == kNoBound ? std::make_unique<KpIfcIntegerBound>() : std::make_unique<KpIfcIntegerBound>(value);
    };
    auto code = std::make_unique<KpTypeCode>(kTypeAggregate);
    auto lower = bound(type.lower);
    auto upper = bound(type.upper);
    // A new expression has its memory before it takes the bounds, which it then owns.
    std::unique_ptr<KpIfcAggregationType> aggregation;
    switch (type.kind) {
    case AggregationKind::list:
        // Also where the schema demands unique elements.
        aggregation.reset(new KpIfcListType(nullptr, lower.release(), upper.release(), false));
        break;
    case AggregationKind::set: aggregation.reset(new KpIfcSetType(nullptr, lower.release(), upper.release())); break;
    case AggregationKind::array:
        aggregation.reset(new KpIfcArrayType(nullptr, lower.release(), upper.release(), false, false));
        break;
    }
    aggregation->type(code.release());
    pendingElementTypes[aggregation.get()] = type.element;
    dictionary.putAt(type.name, new KpIfcDefinedType(type.name, aggregation.release(), true));
}
