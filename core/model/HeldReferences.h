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

/// What visitAllReferences() does.
template <class Visit>
void visitHeldReferences(const KpDbObjectId& handle, Visit&& visit) {
    KpIfcModel* const model = handle.model();
    if (!model) return;
    ModelData& data = model->data();
    const auto visitIfDefined = [&](const KpIfcAttributeFacts* attribute, const KpDbObjectId& to) {
        if (to.isDefined() && to.model() == model) visit(KpIfcReference{handle, attribute, to});
    };
    const auto visitText = [&](const KpIfcAttributeFacts* attribute, const std::string& text) {
        visitReferenceTexts(text, [&](std::uint64_t name, std::string_view) {
            visitIfDefined(attribute, KpDbObjectId(data.table.find(name)));
        });
    };
    if (KpIfcEntityBase* const instance = handle.openObject()) {
        for (const KpIfcAttributeFacts* row : instance->getInstanceType()->recordFields())
            visitReferences(*instance, *row, [&](const KpDbObjectId& to) { visitIfDefined(row, to); });
        if (!data.keptFields(*instance)) return;
        for (const KeptField* kept : keptTextsInForce(data, *instance))
            visitText(attributeOf(*instance, *kept), kept->source);
    } else {
        bool isOwnName = true; // the first: "#5=..."
        const std::string text(model->keptRecord(handle));
        visitReferenceTexts(text, [&](std::uint64_t name, std::string_view) {
            if (!isOwnName) visitIfDefined(nullptr, KpDbObjectId(data.table.find(name)));
            isOwnName = false;
        });
    }
}

} // namespace KP_SDAI
