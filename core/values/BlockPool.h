#pragma once

#include <cstddef>
#include <mutex>
#include <vector>

namespace KP_SDAI {

/// The memory of one model in blocks, of which its arenas and tables are made: what one gives back, others take.
///
/// Blocks are cut from large pages, which the system clears and maps for a fraction of what small ones cost. As a whole
/// one is used up by that, they are taken only as far as so much is expected to be needed. Any number of threads.
class BlockPool {
public:
    static constexpr std::size_t kBlock = std::size_t{256} * 1024;
    static constexpr std::size_t kAlignment = 4096;
    static constexpr std::size_t kUnknown = static_cast<std::size_t>(-1);

    BlockPool() = default;
    BlockPool(const BlockPool&) = delete;
    BlockPool& operator=(const BlockPool&) = delete;
    /// All blocks go, whoever has them.
    ~BlockPool();

    /// A block, aligned to kAlignment, with anything in it; throws std::bad_alloc.
    void* take();
    void giveBack(void* block) noexcept;
    /// Tells how many more bytes will be taken from now on, roughly. kUnknown, as in the beginning: as many again.
    void expect(std::size_t bytes);
    /// Bytes of the blocks that are in use.
    std::size_t inUse() const;

private:
    struct Free {
        Free* next;
    };
    void* takeNew();

    mutable std::mutex m_mutex;
    std::vector<void*> m_pieces; ///< of the system
    char* m_next = nullptr;      ///< what is left of a large page
    char* m_end = nullptr;
    Free* m_free = nullptr;
    std::size_t m_inUse = 0;
    std::size_t m_expected = kUnknown;
};

} // namespace KP_SDAI
