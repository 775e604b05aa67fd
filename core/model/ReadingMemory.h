#pragma once

#include "model/InstanceTable.h"
#include "part21/KnownTypes.h"

#include <KpIfcCore/KpArena.h>

namespace KP_SDAI {

/// Where one thread puts what it reads.
struct ReadingMemory {
    ReadingMemory(KpArena& a, BlockPool& pool) : arena(a), types(pool) {}

    KpArena& arena;
    SlotCache slots;    ///< of what is referred to
    SlotCache ownSlots; ///< of what is read
    KnownTypes types;   ///< of what it has read
};

} // namespace KP_SDAI
