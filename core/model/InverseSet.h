#pragma once

#include <KpIfcCore/KpArena.h>
#include <KpIfcCore/KpIfcSetAggr.h>

#include <algorithm>
#include <cstddef>
#include <span>

namespace KP_SDAI {

/// The referrers of one instance through one inverse attribute. Lies in a model's memory with all that it holds: a set
/// that outgrows its place moves to one of twice the size at least and leaves the old one behind, so that it needs no
/// destructor and leaves less behind than it holds.
class KpIfcInverseSet : public KpIfcSetAggr<KpDbObjectId> {
public:
    void insert(KpArena& arena, const KpDbObjectId& referrer) {
        if (m_imp->count() == m_imp->room() && contains(referrer)) return;
        reserve(arena, size() + 1);
        add(referrer);
    }
    /// Removes and inserts many in a time proportional to the size of the set. Both are in ascending order.
    void change(KpArena& arena, std::span<const KpDbObjectId> removed, std::span<const KpDbObjectId> inserted);

private:
    void reserve(KpArena& arena, std::size_t count) {
        const std::size_t room = m_imp->room();
        if (count <= room) return;
        m_imp = imp().createFilled(arena, const_cast<KpDbObjectId*>(begin()), size(), std::max(count, 2 * room));
    }
};
static_assert(sizeof(KpIfcInverseSet) == sizeof(void*));

} // namespace KP_SDAI
