#pragma once

#include "model/RootedEntity.h"

#include <KpIfcCore/KpIfcModel.h>

#include <string_view>
#include <unordered_map>

namespace KP_SDAI {

class ChangedInstances;

/// The instances of a model by their GlobalIds.
///
/// Entries are never removed: whoever finds one asks the instance whether it still has that GlobalId, and passes over
/// those that are gone.
class GlobalIdIndex {
public:
    explicit GlobalIdIndex(const KpIfcModel& model);

    // Each may be called by many threads at once.
    KpDbObjectId find(std::string_view globalId) const;
    void copyTo(std::string_view globalId, KpIfcArray<KpDbObjectId>& instances) const;
    KpIfcArray<KpIfcSharedGlobalId> shared() const;

    /// Takes in instances that changed. False where so many have that the index is to be built anew; it is of no use
    /// then.
    bool update(const ChangedInstances& changed);

private:
    /// Calls `visit(KpDbObjectId)` for each instance of a GlobalId, for one that had it before, too, more than once.
    template <class Visit>
    void visit(std::string_view globalId, Visit visit) const;
    void enter(KpIfcEntityBase& instance);

    RootedEntity m_rooted;
    std::unordered_multimap<std::size_t, KpIfcSlot*> m_slots; ///< by the hash of their GlobalId
    std::unordered_map<KpIfcSlot*, std::size_t> m_hashes;     ///< under which each was entered last
    std::size_t m_mostEntries = 0;
};

} // namespace KP_SDAI
