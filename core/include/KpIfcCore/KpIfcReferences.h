#pragma once

#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcFacts.h>
#include <KpIfcCore/KpIfcSelect.h>

#include <span>

/// Walks along the references that an instance holds, whatever kind of attribute holds them.
namespace KP_SDAI {

/// Calls `visit(KpDbObjectId)` for every handle, null ones too, that the attribute `row` of `instance` holds: its own,
/// those of an aggregate, of a select, of an aggregate of selects. Equal ones are visited as often as they occur.
template <class Visit>
void visitReferences(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, Visit&& visit) {
    const auto visitSelect = [&visit](const KpIfcSelect& select) {
        KpDbObjectId handle;
        if (select.getHandle(handle)) visit(handle);
    };
    if (row.kind == KpIfcFieldKind::reference) {
        visit(instance.*row.member.reference);
    } else if (row.kind == KpIfcFieldKind::select) {
        visitSelect(row.member.select(instance));
    } else if (row.kind == KpIfcFieldKind::aggregate) {
        const KpIfcAggr& aggregate = row.member.aggregate(instance);
        if (row.aggregate->element == KpIfcElementKind::reference) {
            for (const KpDbObjectId& element :
                 static_cast<const KpIfcAggrElements<KpDbObjectId>&>(*aggregate.implementation()))
                visit(element);
        } else if (row.aggregate->element == KpIfcElementKind::select) {
            for (std::size_t i = 0; i < aggregate.size(); ++i) visitSelect(row.aggregate->selectAt(aggregate, i));
        }
    }
}

/// Calls `visit(KpIfcEntityBase& target, const KpIfcInverseFacts&)` for every instance that `referrer` refers to
/// through the attributes of `rows`, with the inverse attribute of the target that they feed. References to nothing, to
/// records kept as text and to instances of entities that have no such inverse are passed over.
template <class Visit>
void visitCounterParts(KpIfcEntityBase& referrer, std::span<const KpIfcCounterpartFacts> rows, Visit&& visit) {
    for (const KpIfcCounterpartFacts& row : rows) {
        if (row.referrer && !referrer.isKindOf(*row.referrer)) continue;
        const KpIfcInverseFacts& inverse = (*row.declaring)->facts()->inverses[row.inverse];
        visitReferences(referrer, *row.attribute, [&](const KpDbObjectId& handle) {
            KpIfcEntityBase* const target = handle.openObject(kForWrite, false);
            if (!target) return;
            if (target->isKindOf(*row.declaring)) visit(*target, inverse);
            target->close();
        });
    }
}

} // namespace KP_SDAI
