#include "model/LostReferences.h"

#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcSelect.h>

namespace KP_SDAI {

namespace {

bool isLost(const KpIfcSelect& select, const Leaving& leaving) {
    KpDbObjectId handle;
    return select.getHandle(handle) && leaving.contains(handle);
}

/// Calls `visit(bool)` for each element of an aggregate: whether it refers to what is to be erased.
template <class Visit>
void visitElements(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, const Leaving& leaving, Visit visit) {
    const KpIfcAggr& aggregate = row.member.aggregate(instance);
    if (row.aggregate->element == KpIfcElementKind::reference) {
        for (const KpDbObjectId& element :
             static_cast<const KpIfcAggrElements<KpDbObjectId>&>(*aggregate.implementation()))
            visit(leaving.contains(element));
    } else if (row.aggregate->element == KpIfcElementKind::select) {
        for (std::size_t i = 0; i < aggregate.size(); ++i)
            visit(isLost(row.aggregate->selectAt(aggregate, i), leaving));
    }
}

} // namespace

LostReferences lostReferences(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, const Leaving& leaving) {
    LostReferences references;
    if (row.kind == KpIfcFieldKind::reference) {
        const KpDbObjectId& handle = instance.*row.member.reference;
        references = {!handle.isNull(), leaving.contains(handle)};
    } else if (row.kind == KpIfcFieldKind::select) {
        const KpIfcSelect& select = row.member.select(instance);
        references = {!select.isNull(), isLost(select, leaving)};
    } else if (row.kind == KpIfcFieldKind::aggregate) {
        visitElements(instance, row, leaving, [&](bool lost) {
            ++references.count;
            references.lost += lost;
        });
    }
    return references;
}

bool lacksValues(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, std::size_t count) {
    if (count == 0 && row.isOptional()) return false;
    if (row.kind != KpIfcFieldKind::aggregate) return count == 0;
    const KpIfcAggr& aggregate = row.member.aggregate(instance);
    const bool isArray = aggregate.containerType() == KpIfcAggrContainerType::array; // whose bounds are indices
    const int least = isArray ? aggregate.upperBound() - aggregate.lowerBound() + 1 : aggregate.lowerBound();
    return least > 0 && count < static_cast<std::size_t>(least);
}

void dropReferences(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, const Leaving& leaving) {
    if (row.kind == KpIfcFieldKind::reference) {
        (instance.*row.member.reference).setNull();
    } else if (row.kind == KpIfcFieldKind::select) {
        row.member.select(instance).nullify();
    } else if (row.kind == KpIfcFieldKind::aggregate) {
        KpIfcAggr& aggregate = row.member.aggregate(instance);
        KpIfcArray<bool> kept;
        kept.reserve(aggregate.count());
        visitElements(instance, row, leaving, [&](bool lost) { kept.append(!lost); });
        row.aggregate->keepOnly(aggregate, kept);
    }
}

} // namespace KP_SDAI
