#pragma once

#include "model/InstanceTable.h"

namespace KP_SDAI {

/// InstanceTable::next() for loops over all instances, which a call for each would make slower.
inline KpIfcSlot* nextSlot(const InstanceTable& table, InstanceTable::Place& place) {
    // The next among the dense ones, and the next scattered one: the lower name wins.
    KpIfcSlot* dense = nullptr;
    for (; place.stretch < table.stretchCount(); ++place.stretch, place.index = 0) {
        KpIfcSlotChunk* const slots = table.chunk(place.stretch);
        if (!slots) continue;
        while (place.index < KpIfcSlotChunk::kSlots && slots->slots[place.index].word == 0) ++place.index;
        if (place.index == KpIfcSlotChunk::kSlots) continue;
        dense = &slots->slots[place.index];
        break;
    }
    const auto& sparse = table.sparse();
    while (place.sparse < sparse.size() && sparse[place.sparse]->word == 0) ++place.sparse;
    KpIfcSlot* const scattered = place.sparse < sparse.size() ? sparse[place.sparse] : nullptr;
    if (scattered && (!dense || KpDbObjectId(scattered) < KpDbObjectId(dense))) {
        ++place.sparse;
        return scattered;
    }
    if (dense) ++place.index;
    return dense;
}

/// Calls `visit(const KpIfcSlot&)` for all slots that are not empty, in ascending order of names.
template <class Visit>
void visitSlots(const InstanceTable& table, Visit visit) {
    if (table.sparse().empty()) {
        for (std::size_t stretch = 0; stretch < table.stretchCount(); ++stretch) {
            const KpIfcSlotChunk* const chunk = table.chunk(stretch);
            if (!chunk) continue;
            for (const KpIfcSlot& slot : chunk->slots)
                if (slot.word) visit(slot);
        }
        return;
    }
    InstanceTable::Place place;
    while (const KpIfcSlot* const slot = nextSlot(table, place)) visit(*slot);
}

} // namespace KP_SDAI
