#pragma once

#include "model/AttributeCopy.h"
#include "model/ModelData.h"

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace KP_SDAI {

/// What has to be known to undo all changes of a model since some point.
struct ChangeLog {
    struct Erased {
        KpIfcSlot* slot;
        std::uintptr_t word; ///< that it had
    };
    /// What an instance was.
    struct Former {
        std::unique_ptr<KpIfcEntityBase> values; ///< in attributes of the same entity; null where it was not there yet
        bool hasKeptFields = false;
        std::vector<KeptField> keptFields;
    };

    void noteCreated(KpIfcSlot* slot, KpIfcEntityBase& instance) {
        former.try_emplace(&instance);
        created.push_back(slot);
    }
    /// Only the first change of an instance counts.
    void noteChange(KpIfcEntityBase& instance, const std::vector<KeptField>* keptFields) {
        if (former.count(&instance)) return;
        Former was;
        was.values.reset(instance.getInstanceType()->createInstance());
        copyAttributes(*was.values, instance);
        was.hasKeptFields = keptFields != nullptr;
        if (keptFields) was.keptFields = *keptFields;
        former.emplace(&instance, std::move(was));
    }

    std::unordered_map<KpIfcEntityBase*, Former> former;
    std::vector<KpIfcSlot*> created;
    std::vector<Erased> erased;
    // Of the model:
    bool explicitOrder = false;
    PackedOrder::Mark orderEnd;
    std::uint64_t highestName = 0;
    std::size_t erasedCount = 0;
    std::size_t newRecordCount = 0;
};

} // namespace KP_SDAI
