#pragma once

#include <KpIfcCore/KpArena.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <type_traits>
#include <vector>

namespace KP_SDAI {

/// What parts of a file gave, part by part, in memory of the model that goes back to it.
template <class T>
class StoredParts {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= 8);

public:
    explicit StoredParts(BlockPool& pool) : m_memory(pool) {}

    void add(std::span<const T> part) {
        if (part.empty()) return;
        T* const place = static_cast<T*>(m_memory.allocate(part.size_bytes()));
        std::uninitialized_copy(part.begin(), part.end(), place);
        m_parts.emplace_back(place, part.size());
        m_count += part.size();
    }
    const std::vector<std::span<T>>& parts() const { return m_parts; }
    /// Of all parts.
    std::size_t count() const { return m_count; }
    void clear() noexcept {
        m_parts = {};
        m_memory.clear();
        m_count = 0;
    }

private:
    KpArena m_memory;
    std::vector<std::span<T>> m_parts;
    std::size_t m_count = 0;
};

} // namespace KP_SDAI
