#include <KpIfcCore/KpIfcErase.h>

#include "model/Cascade.h"
#include "model/ModelData.h"

#include <KpIfcCore/KpIfcException.h>

#include <algorithm>
#include <vector>

namespace KP_SDAI {

namespace {

/// The references from what stays to what is to be erased, by target, then referrer.
KpIfcArray<KpIfcReferrer> referencesFromOutside(const ReferrerIndex& index, const TextReferences& texts,
                                                const std::vector<KpDbObjectId>& targets, const Leaving& leaving) {
    KpIfcArray<KpIfcReferrer> references;
    KpIfcArray<KpDbObjectId> referrers;
    for (const KpDbObjectId& target : targets) {
        referrers.clear();
        index.copyTo(target, referrers);
        if (const std::vector<KpDbObjectId>& more = texts.to(target); !more.empty()) {
            for (const KpDbObjectId& referrer : more) referrers.append(referrer);
            std::sort(referrers.begin(), referrers.end());
            const auto end = std::unique(referrers.begin(), referrers.end());
            referrers.resize(static_cast<std::uint32_t>(end - referrers.begin()));
        }
        for (const KpDbObjectId& referrer : referrers)
            if (!leaving.contains(referrer)) references.append({referrer, target});
    }
    return references;
}

void dropAll(ModelData& data, KpIfcEntityBase& instance, const Leaving& leaving, KpIfcEraseResult& result) {
    const auto& rows = instance.getInstanceType()->recordFields();
    for (std::size_t field = 0; field < rows.size(); ++field) {
        const LostReferences references = lostReferences(instance, *rows[field], leaving);
        if (references.lost == 0) continue;
        dropReferences(instance, *rows[field], leaving);
        data.forgetField(instance, field); // the text of the file would name what is gone
        if (lacksValues(instance, *rows[field], references.count - references.lost))
            result.lacking.append({instance.objectId(), rows[field]->name});
    }
    const std::vector<KeptField>* const kept = data.keptFields(instance);
    std::vector<std::size_t> naming; // fields whose text names what is gone
    for (std::size_t i = 0; kept && i < kept->size(); ++i)
        visitReferenceTexts((*kept)[i].source, [&](std::uint64_t name, std::string_view) {
            if (leaving.contains(KpDbObjectId(data.table.find(name)))) naming.push_back((*kept)[i].field);
        });
    for (const std::size_t field : naming) data.forgetField(instance, field);
}

} // namespace

KpIfcEraseResult erase(KpIfcModel& model, std::span<const KpDbObjectId> handles, KpIfcErasePolicy policy) {
    if (model.mode() != kReadWrite) throw KpIfcException(180, "SDAI-model access not read-write", "KP_SDAI::erase");
    KpIfcEraseResult result;
    Leaving leaving;
    std::vector<KpDbObjectId> targets;
    for (const KpDbObjectId& handle : handles) {
        if (handle.model() != &model || !handle.isDefined()) {
            result.status = KP::eNullEntity;
            return result;
        }
        if (leaving.add(handle)) targets.push_back(handle);
    }
    ModelData& data = model.data();
    data.commit();
    const ReferrerIndex& index = data.referrerIndex();
    const TextReferences texts(data);
    if (policy == KpIfcErasePolicy::cascade) {
        Cascade(data.schema(), index, texts, leaving).run(targets);
        targets.clear();
        for (KpIfcSlot* slot : leaving.slots()) targets.emplace_back(slot);
    }
    std::sort(targets.begin(), targets.end());
    const KpIfcArray<KpIfcReferrer> references = referencesFromOutside(index, texts, targets, leaving);
    if (policy == KpIfcErasePolicy::refuse && !references.empty()) {
        result.status = KP::eRefused;
        result.references = references;
        return result;
    }

    for (const KpIfcReferrer& reference : references) {
        if (reference.referrer.openObject())
            result.changed.append(reference.referrer);
        else
            result.stillNamed.append(reference);
    }
    std::sort(result.changed.begin(), result.changed.end());
    result.changed.resize(
        static_cast<std::size_t>(std::unique(result.changed.begin(), result.changed.end()) - result.changed.begin()));
    for (const KpDbObjectId& handle : targets)
        if (KpIfcEntityBase* const instance = handle.openObject()) KpIfcChange::before(*instance);
    for (const KpDbObjectId& handle : result.changed) KpIfcChange::before(*handle.openObject());

    for (const KpDbObjectId& handle : result.changed) dropAll(data, *handle.openObject(), leaving, result);
    result.erased.reserve(static_cast<std::uint32_t>(targets.size()));
    for (const KpDbObjectId& handle : targets) {
        result.erased.append(handle.instanceName());
        data.erase(handle.slot());
    }
    return result;
}

} // namespace KP_SDAI
