#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>

#include <cstddef>
#include <cstdint>

namespace KP_SDAI {

class BlockPool;

/// Memory that is handed out piece by piece and given back all at once.
///
/// A model keeps the instances, texts and aggregate elements of a file that it was read from in one. Pieces are
/// aligned to 8 bytes. Destructors of what is placed here are not run by the arena. One thread at a time.
class KPIFCCORE_EXPORT KpArena {
public:
    KpArena() = default;
    /// An arena that gets its memory from a model's, as far as it needs much, and gives it back to that; the pool
    /// outlives it.
    explicit KpArena(BlockPool& pool) : m_pool(&pool) {}
    KpArena(const KpArena&) = delete;
    KpArena& operator=(const KpArena&) = delete;
    ~KpArena() { clear(); }
    /// Gives all pieces back.
    void clear() noexcept;

    /// `size` bytes, aligned to 8; throws std::bad_alloc.
    void* allocate(std::size_t size) {
        size = (size + 7) & ~std::size_t{7};
        if (static_cast<std::size_t>(m_end - m_next) < size) return allocateSlow(size);
        char* piece = m_next;
        m_next += size;
        return piece;
    }

    /// Bytes taken from the system, used or not.
    std::size_t reserved() const { return m_reserved; }

private:
    struct Block;
    void* allocateSlow(std::size_t size);

    char* m_next = nullptr;
    char* m_end = nullptr;
    Block* m_blocks = nullptr;
    std::size_t m_reserved = 0;
    BlockPool* m_pool = nullptr;
};

} // namespace KP_SDAI
