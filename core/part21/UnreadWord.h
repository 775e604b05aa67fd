#pragma once

#include <KpIfcCore/KpDbObjectId.h>

#include "part21/EntityNames.h"

#include <cstdint>

namespace KP_SDAI {

/// What stands in the slot of a record that has not been read: its offset in the file, its entity, the slot's tag.
struct UnreadWord {
    static constexpr unsigned kEntityBits = 12;
    static constexpr unsigned kTagBits = 2;
    static constexpr std::uint64_t kLargestOffset = (std::uint64_t{1} << (64 - kEntityBits - kTagBits)) - 1;
    static_assert(EntityNames::kSize <= std::size_t{1} << kEntityBits && sizeof(std::uintptr_t) == 8);

    /// `entity` is its place in EntityNames.
    static std::uintptr_t of(std::uint64_t offset, std::size_t entity) {
        return (offset << (kEntityBits + kTagBits)) | (entity << kTagBits) | KpIfcSlot::kUnread;
    }
    static std::uint64_t offset(std::uintptr_t word) { return word >> (kEntityBits + kTagBits); }
    static std::size_t entity(std::uintptr_t word) {
        return (word >> kTagBits) & ((std::size_t{1} << kEntityBits) - 1);
    }
};

} // namespace KP_SDAI
