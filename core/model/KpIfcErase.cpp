#include <KpIfcCore/KpIfcErase.h>

#include "model/Cascade.h"
#include "model/ModelData.h"

#include <KpIfcCore/KpIfcException.h>

#include <algorithm>
#include <vector>

namespace KP_SDAI {

namespace {

/// The references from what stays to what is to be erased, by target, then referrer.
KpIfcArray<KpIfcReference> referencesFromOutside(const ReferrerIndex& index, const std::vector<KpDbObjectId>& targets,
                                                 const Leaving& leaving) {
    KpIfcArray<KpIfcReference> references;
    KpIfcArray<KpDbObjectId> referrers;
    for (const KpDbObjectId& target : targets) {
        referrers.clear();
        index.copyTo(target, referrers);
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
    if (policy == KpIfcErasePolicy::cascade) {
        Cascade(data.schema(), index, leaving).run(targets);
        targets.clear();
        for (KpIfcSlot* slot : leaving.slots()) targets.emplace_back(slot);
    }
    std::sort(targets.begin(), targets.end());
    const KpIfcArray<KpIfcReference> references = referencesFromOutside(index, targets, leaving);
    if (policy == KpIfcErasePolicy::refuse && !references.empty()) {
        result.status = KP::eRefused;
        result.references = references;
        return result;
    }

    for (const KpIfcReference& reference : references) result.changed.append(reference.referrer);
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
