#include <KpIfcCore/KpIfcGlobalIds.h>
#include <KpIfcCore/KpIfcModel.h>

#include "model/ModelData.h"
#include "model/SlotWalk.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

namespace KP_SDAI {

KpIfcModel::KpIfcModel(std::shared_ptr<KpIfcModule> module)
    : m_data(std::make_unique<ModelData>(*this, std::move(module))) {}

KpIfcModel::~KpIfcModel() = default;

const KpIfcSchema& KpIfcModel::schema() const {
    return m_data->schema();
}

bool KpIfcModel::textIsUtf8() const {
    return m_data->utf8;
}

KpIfcEntityBase* KpIfcModel::create(std::string_view entityName, std::uint64_t instanceName) {
    return create(schema().findEntity(entityName), instanceName);
}

KpIfcEntityBase* KpIfcModel::create(const KpIfcEntityType* type, std::uint64_t instanceName) {
    if (!type || !type->facts() || type->isAbstract()) return nullptr;
    m_data->readAll();
    if (instanceName == 0) instanceName = std::max(m_data->highestName, m_data->highestNameInText) + 1;
    if (instanceName == 0) instanceName = m_data->highestName + 1;
    if (instanceName == 0) return nullptr; // the highest name is in use
    KpIfcSlot* slot = m_data->table.slot(instanceName);
    m_data->table.sortSparse();
    if (slot->word != 0 || m_data->wasErased(slot)) return nullptr;
    return m_data->create(*type->facts(), slot);
}

KpIfcEntityBase* KpIfcModel::createRooted(std::string_view entityName, std::uint64_t instanceName) {
    return createRooted(schema().findEntity(entityName), instanceName);
}

KpIfcEntityBase* KpIfcModel::createRooted(const KpIfcEntityType* type, std::uint64_t instanceName) {
    const RootedEntity rooted(schema());
    if (!type || !rooted.entity || !type->isKindOf(rooted.entity)) return nullptr;
    const KpIfcGUID globalId = newGlobalId();
    KpIfcEntityBase* const instance = create(type, instanceName);
    if (instance) rooted.globalIdOf(*instance) = globalId;
    return instance;
}

KpDbObjectId KpIfcModel::find(std::uint64_t instanceName) const {
    KpIfcSlot* slot = m_data->table.find(instanceName);
    return slot && slot->word ? KpDbObjectId(slot) : KpDbObjectId();
}

std::size_t KpIfcModel::count() const {
    return m_data->instanceCount;
}

KpIfcArray<KpIfcEntityCount> KpIfcModel::entityCounts() const {
    KpIfcArray<KpIfcEntityCount> counts;
    std::unordered_map<const KpIfcEntityType*, std::size_t> byEntity;
    const KpIfcEntityType* last = nullptr; // instances of one entity often stand one behind the other
    std::size_t* count = nullptr;
    if (m_data->isWhole()) {
        for (const KpIfcEntityBase* const instance : instances()) {
            const KpIfcEntityType* const entity = instance->getInstanceType();
            if (entity != last) count = &byEntity[last = entity];
            ++*count;
        }
    } else {
        for (const KpIfcEntityCount& ofOne : m_data->countUnread()) counts.append(ofOne);
    }
    for (const auto& [entity, instances] : byEntity) counts.append({entity, instances});
    std::sort(counts.begin(), counts.end(), [](const KpIfcEntityCount& a, const KpIfcEntityCount& b) {
        return std::strcmp(a.entity->name(), b.entity->name()) < 0;
    });
    return counts;
}

std::size_t KpIfcModel::keptRecordCount() const {
    return m_data->keptCount;
}

std::uint64_t KpIfcModel::highestName() const {
    return m_data->highestName;
}

std::string_view KpIfcModel::keptRecord(const KpDbObjectId& handle) const {
    const std::uintptr_t word = handle.isNull() ? 0 : handle.slot()->word;
    if (!(word & KpIfcSlot::kKeptRecord)) return {};
    return reinterpret_cast<const KeptRecord*>(word & ~KpIfcSlot::kKeptRecord)->text;
}

KpIfcArray<KpDbObjectId> KpIfcModel::fileOrder() const {
    KpIfcArray<KpDbObjectId> handles;
    handles.reserve(static_cast<std::uint32_t>(count()));
    m_data->visitInFileOrder([&handles](const KpIfcEntityBase* instance) { handles.append(instance->objectId()); },
                             [](const KeptRecord&) {});
    return handles;
}

void KpIfcModel::commit() {
    m_data->commit();
}

bool KpIfcModel::isWhole() const {
    return m_data->isWhole();
}

bool KpIfcModel::hasUncommitted() const {
    return m_data->hasUncommitted();
}

KpIfcArray<KpDbObjectId> KpIfcModel::referrers(const KpDbObjectId& handle) const {
    KpIfcArray<KpDbObjectId> referrers;
    if (handle.isNull()) return referrers;
    m_data->commit();
    m_data->referrerIndex().copyTo(handle, referrers);
    return referrers;
}

void KpIfcModel::forgetSource(const KpIfcEntityBase& instance, std::size_t field) {
    m_data->forgetField(instance, field);
}

void KpIfcModel::forgetSource(const KpIfcEntityBase& instance, const KpIfcAttributeFacts& attribute) {
    if (!m_data->keptFields(instance)) return;
    // Entities that redeclare attributes have rows of their own for their records: the same attribute by name.
    const auto& fields = instance.getInstanceType()->recordFields();
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (equalNoCase(attribute.name, std::strlen(attribute.name), fields[i]->name)) m_data->forgetField(instance, i);
}

KpIfcModel::Range KpIfcModel::range(const KpIfcEntityType* type, bool withSubtypes) const {
    Range range;
    range.m_begin.m_data = m_data.get();
    range.m_begin.m_type = type;
    range.m_begin.m_withSubtypes = withSubtypes;
    range.m_begin.advance();
    return range;
}

KpIfcModel::Range KpIfcModel::instances(const KpIfcEntityType* type, bool withSubtypes) const {
    return type ? range(type, withSubtypes) : Range();
}

KpIfcModel::Range KpIfcModel::instances(std::string_view entityName, bool withSubtypes) const {
    return instances(schema().findEntity(entityName), withSubtypes);
}

void KpIfcModel::Iterator::advance() {
    InstanceTable::Place place{m_stretch, m_index, m_sparse};
    KpIfcEntityBase* current = nullptr;
    for (;;) {
        const KpDbObjectId next(nextSlot(m_data->table, place));
        current = next.instanceRead();
        if (next.isNull() || (current && !m_type)) break;
        // What has not been read need not be, where it is of another entity; a record kept as text has none.
        const KpIfcEntityType* const type = current ? current->getInstanceType() : m_data->entityOf(next);
        if (!type) continue;
        if (m_type && type != m_type) {
            if (!m_withSubtypes || !(current ? current->isKindOf(m_type) : type->isKindOf(m_type))) continue;
        }
        if (!current) current = next.openObject();
        if (current) break;
    }
    m_current = current;
    m_stretch = place.stretch;
    m_index = place.index;
    m_sparse = place.sparse;
}

} // namespace KP_SDAI
