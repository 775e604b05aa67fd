#pragma once

#include <KpIfcCore/KpDbObjectId.h>

#include <atomic>

/// Slots while several threads read one file into a model.
namespace KP_SDAI {

/// The word of a slot that another thread may be filling: what it leads to is whole.
inline std::uintptr_t wordWhileReading(KpIfcSlot& slot) {
    return std::atomic_ref(slot.word).load(std::memory_order_acquire);
}

/// True for what wordWhileReading() gives of an instance; an unread record counts as one that comes later.
inline bool isInstance(std::uintptr_t word) {
    return word != 0 && !(word & KpIfcSlot::kNoInstance);
}

/// Fills an empty slot; false where it is not empty.
inline bool fillWhileReading(KpIfcSlot& slot, std::uintptr_t word) {
    std::uintptr_t none = 0;
    return std::atomic_ref(slot.word).compare_exchange_strong(none, word, std::memory_order_release,
                                                              std::memory_order_relaxed);
}

} // namespace KP_SDAI
