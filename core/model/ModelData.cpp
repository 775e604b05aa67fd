#include "model/ModelData.h"

#include <algorithm>

namespace KP_SDAI {

ModelData::ModelData(KpIfcModel& m, std::shared_ptr<KpIfcModule> module)
    : model(m), table(m), m_module(std::move(module)) {}

ModelData::~ModelData() {
    // What was only read lies in the arena with all that it holds; the others may own memory elsewhere.
    for (KpIfcEntityBase* instance : m_toDestroy) instance->~KpIfcEntityBase();
}

KpIfcEntityBase* ModelData::create(const KpIfcEntityFacts& facts, KpIfcSlot* slot) {
    KpIfcEntityBase* instance = construct(facts);
    bind(slot, instance);
    KpIfcChange::before(*instance);
    return instance;
}

void ModelData::bind(KpIfcSlot* slot, KpIfcEntityBase* instance) {
    const std::uint64_t name = KpDbObjectId(slot).instanceName();
    if (!m_explicitOrder && name < highestName) makeOrderExplicit();
    slot->word = reinterpret_cast<std::uintptr_t>(instance);
    instance->m_self = reinterpret_cast<std::uintptr_t>(slot) | (instance->m_self & KpIfcEntityBase::kFlags);
    if (m_explicitOrder) {
        if (!m_positions.empty()) m_positions[slot] = m_order.size();
        m_order.emplace_back(slot);
    }
    if (name > highestName) highestName = name;
    ++instanceCount;
    table.noteInstance();
}

KeptRecord* ModelData::keep(std::string text, KpIfcSlot* slot) {
    if (!m_explicitOrder) makeOrderExplicit();
    const std::uint64_t name = KpDbObjectId(slot).instanceName();
    KeptRecord& record = m_kept.emplace_back(KeptRecord{std::move(text), name});
    m_order.emplace_back(&record);
    if (slot) {
        ++keptCount;
        if (name > highestName) highestName = name;
        if (slot->word == 0) slot->word = reinterpret_cast<std::uintptr_t>(&record) | KpIfcSlot::kKeptRecord;
    }
    return &record;
}

void ModelData::demote(KpIfcSlot* slot, std::string text) {
    if (!m_explicitOrder) makeOrderExplicit();
    if (m_positions.empty())
        for (std::size_t i = 0; i < m_order.size(); ++i)
            if (m_order[i].slot()) m_positions[m_order[i].slot()] = i;
    KeptRecord& record = m_kept.emplace_back(KeptRecord{std::move(text), KpDbObjectId(slot).instanceName()});
    m_order[m_positions.at(slot)] = OrderEntry(&record);
    slot->word = 0;
    ++keptCount;
    --instanceCount;
}

void ModelData::keepField(KpIfcEntityBase& instance, KeptField field) {
    std::vector<KeptField>& fields = m_keptFields[&instance];
    instance.m_self |= KpIfcEntityBase::kKeptText;
    for (KeptField& kept : fields) {
        if (kept.field != field.field) continue;
        kept.normal = std::move(field.normal); // the source text is the one that was read first
        return;
    }
    fields.push_back(std::move(field));
}

const std::vector<KeptField>* ModelData::keptFields(const KpIfcEntityBase& instance) const {
    if (!(instance.m_self & KpIfcEntityBase::kKeptText)) return nullptr;
    const auto found = m_keptFields.find(&instance);
    return found == m_keptFields.end() ? nullptr : &found->second;
}

void ModelData::forgetField(const KpIfcEntityBase& instance, std::size_t field) {
    const auto found = m_keptFields.find(&instance);
    if (found == m_keptFields.end()) return;
    if (std::erase_if(found->second, [field](const KeptField& kept) { return kept.field == field; }))
        std::erase_if(found->second, [](const KeptField& kept) { return kept.field == KeptField::kWholeRecord; });
}

void ModelData::noteHeap(KpIfcEntityBase& instance) {
    m_toDestroy.push_back(&instance);
    instance.m_self |= KpIfcEntityBase::kOwnsHeap;
}

void ModelData::noteChange(KpIfcEntityBase& instance) {
    if ((instance.m_self & KpIfcEntityBase::kState) == KpIfcEntityBase::kAsRead) noteHeap(instance);
    m_uncommitted.push_back(&instance);
    inverses.withdraw(instance);
}

void ModelData::commit() {
    if (m_uncommitted.empty()) return;
    inverses.commit(m_uncommitted);
    if (m_referrers && !m_referrers->update(m_uncommitted)) {
        m_builtReferrers = nullptr;
        m_referrers.reset();
    }
    for (KpIfcEntityBase* instance : m_uncommitted)
        instance->m_self = (instance->m_self & ~KpIfcEntityBase::kState) | KpIfcEntityBase::kCommitted;
    m_uncommitted.clear();
}

const ReferrerIndex& ModelData::referrerIndex() {
    if (const ReferrerIndex* built = m_builtReferrers.load(std::memory_order_acquire)) return *built;
    const std::lock_guard lock(m_buildingReferrers);
    if (!m_referrers) m_referrers = std::make_unique<ReferrerIndex>(model);
    m_builtReferrers.store(m_referrers.get(), std::memory_order_release);
    return *m_referrers;
}

std::vector<OrderEntry> ModelData::normalOrder() const {
    std::vector<OrderEntry> order = m_order;
    const auto nameOf = [](const OrderEntry& entry) {
        return entry.record() ? entry.record()->name : KpDbObjectId(entry.slot()).instanceName();
    };
    for (auto begin = order.begin(); begin != order.end();) {
        const auto end = std::find_if(begin, order.end(), [&](const OrderEntry& entry) { return nameOf(entry) == 0; });
        std::stable_sort(begin, end, [&](const auto& a, const auto& b) { return nameOf(a) < nameOf(b); });
        begin = end == order.end() ? end : end + 1;
    }
    return order;
}

void ModelData::makeOrderExplicit() {
    m_order.reserve(instanceCount + 1);
    table.sortSparse();
    for (KpIfcEntityBase* instance : model.instances()) m_order.emplace_back(instance->objectId().slot());
    m_explicitOrder = true;
}

} // namespace KP_SDAI
