#pragma once

#include <IFC2X3/Enumeration.h>
#include <IFC2X3/Select.h>
#include <KpIfcCore/KpIfcAggrAccess.h>
#include <KpIfcCore/KpIfcArrayAggr.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcListAggr.h>
#include <KpIfcCore/KpIfcSetAggr.h>
#include <KpIfcCore/KpIfcVariantTypes.h>

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

/// The names that the descriptors of a select show: of values and pointers, and of arrays and pointers to aggregates
/// where it is an element of some. Every generated select specialises it.
template <class S>
struct DescriptorNames;

template <class S>
KP_SDAI::KpIfcVariantType* createValueDescriptor() {
    return new KP_SDAI::KpIfcSelectValueTypePOD<S>(DescriptorNames<S>::value);
}
template <class S>
KP_SDAI::KpIfcVariantType* createPointerDescriptor() {
    return new KP_SDAI::KpIfcSelectPtrValueTypePOD<S*>(DescriptorNames<S>::pointer);
}
template <class S>
KP_SDAI::KpIfcVariantType* createArrayDescriptor() {
    return new KP_SDAI::KpIfcVariantTypeForObject<KpIfcArray<S>>(DescriptorNames<S>::array);
}
template <class S>
KP_SDAI::KpIfcVariantType* createSetDescriptor() {
    return new KP_SDAI::KpIfcSetAggrPtrVariantTypePOD<KP_SDAI::KpIfcSetAggr<S>*, S>(DescriptorNames<S>::aggregate);
}
template <class S>
KP_SDAI::KpIfcVariantType* createListDescriptor() {
    return new KP_SDAI::KpIfcListAggrPtrVariantTypePOD<KP_SDAI::KpIfcListAggr<S>*, S>(DescriptorNames<S>::aggregate);
}

/// The slots that a select class keeps, empty.
template <class S>
constexpr KpIfcSelectDescriptors describeSelect() {
    return {KpIfcDescriptorSlot(createValueDescriptor<S>), KpIfcDescriptorSlot(createPointerDescriptor<S>)};
}
template <class S>
constexpr KpIfcSetElementDescriptors describeSetElement() {
    return {{KpIfcDescriptorSlot(createValueDescriptor<S>), KpIfcDescriptorSlot(createPointerDescriptor<S>)},
            KpIfcDescriptorSlot(createArrayDescriptor<S>),
            KpIfcDescriptorSlot(createSetDescriptor<S>)};
}
template <class S>
constexpr KpIfcListElementDescriptors describeListElement() {
    return {{KpIfcDescriptorSlot(createValueDescriptor<S>), KpIfcDescriptorSlot(createPointerDescriptor<S>)},
            KpIfcDescriptorSlot(createArrayDescriptor<S>),
            KpIfcDescriptorSlot(createListDescriptor<S>)};
}

/// A select's dictionary type as its base class; here, where the dictionary classes are known.
inline KpIfcNameType* typeOf(KpIfcDefinedType* type) {
    return type;
}

} // namespace IFC2X3
