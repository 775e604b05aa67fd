#pragma once

#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcFacts.h>
#include <KpIfcCore/KpIfcSelect.h>

#include <string>
#include <utility>

namespace KP_SDAI {

// Unset markers of every kind of value.
bool isUnset(double value);
bool isUnset(int value);
bool isUnset(const KpAnsiString& value);
bool isUnset(const KpDbObjectId& value);
/// Also where an alternative is chosen that has no value.
bool isUnset(const KpIfcSelect& value);

/// True where an attribute that is no aggregate has no value.
bool isUnset(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row);

/// What a reference can be beside right.
enum class ReferenceFault { none, dangling, wrong };

/// References to records that are kept as text are none's fault: nobody knows what they are.
inline ReferenceFault faultOf(const KpDbObjectId& handle, const KpIfcEntityType& declared) {
    if (handle.isNull()) return ReferenceFault::none;
    if (!handle.isDefined()) return ReferenceFault::dangling;
    const KpIfcEntityBase* const instance = handle.openObject();
    if (!instance) return ReferenceFault::none;
    const KpIfcEntityType* const type = instance->getInstanceType();
    return type == &declared || type->isKindOf(&declared) ? ReferenceFault::none : ReferenceFault::wrong;
}
/// The same of the handle that a select holds; of other values none.
ReferenceFault faultOf(const KpIfcSelect& select);

/// The elements of an aggregate, one by one: calls `visit(const Element&)` with what they are.
template <class Visit>
void visitElements(const KpIfcAggr& aggregate, const KpIfcAggrFacts& facts, Visit&& visit) {
    const auto visitAll = [&]<class T>(std::in_place_type_t<T>) {
        for (const T& element : static_cast<const KpIfcAggrElements<T>&>(*aggregate.implementation())) visit(element);
    };
    switch (facts.element) {
    case KpIfcElementKind::real: return visitAll(std::in_place_type<double>);
    case KpIfcElementKind::integer: return visitAll(std::in_place_type<int>);
    case KpIfcElementKind::string:
    case KpIfcElementKind::binary: return visitAll(std::in_place_type<KpAnsiString>);
    case KpIfcElementKind::reference: return visitAll(std::in_place_type<KpDbObjectId>);
    case KpIfcElementKind::select:
        for (std::size_t i = 0; i < aggregate.size(); ++i) visit(facts.selectAt(aggregate, i));
    }
}

} // namespace KP_SDAI
