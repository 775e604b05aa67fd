#include "model/InstanceTable.h"

#include "model/MakeRoom.h"
#include "model/SlotWalk.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

namespace KP_SDAI {

namespace {

std::uint64_t nextSerial() {
    static std::atomic<std::uint64_t> serial{0};
    return ++serial;
}

constexpr std::size_t kFirstPages = 4;
constexpr std::size_t kFirstSlab = 4; // chunks
constexpr std::size_t kSlabs = 4;     // each of twice the size of the one before; then come blocks

} // namespace

InstanceTable::InstanceTable(KpIfcModel& model, BlockPool& pool)
    : m_model(model), m_pool(pool), m_serial(nextSerial()) {
    static_assert(BlockPool::kAlignment % KpIfcSlotChunk::kBytes == 0 &&
                  BlockPool::kBlock % KpIfcSlotChunk::kBytes == 0);
    growTo(kFirstPages);
}

InstanceTable::~InstanceTable() {
    for (void* slab : m_slabs) std::free(slab);
}

KpIfcSlotChunk* InstanceTable::newChunk() {
    if (m_slabNext == m_slabEnd) {
        std::size_t bytes = BlockPool::kBlock;
        if (m_slabs.size() < kSlabs) {
            bytes = (kFirstSlab << m_slabs.size()) * KpIfcSlotChunk::kBytes;
            m_slabs.reserve(kSlabs);
            void* const slab = std::aligned_alloc(KpIfcSlotChunk::kBytes, bytes);
            if (!slab) throw std::bad_alloc();
            m_slabs.push_back(slab);
            m_slabNext = static_cast<char*>(slab);
        } else {
            m_slabNext = static_cast<char*>(m_pool.take());
        }
        m_slabEnd = m_slabNext + bytes;
    }
    void* memory = m_slabNext;
    m_slabNext += KpIfcSlotChunk::kBytes;
    auto* chunk = ::new (memory) KpIfcSlotChunk{&m_model, m_serial, 0, nullptr, {}};
    return chunk;
}

KpIfcSlotChunk* InstanceTable::chunkIn(const Directory& directory, std::uint64_t stretch) {
    const std::uint64_t page = stretch / kPage;
    if (page >= directory.count) return nullptr;
    const Page* const found = directory.pages[page].load(std::memory_order_acquire);
    return found ? found->chunks[stretch % kPage].load(std::memory_order_acquire) : nullptr;
}

KpIfcSlot* InstanceTable::slotSlow(std::uint64_t name, SlotCache& cache) {
    const std::uint64_t stretch = name / KpIfcSlotChunk::kSlots;
    KpIfcSlotChunk* chunk =
        name < kDirectNames ? chunkIn(*m_directory.load(std::memory_order_acquire), stretch) : nullptr;
    if (!chunk) {
        const std::lock_guard lock(m_making);
        if (name < kDirectNames) chunk = makeChunk(stretch);
        if (!chunk) return sparseSlot(name);
    }
    cache = {chunk->firstName, chunk};
    return &chunk->slots[name % KpIfcSlotChunk::kSlots];
}

KpIfcSlotChunk* InstanceTable::makeChunk(std::uint64_t stretch) {
    if (KpIfcSlotChunk* const made = chunkIn(*m_directory.load(), stretch)) return made; // by another thread
    if (m_sparseStretches.count(stretch)) return nullptr;
    const std::uint64_t instances = m_instances.load(std::memory_order_relaxed);
    if (m_denseChunks >= m_budget + instances * 4 / KpIfcSlotChunk::kSlots) {
        m_sparseStretches.insert(stretch);
        return nullptr;
    }
    const std::size_t at = stretch / kPage;
    growTo(at + 1);
    std::atomic<Page*>& page = m_directory.load()->pages[at];
    if (!page.load()) {
        m_pages.push_back(std::make_unique<Page>());
        page.store(m_pages.back().get(), std::memory_order_release);
    }
    KpIfcSlotChunk* const chunk = newChunk();
    chunk->firstName = stretch * KpIfcSlotChunk::kSlots;
    page.load()->chunks[stretch % kPage].store(chunk, std::memory_order_release);
    ++m_denseChunks;
    return chunk;
}

void InstanceTable::growTo(std::size_t pageCount) {
    const Directory* const former = m_directories.empty() ? nullptr : m_directories.back().get();
    if (!former || pageCount > former->count) {
        auto directory = std::make_unique<Directory>(std::max(pageCount, former ? 2 * former->count : kFirstPages));
        for (std::size_t i = 0; former && i < former->count; ++i) directory->pages[i].store(former->pages[i].load());
        m_directories.push_back(std::move(directory));
        m_directory.store(m_directories.back().get(), std::memory_order_release);
    }
    if (former && pageCount > m_pageCount) m_pageCount = pageCount;
}

KpIfcSlot* InstanceTable::sparseSlot(std::uint64_t name) {
    KpIfcSlot*& slot = m_sparseByName[name];
    if (slot) return slot;
    makeRoomForOne(m_sparse);
    if (m_sparseFill == KpIfcSlotChunk::kSlots) {
        m_sparseNames.push_back(std::make_unique<std::uint64_t[]>(KpIfcSlotChunk::kSlots));
        m_sparseChunk = newChunk();
        m_sparseChunk->names = m_sparseNames.back().get();
        m_sparseFill = 0;
    }
    m_sparseNames.back()[m_sparseFill] = name;
    slot = &m_sparseChunk->slots[m_sparseFill++];
    m_sparse.push_back(slot);
    m_sparseSorted = false;
    return slot;
}

KpIfcSlot* InstanceTable::find(std::uint64_t name) const {
    if (name < kDirectNames)
        if (KpIfcSlotChunk* const dense = chunk(name / KpIfcSlotChunk::kSlots))
            return &dense->slots[name % KpIfcSlotChunk::kSlots];
    const auto found = m_sparseByName.find(name);
    return found == m_sparseByName.end() ? nullptr : found->second;
}

KpIfcSlot* InstanceTable::next(Place& place) const {
    return nextSlot(*this, place);
}

void InstanceTable::sortSparse() {
    if (m_sparseSorted) return;
    std::sort(m_sparse.begin(), m_sparse.end(),
              [](KpIfcSlot* a, KpIfcSlot* b) { return KpDbObjectId(a) < KpDbObjectId(b); });
    m_sparseSorted = true;
}

} // namespace KP_SDAI
