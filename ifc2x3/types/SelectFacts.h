#pragma once

#include <IFC2X3/Enumeration.h>
#include <IFC2X3/Select.h>
#include <KpIfcCore/KpIfcArrayAggr.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcListAggr.h>
#include <KpIfcCore/KpSpfAggregates.h>

namespace IFC2X3 {

using KP_SDAI::kAggregateFacts;
using KP_SDAI::KpIfcAggrFacts;
using KP_SDAI::KpIfcArrayAggrBounded;
using KP_SDAI::KpIfcListAggrBounded;
using KP_SDAI::KpTypeCodeKind;
using KP_SDAI::kTypeAggregate;
using KP_SDAI::kTypeBoolean;
using KP_SDAI::kTypeEntity;
using KP_SDAI::kTypeEnumeration;
using KP_SDAI::kTypeInteger;
using KP_SDAI::kTypeLogical;
using KP_SDAI::kTypeReal;
using KP_SDAI::kTypeString;

/// One alternative of a select.
struct SelectAlternative {
    const char* name; ///< as the schema spells the type
    KpTypeCodeKind kind;
    KpIfcEntityType* const* entity = nullptr;    ///< of entity alternatives
    const KpIfcEnumFacts* enumeration = nullptr; ///< of enumerations
    const KpIfcAggrFacts* aggregate = nullptr;   ///< of aggregations
};

struct SelectFacts {
    const char* name;
    std::int32_t count; ///< the code of "no value"
    const SelectAlternative* alternatives;
};

/// A select's dictionary type as its base class; here, where the dictionary classes are known.
inline KpIfcNameType* typeOf(KpIfcDefinedType* type) {
    return type;
}

} // namespace IFC2X3
