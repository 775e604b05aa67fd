#pragma once

#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpIfcArray.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace KP_SDAI {

class ChangedInstances;
class KpIfcEntityBase;
class KpIfcModel;

/// Which instances of a model refer to an instance, through whatever explicit attribute.
///
/// The body is laid out once, in a time proportional to the number of references: the referrers of all targets one
/// after the other, and for each chunk of slots that has targets where those of each slot begin. That takes 8 bytes a
/// reference and 4 a slot. Instances that were committed since are ignored there; what they refer to now is kept
/// beside it.
class ReferrerIndex {
public:
    explicit ReferrerIndex(const KpIfcModel& model);

    /// Appends the referrers of a target, ascending by name, each once. May be called by many threads at once.
    void copyTo(const KpDbObjectId& target, KpIfcArray<KpDbObjectId>& referrers) const;

    /// True where `accepts(const KpDbObjectId&)` is of one of the referrers of a target; they come in no order, each
    /// once, and none after that one. May be called by many threads at once.
    template <class Accepts>
    bool any(const KpDbObjectId& target, Accepts accepts) const {
        for (const KpDbObjectId& referrer : body(target))
            if ((m_targets.empty() || !m_targets.count(referrer.slot())) && accepts(referrer)) return true;
        if (const auto found = m_changed.find(target.slot()); found != m_changed.end())
            for (const KpDbObjectId& referrer : found->second)
                if (accepts(referrer)) return true;
        return false;
    }

    /// Takes in what instances refer to after a change, and those that left their slots. False where so many have
    /// changed that the index is to be built anew; it is of no use then.
    bool update(const ChangedInstances& changed, std::span<const KpIfcSlot* const> left);

private:
    /// The targets in one chunk.
    struct Page {
        std::size_t base = 0; ///< where the referrers of its first slot begin
        /// Where those of each slot begin, from there; those of slot i end where those of slot i + 1 begin.
        std::uint32_t first[KpIfcSlotChunk::kSlots + 1] = {};
    };
    using Handles = std::vector<KpDbObjectId>;

    std::span<const KpDbObjectId> body(const KpDbObjectId& target) const;
    /// Takes in what the instance of a slot refers to now, ascending by slots; leaves something else in `targets`.
    void refersTo(const KpIfcSlot* slot, Handles& targets);

    std::unordered_map<const KpIfcSlotChunk*, std::uint32_t> m_pageOf;
    std::vector<Page> m_pages;
    Handles m_referrers;
    std::size_t m_mostChanged;
    std::unordered_map<const KpIfcSlot*, Handles> m_targets; ///< of instances that changed or left, what they refer to
    std::unordered_map<const KpIfcSlot*, Handles> m_changed; ///< of targets, the referrers among those, ascending
};

} // namespace KP_SDAI
