#pragma once

#include <KpIfcCore/KpArena.h>
#include <KpIfcCore/KpDbObjectId.h>

#include <functional>
#include <span>
#include <vector>

namespace KP_SDAI {

class ChangedInstances;
class KpIfcEntityBase;
class KpIfcInverseSet;
struct KpIfcInverseFacts;

/// Keeps the inverse attributes of a model's instances true.
///
/// Before an instance changes, what it has entered is noted; at the next commit it is entered anew, and only what
/// differs is withdrawn from or inserted into the sets. So edits that move no reference cost the sets nothing, and many
/// edits cost no more than the sets are large.
class Inverses {
public:
    explicit Inverses(KpArena& arena) : m_arena(arena) {}

    void enter(KpIfcEntityBase& target, const KpIfcInverseFacts& inverse, const KpIfcEntityBase& referrer);
    /// Enters instances, which come in ascending order of names and none of which has changed, in the inverse
    /// attributes of those that they refer to, as far as these are in share `share` of `shares`. The shares may be
    /// filled at once, each with memory of its own. `isNext()` is asked before each instance: false ends it.
    template <class IsNext>
    static void fill(std::span<KpIfcEntityBase* const> referrers, unsigned share, unsigned shares, KpArena& arena,
                     IsNext isNext) {
        for (KpIfcEntityBase* const referrer : referrers) {
            if (!isNext()) return;
            fillFrom(*referrer, share, shares, arena);
        }
    }
    /// Gives what refers to an instance to another one of its entity.
    static void move(KpIfcEntityBase& from, KpIfcEntityBase& to);
    /// Notes what an instance that is about to change has entered.
    void withdraw(KpIfcEntityBase& referrer);
    /// Enters instances that changed anew. Where memory runs out in the middle, the next commit, which is to be told of
    /// the same instances and of those that changed since, sets all right.
    void commit(const ChangedInstances& changed);

private:
    struct Entry {
        KpIfcInverseSet* set;
        KpDbObjectId referrer;

        friend bool operator==(const Entry& a, const Entry& b) = default;
        friend bool operator<(const Entry& a, const Entry& b) {
            return a.set == b.set ? a.referrer < b.referrer : std::less<>()(a.set, b.set);
        }
    };

    static void fillFrom(KpIfcEntityBase& referrer, unsigned share, unsigned shares, KpArena& arena);
    static KpIfcInverseSet& setOf(KpIfcEntityBase& target, const KpIfcInverseFacts& inverse, KpArena& arena);
    KpIfcInverseSet& setOf(KpIfcEntityBase& target, const KpIfcInverseFacts& inverse) {
        return setOf(target, inverse, m_arena);
    }
    void apply();

    KpArena& m_arena;
    std::vector<Entry> m_withdrawn; ///< since the last commit
    std::vector<Entry> m_entered;   ///< by the commit that is under way
    bool m_isCommitting = false;
    bool m_isHalfDone = false; ///< memory ran out while the sets were being changed
};

} // namespace KP_SDAI
