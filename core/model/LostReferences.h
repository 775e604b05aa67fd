#pragma once

#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpIfcFacts.h>

#include <cstddef>
#include <unordered_set>

namespace KP_SDAI {

/// The slots of what is to be erased.
class Leaving {
public:
    /// False where it is among them already.
    bool add(const KpDbObjectId& handle) { return m_slots.insert(handle.slot()).second; }
    bool contains(const KpDbObjectId& handle) const { return m_slots.count(handle.slot()) != 0; }
    const std::unordered_set<KpIfcSlot*>& slots() const { return m_slots; }

private:
    std::unordered_set<KpIfcSlot*> m_slots;
};

/// How many values an attribute has that can hold references, and how many of them refer to what is to be erased.
struct LostReferences {
    std::size_t count = 0;
    std::size_t lost = 0;
};
LostReferences lostReferences(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, const Leaving& leaving);

/// True where an attribute with so many values has fewer than the schema demands.
bool lacksValues(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, std::size_t count);

/// Drops the references of an attribute to what is to be erased. What changes must have been announced.
void dropReferences(KpIfcEntityBase& instance, const KpIfcAttributeFacts& row, const Leaving& leaving);

} // namespace KP_SDAI
