#pragma once

#include <KpIfcCore/KpIfcEntityType.h>

#include <vector>

namespace kpifc {

/// An attribute of which instances of an entity hold values.
struct HeldAttribute {
    explicit HeldAttribute(const KP_SDAI::KpIfcAttributeDefinition& attribute);

    const KP_SDAI::KpIfcAttributeDefinition* definition;
    KP_SDAI::KpAnsiString name;
    bool isOptional;
    bool isNamedAggregation; ///< declared by the name of a defined type that is an aggregation
    bool isBinary;           ///< a binary or an aggregate of binaries
};

/// The fields of an entity's records: its explicit attributes but those that it redeclares as derived.
std::vector<HeldAttribute> heldAttributes(const KP_SDAI::KpIfcEntityType& entity);

/// The inverse attributes of an entity: inherited ones first, each entity's in the order of their declaration.
std::vector<const KP_SDAI::KpIfcAttributeDefinition*> inverseAttributes(const KP_SDAI::KpIfcEntityType& entity);

/// The type behind the name of a defined type, that behind it, and so on: an entity, enumeration, select, aggregation,
/// simple or string type. Null only where a name could not be resolved.
const KP_SDAI::DictionaryInstance* baseType(const KP_SDAI::DictionaryInstance* type);

} // namespace kpifc
