#include "values/BlockPool.h"

#include "values/SystemMemory.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace KP_SDAI {

static_assert(kLargePage % BlockPool::kBlock == 0);

BlockPool::~BlockPool() {
    for (void* piece : m_pieces) std::free(piece);
}

void* BlockPool::take() {
    const std::lock_guard lock(m_mutex);
    void* block = m_free;
    if (m_free)
        m_free = m_free->next;
    else
        block = takeNew();
    m_inUse += kBlock;
    if (m_expected != kUnknown) m_expected -= std::min(m_expected, kBlock);
    return block;
}

void* BlockPool::takeNew() {
    if (m_next == m_end) {
        const bool isLarge = (m_expected == kUnknown ? m_inUse / 2 : m_expected) >= kLargePage;
        m_pieces.reserve(std::max<std::size_t>(16, m_pieces.size() * 2));
        void* const piece = isLarge ? allocateLargePages(1) : std::aligned_alloc(kAlignment, kBlock);
        if (!piece) throw std::bad_alloc();
        m_pieces.push_back(piece);
        if (!isLarge) return piece;
        m_next = static_cast<char*>(piece);
        m_end = m_next + kLargePage;
    }
    void* const block = m_next;
    m_next += kBlock;
    return block;
}

void BlockPool::giveBack(void* block) noexcept {
    const std::lock_guard lock(m_mutex);
    m_free = ::new (block) Free{m_free};
    m_inUse -= kBlock;
}

void BlockPool::expect(std::size_t bytes) {
    const std::lock_guard lock(m_mutex);
    m_expected = bytes;
}

std::size_t BlockPool::inUse() const {
    const std::lock_guard lock(m_mutex);
    return m_inUse;
}

} // namespace KP_SDAI
