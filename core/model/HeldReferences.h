#pragma once

#include <KpIfcCore/KpIfcCopy.h>
#include <KpIfcCore/KpIfcReferences.h>

#include "model/ModelData.h"
#include "part21/ReferenceText.h"

#include <vector>

namespace KP_SDAI {

/// The source texts that are written in place of fields of an instance as it is now.
std::vector<const KeptField*> keptTextsInForce(ModelData& data, KpIfcEntityBase& instance);

/// The attribute of a kept text; null for that of a whole record.
inline const KpIfcAttributeFacts* attributeOf(const KpIfcEntityBase& instance, const KeptField& kept) {
    const auto& fields = instance.getInstanceType()->recordFields();
    return kept.field < fields.size() ? fields[kept.field] : nullptr;
}

/// Calls `visit(const KpIfcAttributeFacts*, KpDbObjectId)` for the references that only source texts of an instance or
/// a record kept as text have.
template <class Visit>
void visitTextReferences(const KpDbObjectId& handle, Visit&& visit) {
    ModelData& data = handle.model()->data();
    const auto visitText = [&](const KpIfcAttributeFacts* attribute, const std::string& text, bool skipsFirst) {
        visitReferenceTexts(text, [&](std::uint64_t name, std::string_view) {
            const KpDbObjectId to(data.table.find(name));
            if (!skipsFirst && to.isDefined()) visit(attribute, to);
            skipsFirst = false;
        });
    };
    if (KpIfcEntityBase* const instance = handle.openObject()) {
        if (!data.keptFields(*instance)) return;
        for (const KeptField* kept : keptTextsInForce(data, *instance))
            visitText(attributeOf(*instance, *kept), kept->source, false);
    } else {
        visitText(nullptr, std::string(data.model.keptRecord(handle)), true); // the first is its own name: "#5=..."
    }
}

/// What visitAllReferences() does.
template <class Visit>
void visitHeldReferences(const KpDbObjectId& handle, Visit&& visit) {
    KpIfcModel* const model = handle.model();
    if (!model) return;
    if (KpIfcEntityBase* const instance = handle.openObject())
        for (const KpIfcAttributeFacts* row : instance->getInstanceType()->recordFields())
            visitReferences(*instance, *row, [&](const KpDbObjectId& to) {
                if (to.isDefined() && to.model() == model) visit(KpIfcReference{handle, row, to});
            });
    visitTextReferences(handle, [&](const KpIfcAttributeFacts* attribute, const KpDbObjectId& to) {
        visit(KpIfcReference{handle, attribute, to});
    });
}

} // namespace KP_SDAI
