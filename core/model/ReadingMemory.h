#pragma once

#include "model/InstanceTable.h"

#include <KpIfcCore/KpArena.h>

namespace KP_SDAI {

/// Where one thread puts what it reads.
struct ReadingMemory {
    KpArena& arena;
    SlotCache slots = {};
};

} // namespace KP_SDAI
