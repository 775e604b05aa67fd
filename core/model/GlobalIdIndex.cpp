#include "model/GlobalIdIndex.h"

#include <KpIfcCore/KpIfcEntityType.h>

#include "model/ChangedInstances.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace KP_SDAI {

namespace {

std::string_view textOf(const KpIfcGUID& globalId) {
    return globalId.isUnset() ? std::string_view() : std::string_view(globalId.constStr());
}

std::size_t hashOf(std::string_view globalId) {
    return std::hash<std::string_view>()(globalId);
}

void sortUnique(KpIfcArray<KpDbObjectId>& handles) {
    std::sort(handles.begin(), handles.end());
    handles.resize(static_cast<std::size_t>(std::unique(handles.begin(), handles.end()) - handles.begin()));
}

} // namespace

RootedEntity::RootedEntity(const KpIfcSchema& schema) {
    const KpIfcEntityType* const root = schema.findEntity("IfcRoot");
    const auto* const attribute = root ? root->findAttribute("GlobalId") : nullptr;
    const auto* const held = attribute ? attribute->as<KpIfcExplicitAttributeDefinition>() : nullptr;
    if (!held || !held->facts() || held->facts()->kind != KpIfcFieldKind::guid) return;
    entity = root;
    globalId = held->facts();
}

GlobalIdIndex::GlobalIdIndex(const KpIfcModel& model) : m_rooted(model.schema()) {
    if (!m_rooted.entity) return;
    for (KpIfcEntityBase* instance : model.instances(m_rooted.entity)) enter(*instance);
    m_mostEntries = 1000 + 2 * m_slots.size();
}

void GlobalIdIndex::enter(KpIfcEntityBase& instance) {
    const std::string_view globalId = textOf(m_rooted.globalIdOf(instance));
    if (globalId.empty()) return;
    KpIfcSlot* const slot = instance.objectId().slot();
    const std::size_t hash = hashOf(globalId);
    const auto [known, isNew] = m_hashes.try_emplace(slot, hash);
    if (!isNew && known->second == hash) return;
    known->second = hash;
    m_slots.emplace(hash, slot);
}

bool GlobalIdIndex::update(const ChangedInstances& changed) {
    if (!m_rooted.entity) return true;
    changed.visitUncommitted([this](KpIfcEntityBase* instance) {
        if (instance->isKindOf(m_rooted.entity)) enter(*instance);
    });
    return m_slots.size() <= m_mostEntries;
}

template <class Visit>
void GlobalIdIndex::visit(std::string_view globalId, Visit visit) const {
    if (globalId.empty()) return;
    for (auto [entry, end] = m_slots.equal_range(hashOf(globalId)); entry != end; ++entry) {
        const KpDbObjectId handle(entry->second);
        KpIfcEntityBase* const instance = handle.openObject();
        // A name may have been given again to an instance of another entity, where its creation was undone.
        if (instance && instance->isKindOf(m_rooted.entity) && textOf(m_rooted.globalIdOf(*instance)) == globalId)
            visit(handle);
    }
}

KpDbObjectId GlobalIdIndex::find(std::string_view globalId) const {
    KpDbObjectId found;
    visit(globalId, [&](const KpDbObjectId& handle) {
        if (found.isNull() || handle < found) found = handle;
    });
    return found;
}

void GlobalIdIndex::copyTo(std::string_view globalId, KpIfcArray<KpDbObjectId>& instances) const {
    visit(globalId, [&](const KpDbObjectId& handle) { instances.append(handle); });
    sortUnique(instances);
}

KpIfcArray<KpIfcSharedGlobalId> GlobalIdIndex::shared() const {
    std::vector<KpDbObjectId> rooted;
    for (const auto& [slot, hash] : m_hashes) {
        const KpIfcEntityBase* const instance = KpDbObjectId(slot).openObject();
        if (instance && instance->isKindOf(m_rooted.entity)) rooted.emplace_back(slot);
    }
    const auto globalIdOf = [&](const KpDbObjectId& handle) -> const KpIfcGUID& {
        return m_rooted.globalIdOf(*handle.openObject());
    };
    std::sort(rooted.begin(), rooted.end(), [&](const KpDbObjectId& a, const KpDbObjectId& b) {
        return globalIdOf(a) == globalIdOf(b) ? a < b : globalIdOf(a) < globalIdOf(b);
    });
    KpIfcArray<KpIfcSharedGlobalId> shared;
    for (auto first = rooted.begin(); first != rooted.end();) {
        const auto behind = std::find_if(first, rooted.end(), [&](const KpDbObjectId& handle) {
            return !(globalIdOf(handle) == globalIdOf(*first));
        });
        if (behind - first > 1 && !textOf(globalIdOf(*first)).empty()) {
            KpIfcSharedGlobalId one;
            one.globalId = globalIdOf(*first);
            std::for_each(first, behind, [&](const KpDbObjectId& handle) { one.instances.append(handle); });
            shared.append(one);
        }
        first = behind;
    }
    std::sort(shared.begin(), shared.end(), [](const KpIfcSharedGlobalId& a, const KpIfcSharedGlobalId& b) {
        return a.instances[0] < b.instances[0];
    });
    return shared;
}

} // namespace KP_SDAI
