#include "HeldAttributes.h"

#include <KpIfcCore/KpIfcAggregationType.h>

using namespace KP_SDAI;

namespace kpifc {

const DictionaryInstance* baseType(const DictionaryInstance* type) {
    while (const auto* named = type ? type->as<KpIfcDefinedType>() : nullptr) {
        type = named->underlyingType();
    }
    return type;
}

static bool isBinaryType(const DictionaryInstance* type) {
    const DictionaryInstance* base = baseType(type);
    if (const auto* aggregation = base ? base->as<KpIfcAggregationType>() : nullptr) {
        base = baseType(aggregation->elementType());
    }
    const auto* simple = base ? base->as<KpIfcSimpleType>() : nullptr;
    return simple && simple->kind() == kTypeBinary;
}

HeldAttribute::HeldAttribute(const KpIfcAttributeDefinition& attribute)
    : definition(&attribute), name(attribute.name()), isBinary(isBinaryType(attribute.domain())) {
    const auto* explicitOne = attribute.as<KpIfcExplicitAttributeDefinition>();
    isOptional = explicitOne && explicitOne->isOptionalInFiles();
    const auto* named = attribute.domain() ? attribute.domain()->as<KpIfcDefinedType>() : nullptr;
    const DictionaryInstance* base = baseType(named);
    isNamedAggregation = named && !named->isAnonymous() && base && base->as<KpIfcAggregationType>();
}

std::vector<HeldAttribute> heldAttributes(const KpIfcEntityType& entity) {
    std::vector<HeldAttribute> held;
    for (const KpIfcAttributeDefinition* attribute : entity.allAttributes()) {
        if (attribute->kind() == KpIfcAttributeKind::explicitAttribute && !entity.redeclarationOf(*attribute)) {
            held.emplace_back(*attribute);
        }
    }
    return held;
}

std::vector<const KpIfcAttributeDefinition*> inverseAttributes(const KpIfcEntityType& entity) {
    std::vector<const KpIfcAttributeDefinition*> inverses = entity.allAttributes();
    std::erase_if(inverses, [](const KpIfcAttributeDefinition* attribute) {
        return attribute->kind() != KpIfcAttributeKind::inverseAttribute;
    });
    return inverses;
}

} // namespace kpifc
