#include "model/Inverses.h"

#include "model/InverseSet.h"
#include "model/MakeRoom.h"
#include "model/ModelData.h"

#include <KpIfcCore/KpIfcInverseMembers.h>
#include <KpIfcCore/KpIfcReferences.h>

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

namespace KP_SDAI {

// -- one set ---------------------------------------------------------------------------------------------------------

void KpIfcInverseSet::change(KpArena& arena, std::span<const KpDbObjectId> removed,
                             std::span<const KpDbObjectId> inserted) {
    constexpr std::size_t kFew = 8; // are moved one by one faster than all are copied
    const bool isAppended = removed.empty() && (empty() || end()[-1] < inserted.front());
    if (isAppended || removed.size() + inserted.size() <= kFew) {
        for (const KpDbObjectId& referrer : removed) remove(referrer);
        reserve(arena, size() + inserted.size());
        for (const KpDbObjectId& referrer : inserted) insert(arena, referrer);
        return;
    }
    std::vector<KpDbObjectId> kept;
    std::vector<KpDbObjectId> all;
    std::set_difference(begin(), end(), removed.begin(), removed.end(), std::back_inserter(kept));
    std::set_union(kept.begin(), kept.end(), inserted.begin(), inserted.end(), std::back_inserter(all));
    reserve(arena, all.size());
    clear();
    for (const KpDbObjectId& referrer : all) add(referrer);
}

// -- the members of an instance ---------------------------------------------------------------------------------------

const KpIfcSetAggr<KpDbObjectId>& KpIfcInverseMembers::read(const KpIfcEntityBase& owner, std::size_t index) const {
    if (KpIfcModel* const model = owner.owningModel(); model && model->data().isBehind()) model->commit();
    return set(index);
}

namespace {

/// Behind the set of all instances to which nothing refers. By name it is reached as one that could be changed; it
/// cannot.
class NobodyImp final : public KpIfcSetAggr<KpDbObjectId>::KpIfcSetAggrImp {
public:
    NobodyImp() : KpIfcSetAggrImp(Room{kPlaceholder}) {}
    KP::ErrorStatus add(const KpDbObjectId&) override { return KP::eRefused; }
    KP::ErrorStatus remove(const KpDbObjectId&) override { return KP::eRefused; }
    void assign(const KpDbObjectId*, std::size_t) override {}
    KpIfcAggrImp* clone() const override { return const_cast<NobodyImp*>(this); }

protected:
    KpIfcAggrImp* create(KpArena*, std::size_t) const override { return clone(); }
};

class NobodySet : public KpIfcSetAggr<KpDbObjectId> {
public:
    explicit NobodySet(NobodyImp& imp) : KpIfcSetAggr(&imp) {}
};

} // namespace

const KpIfcSetAggr<KpDbObjectId>& KpIfcInverseMembers::set(std::size_t index) const {
    static NobodyImp imp;
    static const NobodySet nobody(imp);
    return m_sets ? static_cast<const KpIfcSetAggr<KpDbObjectId>&>(m_sets[index]) : nobody;
}

void KpIfcInverseMembers::enter(KpIfcEntityBase& target, const KpIfcInverseFacts& inverse, KpIfcEntityBase& referrer) {
    KpIfcModel* const model = target.owningModel();
    if (model && model == referrer.owningModel()) model->data().inverses.enter(target, inverse, referrer);
}

// -- all of a model --------------------------------------------------------------------------------------------------

KpIfcInverseSet& Inverses::setOf(KpIfcEntityBase& target, const KpIfcInverseFacts& inverse, KpArena& arena) {
    KpIfcInverseSet*& sets = inverse.members(target).m_sets;
    if (!sets) {
        auto* const block = static_cast<KpIfcInverseSet*>(arena.allocate(inverse.count * sizeof(KpIfcInverseSet)));
        for (std::uint32_t i = 0; i < inverse.count; ++i) ::new (static_cast<void*>(block + i)) KpIfcInverseSet;
        sets = block;
    }
    return sets[inverse.index];
}

void Inverses::enter(KpIfcEntityBase& target, const KpIfcInverseFacts& inverse, const KpIfcEntityBase& referrer) {
    const Entry entry{&setOf(target, inverse), referrer.objectId()};
    if (m_isCommitting) {
        m_entered.push_back(entry);
        return;
    }
    makeRoomForOne(m_withdrawn);
    entry.set->insert(m_arena, entry.referrer);
    if (referrer.isUncommitted()) m_withdrawn.push_back(entry); // may refer elsewhere by the next commit
}

/// An instance belongs to the share that its slot's chunk belongs to, so that those of other shares are not touched.
void Inverses::fillFrom(KpIfcEntityBase& referrer, unsigned share, unsigned shares, KpArena& arena) {
    if (referrer.objectId().openObject() != &referrer) return; // displaced by a later record of its name
    for (const KpIfcCounterpartFacts& row : referrer.getInstanceType()->counterparts()) {
        if (row.referrer && !referrer.isKindOf(*row.referrer)) continue;
        const KpIfcInverseFacts& inverse = (*row.declaring)->facts()->inverses[row.inverse];
        visitReferences(referrer, *row.attribute, [&](const KpDbObjectId& handle) {
            if (reinterpret_cast<std::uintptr_t>(handle.slot()) / KpIfcSlotChunk::kBytes % shares != share) return;
            KpIfcEntityBase* const target = handle.openObject();
            if (target && target->isKindOf(*row.declaring))
                setOf(*target, inverse, arena).insert(arena, referrer.objectId());
        });
    }
}

void Inverses::move(KpIfcEntityBase& from, KpIfcEntityBase& to) {
    for (const KpIfcEntityFacts* facts = from.getInstanceType()->facts(); facts; facts = facts->supertype)
        for (std::uint32_t i = 0; i < facts->inverseCount; ++i)
            facts->inverses[i].members(to).m_sets = facts->inverses[i].members(from).m_sets;
}

void Inverses::withdraw(KpIfcEntityBase& referrer) {
    const KpIfcModel* const model = referrer.owningModel();
    visitCounterParts(referrer, referrer.getInstanceType()->counterparts(),
                      [&](KpIfcEntityBase& target, const KpIfcInverseFacts& inverse) {
                          if (target.owningModel() == model)
                              m_withdrawn.push_back({&setOf(target, inverse), referrer.objectId()});
                      });
}

void Inverses::commit(const ChangedInstances& changed) {
    // What a commit that was not completed has entered may be no longer true.
    if (m_isHalfDone) m_withdrawn.insert(m_withdrawn.end(), m_entered.begin(), m_entered.end());
    m_entered.clear();
    struct Committing {
        bool& is;
        ~Committing() { is = false; }
    };
    {
        const Committing committing{m_isCommitting = true};
        changed.visitUncommitted([](KpIfcEntityBase* instance) { instance->setInverseCounterParts(); });
    }
    apply();
    m_isHalfDone = false;
    m_withdrawn.clear();
    m_entered.clear();
}

/// Brings the sets from what was withdrawn to what is entered now.
void Inverses::apply() {
    for (std::vector<Entry>* entries : {&m_withdrawn, &m_entered}) {
        std::sort(entries->begin(), entries->end());
        entries->erase(std::unique(entries->begin(), entries->end()), entries->end());
    }
    std::vector<KpDbObjectId> removed;
    std::vector<KpDbObjectId> inserted;
    const bool areSetsKnown = !std::exchange(m_isHalfDone, true);
    auto gone = m_withdrawn.begin();
    auto come = m_entered.begin();
    while (gone != m_withdrawn.end() || come != m_entered.end()) {
        KpIfcInverseSet* const set =
            come == m_entered.end() || (gone != m_withdrawn.end() && *gone < *come) ? gone->set : come->set;
        removed.clear();
        inserted.clear();
        while ((gone != m_withdrawn.end() && gone->set == set) || (come != m_entered.end() && come->set == set)) {
            const bool isGone = gone != m_withdrawn.end() && gone->set == set;
            const bool isCome = come != m_entered.end() && come->set == set;
            if (isGone && isCome && gone->referrer == come->referrer) {
                if (!areSetsKnown) inserted.push_back(come->referrer);
                ++gone, ++come;
            } else if (isGone && (!isCome || gone->referrer < come->referrer)) {
                removed.push_back((gone++)->referrer);
            } else {
                inserted.push_back((come++)->referrer);
            }
        }
        if (!removed.empty() || !inserted.empty()) set->change(m_arena, removed, inserted);
    }
}

} // namespace KP_SDAI
