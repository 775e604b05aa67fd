#pragma once

#include <KpIfcCore/KpArena.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcModule.h>

#include "model/ChangedInstances.h"
#include "model/FileOrder.h"
#include "model/GlobalIdIndex.h"
#include "model/InstanceTable.h"
#include "model/Inverses.h"
#include "model/OnDemand.h"
#include "model/PackedOrder.h"
#include "model/ReferrerIndex.h"
#include "model/SlotWalk.h"
#include "model/UnreadRecords.h"
#include "values/BlockPool.h"

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace KP_SDAI {

struct ChangeLog;

/// What stands behind a model.
class ModelData {
public:
    ModelData(KpIfcModel& model, std::shared_ptr<KpIfcModule> module);
    ModelData(const ModelData&) = delete;
    ModelData& operator=(const ModelData&) = delete;
    ~ModelData();

    const KpIfcSchema& schema() const { return m_module->schema(); }

    /// Makes an instance in the model's memory that is in no slot yet.
    KpIfcEntityBase* construct(const KpIfcEntityFacts& facts) { return facts.construct(arena.allocate(facts.size)); }
    /// Memory of this model for another thread to read into.
    KpArena& addArena() { return m_arenas.emplace_back(pool); }
    /// Makes an instance in its empty slot; it counts as changed, for no file has it yet.
    KpIfcEntityBase* create(const KpIfcEntityFacts& facts, KpIfcSlot* slot);
    /// Puts an instance into its empty slot, as the last in file order.
    void bind(KpIfcSlot* slot, KpIfcEntityBase* instance);
    /// Puts a record that stays text into the file order, and into its slot where it has one (an empty one).
    KeptRecord* keep(std::string text, KpIfcSlot* slot);

    // Reading a file. What is read goes to its slots at once, by fill(), which any number of threads may call, and is
    // taken over later, stretch by stretch in file order.

    /// Gives an instance the slot that is its own. Nobody but this thread knows the instance yet.
    static void assign(KpIfcEntityBase& instance, KpIfcSlot* slot) {
        instance.m_self = reinterpret_cast<std::uintptr_t>(slot) | (instance.m_self & KpIfcEntityBase::kFlags);
    }
    /// Says of an instance that is being read that its destructor has to run.
    static void markHeap(KpIfcEntityBase& instance) { instance.m_self |= KpIfcEntityBase::kOwnsHeap; }
    /// Takes over what was read behind all that was taken before, and empties `read`.
    void take(ReadInstances& read);
    /// Tells how far a file is read, so that memory for the rest comes in pieces of the right size. `size` is 0 where
    /// it is not known.
    void expectRest(std::uint64_t size, std::uint64_t place);
    /// Nothing more will be taken.
    void endTaking() {
        if (!m_explicitOrder) m_order.clear();
    }

    /// Turns a bound instance into the kept record `text` at its place, because its name comes again.
    void demote(KpIfcSlot* slot, std::string text);
    /// Empties the slot of an instance or kept record, for good. Nothing that stays refers to it any more; all that
    /// leave their slots together, and all that referred to them, have passed beforeChange() before the first leaves.
    void erase(KpIfcSlot* slot);
    bool wasErased(const KpIfcSlot* slot) const { return m_erasedSlots.count(slot) != 0; }
    /// Records of one name are erased together.
    bool isErased(const KeptRecord& record) const {
        return !m_erasedSlots.empty() && record.name != 0 && wasErased(table.find(record.name));
    }
    void keepField(KpIfcEntityBase& instance, KeptField field);
    const std::vector<KeptField>* keptFields(const KpIfcEntityBase& instance) const;
    /// Drops what is kept of a field, and with it the text of the whole record, which has that field too.
    void forgetField(const KpIfcEntityBase& instance, std::size_t field);

    /// What is to do before the first change of an instance since the last commit.
    void noteChange(KpIfcEntityBase& instance);
    bool hasUncommitted() const { return !m_changed.areCommitted() || m_isRollBackDue; }
    /// Where memory runs out, what is uncommitted stays so, and the next commit begins anew.
    void commit();
    /// True where inverse attributes are not what they should be.
    bool isBehind() const { return !isWhole() || hasUncommitted(); }
    // Of a model that is not behind.
    const ReferrerIndex& referrerIndex() { return m_referrers.get(model); }
    const GlobalIdIndex& globalIdIndex() { return m_globalIds.get(model); }

    /// From beginChanges() on what changes is noted, until it is kept or undone; see KpIfcChangeGroup.
    bool isNotingChanges() const { return m_changes != nullptr; }
    void beginChanges();
    void keepChanges();
    /// Where memory runs out it stays due: the next commit begins with it.
    void rollBackChanges();

    /// True where file order is that of the names and there are no records kept as text.
    bool isOrderedByName() const { return !m_explicitOrder; }
    /// Calls `visit(KpIfcEntityBase*)` or `visit(KeptRecord&)` for everything in file order.
    template <class VisitInstance, class VisitRecord>
    void visitInFileOrder(VisitInstance visitInstance, VisitRecord visitRecord) const {
        readAll();
        if (!m_explicitOrder) return visitByName(visitInstance);
        m_order.visit(table, [&](const OrderEntry& entry) {
            if (KeptRecord* record = entry.record()) {
                if (!isErased(*record)) visitRecord(*record);
            } else if (KpIfcEntityBase* instance = KpDbObjectId(entry.slot()).openObject()) {
                visitInstance(instance);
            }
        });
    }

    /// The same in ascending order of names, but for what has no name, which stays where it is between the others.
    template <class VisitInstance, class VisitRecord>
    void visitInNormalOrder(VisitInstance visitInstance, VisitRecord visitRecord) const {
        readAll();
        if (m_kept.empty()) return visitByName(visitInstance); // the table has them in this order
        for (const OrderEntry& entry : normalOrder()) {
            if (KeptRecord* record = entry.record()) {
                if (!isErased(*record)) visitRecord(*record);
            } else if (KpIfcEntityBase* instance = KpDbObjectId(entry.slot()).openObject()) {
                visitInstance(instance);
            }
        }
    }
    /// Calls `visit(KpDbObjectId)` for every instance that has kept texts and every record kept as text that has a
    /// name.
    template <class Visit>
    void visitKeptTexts(Visit visit) const {
        readAll();
        for (const auto& [instance, fields] : m_keptFields)
            if (instance->owningModel() && !fields.empty()) visit(instance->objectId());
        for (const KeptRecord& record : m_kept) {
            const KpDbObjectId handle(record.name ? table.find(record.name) : nullptr);
            if (handle.isDefined() && !handle.openObject()) visit(handle);
        }
    }
    /// Calls `visit(const KpIfcEntityBase&)` for the instances that anything may have changed since they were read,
    /// created ones included.
    template <class Visit>
    void visitChanged(Visit visit) const {
        const auto visitIfChanged = [&visit](const KpIfcEntityBase* instance) {
            if (instance->isChanged() && instance->objectId().openObject() == instance) visit(*instance);
        };
        for (const KpIfcEntityBase* instance : m_readWithHeap) visitIfChanged(instance);
        m_changed.visitFirst(visitIfChanged);
    }

    // -- of a model that was opened lazily; PartlyRead.cpp --

    bool isWhole() const { return !m_unread; }
    /// From now on `records` know what the unread slots stand for.
    void leaveUnread(std::unique_ptr<UnreadRecords> records) { m_unread = std::move(records); }
    /// Notes a record that is to be read later in its empty slot, which is no scattered one. They come in file order.
    void noteUnread(KpIfcSlot* slot, std::uint64_t name, std::uintptr_t word);
    /// Takes over instances that were read into unread slots.
    void takeNoted(ReadInstances& read) {
        takeHeld(read);
        read.forgetPlaces();
    }
    /// The instance of an unread slot. Throws; then the slot is as it was.
    KpIfcEntityBase* read(KpIfcSlot& slot);
    /// Undoes what binding the record of an unread slot has done.
    void unread(KpIfcSlot* slot, std::uintptr_t word) noexcept;
    /// Reads all that is left to be read. Throws; then all is as it was.
    void readAll() const {
        if (m_unread) m_unread->readAll();
    }
    /// Drops all that has been read, so that reading begins anew; the memory stays behind. Nothing else has happened
    /// to the model.
    void forgetRead() noexcept;
    /// Calls `readFile()`, which fills the model as if nothing had been read; where that throws all is as it was.
    /// `known` are instances that are to stay where they are.
    void readAnew(const std::function<void()>& readFile, std::span<KpIfcEntityBase* const> known);
    /// The entity of an instance, read or not; null where there is none.
    const KpIfcEntityType* entityOf(const KpDbObjectId& handle) const {
        if (const KpIfcEntityBase* const instance = handle.instanceRead()) return instance->getInstanceType();
        return handle.isDefined() && !handle.isKeptRecord() ? m_unread->entityOf(*handle.slot()) : nullptr;
    }
    /// Instances by entity, in no order, where the model is not whole.
    std::vector<KpIfcEntityCount> countUnread() const { return m_unread->entityCounts(); }
    /// The instances of a GlobalId, ascending, where the model is not whole.
    std::vector<KpDbObjectId> findUnread(std::string_view globalId);

    KpIfcModel& model;
    BlockPool pool;
    KpArena arena{pool};
    Inverses inverses{arena};
    InstanceTable table;
    bool utf8 = true;
    std::size_t instanceCount = 0;
    std::size_t keptCount = 0;
    std::uint64_t highestName = 0;
    std::uint64_t highestNameInText =
        0; ///< that kept texts refer to; new names are higher, so that none gets a meaning
    std::vector<std::uint64_t> newRecords;  ///< names of records kept as text that no file of this model has
    std::vector<std::uint64_t> erasedNames; ///< of instances and kept records, created ones included

private:
    std::vector<OrderEntry> normalOrder() const;
    /// Of a model that is whole.
    template <class Visit>
    void visitByName(Visit visit) const {
        visitSlots(table, [&visit](const KpIfcSlot& slot) {
            if (!(slot.word & KpIfcSlot::kNoInstance)) visit(reinterpret_cast<KpIfcEntityBase*>(slot.word));
        });
    }
    void noteNamesIn(const std::string& text);
    void makeOrderExplicit();
    void commitChanges();
    void takeHeld(ReadInstances& read);
    /// Empties a slot, and fills it again with the word that it had.
    void leaveSlot(KpIfcSlot* slot);
    void returnToSlot(KpIfcSlot* slot, std::uintptr_t word);

    std::shared_ptr<KpIfcModule> m_module;
    // The order of a file is that of its names until something in it says otherwise.
    bool m_explicitOrder = false;
    PackedOrder m_order; ///< erased ones keep their places; empty, but while a file is read, where order is by name
    std::list<KeptRecord> m_kept;
    std::list<KpArena> m_arenas; ///< besides `arena`
    std::unordered_map<const KpIfcEntityBase*, std::vector<KeptField>> m_keptFields;
    std::vector<KpIfcEntityBase*> m_readWithHeap; ///< held memory of their own when they were read
    ChangedInstances m_changed;                   ///< besides those, the only ones whose destructors have to run
    std::vector<const KpIfcSlot*> m_left;         ///< slots that instances have left since the last commit
    std::unordered_set<const KpIfcSlot*> m_erasedSlots;
    OnDemand<ReferrerIndex> m_referrers;
    OnDemand<GlobalIdIndex> m_globalIds;
    std::unique_ptr<ChangeLog> m_changes;
    bool m_isRollBackDue = false;            ///< of m_changes
    std::unique_ptr<UnreadRecords> m_unread; ///< null where all is read
};

} // namespace KP_SDAI
