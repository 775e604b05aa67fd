#include "model/ModelData.h"

#include "model/AttributeCopy.h"
#include "model/ChangeLog.h"
#include "model/MakeRoom.h"
#include "part21/ReferenceText.h"

#include <algorithm>
#include <new>
#include <utility>

namespace KP_SDAI {

ModelData::ModelData(KpIfcModel& m, std::shared_ptr<KpIfcModule> module)
    : model(m), table(m, pool), m_module(std::move(module)) {}

ModelData::~ModelData() {
    // What was only read lies in the arena with all that it holds; the others may own memory elsewhere.
    for (KpIfcEntityBase* instance : m_readWithHeap) instance->~KpIfcEntityBase();
    m_changed.visitFirst([](KpIfcEntityBase* instance) { instance->~KpIfcEntityBase(); });
}

KpIfcEntityBase* ModelData::create(const KpIfcEntityFacts& facts, KpIfcSlot* slot) {
    readAll();
    KpIfcEntityBase* instance = construct(facts);
    m_changed.makeRoomForFirst(arena);
    bind(slot, instance);
    // As any change would be noted, but that it refers to nothing yet.
    m_changed.addFirst(*instance);
    instance->m_self |= KpIfcEntityBase::kUncommitted;
    return instance;
}

void ModelData::bind(KpIfcSlot* slot, KpIfcEntityBase* instance) {
    const std::uint64_t name = KpDbObjectId(slot).instanceName();
    if (!m_explicitOrder && name < highestName) makeOrderExplicit();
    if (m_explicitOrder) m_order.makeRoom(OrderEntry(slot));
    if (m_changes) m_changes->noteCreated(slot, *instance);
    slot->word = reinterpret_cast<std::uintptr_t>(instance);
    instance->m_self = reinterpret_cast<std::uintptr_t>(slot) | (instance->m_self & KpIfcEntityBase::kFlags);
    if (m_explicitOrder) m_order.append(OrderEntry(slot));
    if (name > highestName) highestName = name;
    ++instanceCount;
    table.noteInstances(1);
}

void ModelData::noteNamesIn(const std::string& text) {
    visitReferenceTexts(text, [this](std::uint64_t name, std::string_view) {
        if (name > highestNameInText) highestNameInText = name;
    });
}

KeptRecord* ModelData::keep(std::string text, KpIfcSlot* slot) {
    noteNamesIn(text);
    if (!m_explicitOrder) makeOrderExplicit();
    const std::uint64_t name = KpDbObjectId(slot).instanceName();
    m_order.makeRoom(OrderEntry(static_cast<KeptRecord*>(nullptr)));
    if (m_changes) makeRoomForOne(m_changes->created);
    KeptRecord& record = m_kept.emplace_back(KeptRecord{std::move(text), name});
    m_order.append(OrderEntry(&record));
    if (slot) {
        ++keptCount;
        if (name > highestName) highestName = name;
        if (slot->word == 0) {
            slot->word = reinterpret_cast<std::uintptr_t>(&record) | KpIfcSlot::kKeptRecord;
            if (m_changes) m_changes->created.push_back(slot);
        }
    }
    return &record;
}

void ModelData::take(ReadInstances& read) {
    if (!read.isAscending || (!read.order.empty() && read.firstName <= highestName)) m_explicitOrder = true;
    m_order.append(read.order);
    for (const KeptRecord& record : read.kept) noteNamesIn(record.text);
    m_kept.splice(m_kept.end(), read.kept);
    takeHeld(read);
    if (read.highestName > highestName) highestName = read.highestName;
    instanceCount += read.count;
    keptCount += read.keptCount;
    table.noteInstances(read.count);
    read.forgetPlaces();
}

void ModelData::expectRest(std::uint64_t size, std::uint64_t place) {
    constexpr std::uint64_t kTelling = 512 * 1024; // bytes, from which the rest can be told
    constexpr double kUsual = 1;                   // bytes for each of the file, at least
    if (size == 0) return;
    const auto left = static_cast<double>(size - std::min(size, place));
    const double each = place < kTelling ? kUsual : static_cast<double>(pool.inUse()) / static_cast<double>(place);
    pool.expect(static_cast<std::size_t>(left * each));
}

/// Takes over what instances hold, and what is held of them, besides their places.
void ModelData::takeHeld(ReadInstances& read) {
    m_readWithHeap.insert(m_readWithHeap.end(), read.toDestroy.begin(), read.toDestroy.end());
    read.toDestroy.clear();
    for (auto& [instance, field] : read.keptFields) keepField(*instance, std::move(field));
    read.keptFields.clear();
}

void ModelData::demote(KpIfcSlot* slot, std::string text) {
    m_explicitOrder = true;
    KeptRecord& record = m_kept.emplace_back(KeptRecord{std::move(text), KpDbObjectId(slot).instanceName()});
    m_order.replace(table, slot, &record);
    slot->word = 0;
    ++keptCount;
    --instanceCount;
}

void ModelData::erase(KpIfcSlot* slot) {
    if (m_changes) makeRoomForOne(m_changes->erased);
    makeRoomForOne(m_left);
    makeRoomForOne(erasedNames);
    m_erasedSlots.insert(slot);
    // From here on nothing fails.
    if (m_changes) m_changes->erased.push_back({slot, slot->word});
    leaveSlot(slot);
    erasedNames.push_back(KpDbObjectId(slot).instanceName());
}

void ModelData::leaveSlot(KpIfcSlot* slot) {
    if (KpIfcEntityBase* instance = KpDbObjectId(slot).openObject()) {
        instance->m_self &= KpIfcEntityBase::kFlags;
        m_left.push_back(slot);
        --instanceCount;
    } else {
        --keptCount;
    }
    slot->word = 0;
}

void ModelData::returnToSlot(KpIfcSlot* slot, std::uintptr_t word) {
    slot->word = word;
    if (KpIfcEntityBase* instance = KpDbObjectId(slot).openObject()) {
        instance->m_self = reinterpret_cast<std::uintptr_t>(slot) | (instance->m_self & KpIfcEntityBase::kFlags);
        m_changed.addAgain(*instance); // it left uncommitted
        ++instanceCount;
    } else {
        ++keptCount;
    }
}

void ModelData::keepField(KpIfcEntityBase& instance, KeptField field) {
    noteNamesIn(field.source);
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
    readAll();
    const auto found = m_keptFields.find(&instance);
    if (found == m_keptFields.end()) return;
    const auto isOfField = [field](const KeptField& kept) { return kept.field == field; };
    if (std::none_of(found->second.begin(), found->second.end(), isOfField)) return;
    KpIfcChange::before(const_cast<KpIfcEntityBase&>(instance)); // it is written otherwise from now on
    std::erase_if(found->second, isOfField);
    std::erase_if(found->second, [](const KeptField& kept) { return kept.field == KeptField::kWholeRecord; });
}

void ModelData::noteChange(KpIfcEntityBase& instance) {
    readAll();
    if (m_changes) m_changes->noteChange(instance, keptFields(instance));
    if ((instance.m_self & KpIfcEntityBase::kState) == KpIfcEntityBase::kAsRead) {
        m_changed.makeRoomForFirst(arena);
        m_changed.addFirst(instance);
        instance.m_self |= KpIfcEntityBase::kOwnsHeap;
    } else {
        m_changed.addAgain(instance);
    }
    inverses.withdraw(instance);
}

void ModelData::commit() {
    readAll();
    if (m_isRollBackDue) rollBackChanges();
    commitChanges();
}

void ModelData::commitChanges() {
    if (m_changed.areCommitted()) return;
    inverses.commit(m_changed);
    m_referrers.follow([this](ReferrerIndex& index) { return index.update(m_changed, m_left); });
    m_globalIds.follow([this](GlobalIdIndex& index) { return index.update(m_changed); });
    m_changed.visitUncommitted([](KpIfcEntityBase* instance) {
        instance->m_self = (instance->m_self & ~KpIfcEntityBase::kState) | KpIfcEntityBase::kCommitted;
    });
    m_changed.setCommitted();
    m_left.clear();
}

// -- undoing ---------------------------------------------------------------------------------------------------------

void ModelData::beginChanges() {
    commit();
    m_changes = std::make_unique<ChangeLog>();
    m_changes->explicitOrder = m_explicitOrder;
    m_changes->orderEnd = m_order.mark();
    m_changes->highestName = highestName;
    m_changes->erasedCount = erasedNames.size();
    m_changes->newRecordCount = newRecords.size();
}

void ModelData::keepChanges() {
    m_changes.reset();
}

void ModelData::rollBackChanges() {
    m_isRollBackDue = true;
    commitChanges();
    ChangeLog& log = *m_changes;
    // What they have entered in others is withdrawn while all are in their slots.
    for (KpIfcSlot* slot : log.created)
        if (KpIfcEntityBase* instance = KpDbObjectId(slot).openObject()) instance->beforeChange();
    for (const auto& [instance, values] : log.former)
        if (instance->owningModel()) instance->beforeChange();
    for (const auto& [instance, former] : log.former)
        if (former.values) copyAttributes(*instance, *former.values); // else it was created
    m_changed.makeRoomForAgain(log.erased.size());
    m_left.reserve(m_left.size() + log.created.size());

    // From here on nothing fails; before, all can be done again.
    for (const ChangeLog::Erased& erased : log.erased) {
        returnToSlot(erased.slot, erased.word);
        m_erasedSlots.erase(erased.slot);
    }
    erasedNames.resize(log.erasedCount);
    newRecords.resize(log.newRecordCount);
    for (KpIfcSlot* slot : log.created) leaveSlot(slot);
    for (auto& [instance, former] : log.former)
        if (former.hasKeptFields) m_keptFields.find(instance)->second = std::move(former.keptFields);
    m_explicitOrder = log.explicitOrder;
    m_order.returnTo(log.orderEnd);
    highestName = log.highestName;
    m_changes.reset();
    m_isRollBackDue = false;
    try {
        commitChanges();
    } catch (const std::bad_alloc&) { // all is undone; the next commit makes up for this one
    }
}

std::vector<OrderEntry> ModelData::normalOrder() const {
    std::vector<OrderEntry> order;
    order.reserve(m_order.mark().count);
    m_order.visit(table, [&](const OrderEntry& entry) { order.push_back(entry); });
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
    table.sortSparse();
    PackedOrder order;
    for (KpIfcEntityBase* instance : model.instances()) order.append(OrderEntry(instance->objectId().slot()));
    m_order = std::move(order);
    m_explicitOrder = true;
}

} // namespace KP_SDAI
