#include <KpIfcCore/KpArena.h>

#include "values/BlockPool.h"

#include <cstdlib>
#include <new>
#include <utility>

namespace KP_SDAI {

struct KpArena::Block {
    Block* previous;
    bool isPooled;
};

namespace {
constexpr std::size_t kFirstBlock = 16 * 1024;
constexpr std::size_t kHeader = 16;
// Pooled blocks are mostly resident as a whole, so an arena has to be as large that an unused end weighs little.
constexpr std::size_t kSmallestPooled = 4 * BlockPool::kBlock;
} // namespace

void KpArena::clear() noexcept {
    while (m_blocks) {
        Block* const block = std::exchange(m_blocks, m_blocks->previous);
        if (block->isPooled)
            m_pool->giveBack(block);
        else
            std::free(block);
    }
    m_next = m_end = nullptr;
    m_reserved = 0;
}

void* KpArena::allocateSlow(std::size_t size) {
    static_assert(sizeof(Block) <= kHeader);
    if (size > SIZE_MAX - kHeader) throw std::bad_alloc();
    // Blocks grow with the arena, so that small models stay small and large ones ask the system rarely.
    std::size_t room = m_reserved < kFirstBlock ? kFirstBlock : m_reserved;
    if (room > BlockPool::kBlock) room = BlockPool::kBlock;
    const bool own = size > room / 4;
    const bool isPooled = m_pool && !own && m_reserved >= kSmallestPooled;
    const std::size_t bytes = own ? size + kHeader : room;
    void* const memory = isPooled ? m_pool->take() : std::malloc(bytes);
    if (!memory) throw std::bad_alloc();
    m_reserved += bytes;
    m_blocks = ::new (memory) Block{m_blocks, isPooled};
    char* const start = static_cast<char*>(memory) + kHeader;
    if (own) return start; // a large piece has its block to itself; the current one goes on
    m_next = start + size;
    m_end = static_cast<char*>(memory) + bytes;
    return start;
}

} // namespace KP_SDAI
