#include <KpIfcCore/KpArena.h>

#include "values/SystemMemory.h"

#include <cstdlib>
#include <new>

namespace KP_SDAI {

struct KpArena::Block {
    Block* previous;
};

namespace {
constexpr std::size_t kFirstBlock = 16 * 1024;
constexpr std::size_t kLargestBlock = 256 * 1024; // finds room where other tables have grown out of theirs
constexpr std::size_t kHeader = 16;
constexpr std::size_t kLarge = 2 * kLargePage; // an arena of that size can afford the unused end of a large page
} // namespace

KpArena::~KpArena() {
    while (m_blocks) {
        Block* previous = m_blocks->previous;
        std::free(m_blocks);
        m_blocks = previous;
    }
}

void* KpArena::allocateSlow(std::size_t size) {
    if (size > SIZE_MAX - kHeader) throw std::bad_alloc();
    // Blocks grow with the arena, so that small models stay small and large ones ask the system rarely.
    std::size_t room = m_reserved < kFirstBlock ? kFirstBlock : m_reserved;
    if (room > kLargestBlock) room = kLargestBlock;
    const bool own = size > room / 4;
    const bool inLargePages = !own && m_reserved >= kLarge;
    const std::size_t bytes = inLargePages ? kLargePage : (own ? size : room) + kHeader;
    auto* block = static_cast<Block*>(inLargePages ? allocateLargePages(1) : std::malloc(bytes));
    if (!block) throw std::bad_alloc();
    m_reserved += bytes;
    block->previous = m_blocks;
    m_blocks = block;
    char* start = reinterpret_cast<char*>(block) + kHeader;
    if (own) return start; // a large piece has its block to itself; the current one goes on
    m_next = start + size;
    m_end = reinterpret_cast<char*>(block) + bytes;
    return start;
}

} // namespace KP_SDAI
