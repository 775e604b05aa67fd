#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>

#include "model/InstanceList.h"

#include <cstddef>
#include <vector>

namespace KP_SDAI {

/// The instances of a model that have ever been created or changed, and which of them are uncommitted.
class ChangedInstances {
public:
    /// Sees to it that addFirst() needs no memory.
    void makeRoomForFirst(KpArena& arena) { m_first.makeRoomForOne(arena); }
    /// An instance that was created, or changed while it was as read.
    void addFirst(KpIfcEntityBase& instance) { m_first.append(instance); }
    /// One that is here already, or has held memory of its own since it was read.
    void addAgain(KpIfcEntityBase& instance) { m_again.push_back(&instance); }
    void makeRoomForAgain(std::size_t count) { m_again.reserve(m_again.size() + count); }

    /// Calls `visit(KpIfcEntityBase*)` for all that came by addFirst().
    template <class Visit>
    void visitFirst(Visit visit) const {
        m_first.visit(visit);
    }

    bool areCommitted() const { return !m_first.hasNew() && m_again.empty(); }
    /// Calls `visit(KpIfcEntityBase*)` for the uncommitted ones that are in their slots, for some more than once.
    template <class Visit>
    void visitUncommitted(Visit visit) const {
        const auto visitInSlot = [&visit](KpIfcEntityBase* instance) {
            if (instance->owningModel()) visit(instance);
        };
        m_first.visitNew(visitInSlot);
        for (KpIfcEntityBase* instance : m_again) visitInSlot(instance);
    }
    void setCommitted() {
        m_first.mark();
        m_again.clear();
    }

private:
    InstanceList m_first;
    std::vector<KpIfcEntityBase*> m_again;
};

} // namespace KP_SDAI
