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

constexpr std::size_t kFirstSlab = 4;
constexpr std::size_t kLargestSlab = 256; // chunks: 1 MiB

} // namespace

InstanceTable::InstanceTable(KpIfcModel& model) : m_model(model), m_serial(nextSerial()) {}

InstanceTable::~InstanceTable() {
    for (void* slab : m_slabs) std::free(slab);
}

KpIfcSlotChunk* InstanceTable::newChunk() {
    if (m_slabNext == m_slabEnd) {
        std::size_t chunks = kFirstSlab << m_slabs.size();
        if (m_slabs.size() > 6 || chunks > kLargestSlab) chunks = kLargestSlab;
        const std::size_t bytes = chunks * KpIfcSlotChunk::kBytes;
        m_slabs.reserve(m_slabs.size() + 1);
        void* slab = std::aligned_alloc(KpIfcSlotChunk::kBytes, bytes);
        if (!slab) throw std::bad_alloc();
        m_slabs.push_back(slab);
        m_slabNext = static_cast<char*>(slab);
        m_slabEnd = m_slabNext + bytes;
    }
    void* memory = m_slabNext;
    m_slabNext += KpIfcSlotChunk::kBytes;
    auto* chunk = ::new (memory) KpIfcSlotChunk{&m_model, m_serial, 0, nullptr, {}};
    return chunk;
}

KpIfcSlot* InstanceTable::slotSlow(std::uint64_t name) {
    const std::uint64_t stretch = name / KpIfcSlotChunk::kSlots;
    const std::uint64_t offset = name % KpIfcSlotChunk::kSlots;
    if (name >= kDirectNames) return sparseSlot(name);

    const std::size_t page = stretch / kPage;
    KpIfcSlotChunk* chunk = page < m_pages.size() && m_pages[page] ? m_pages[page]->chunks[stretch % kPage] : nullptr;
    if (!chunk) {
        const bool affordable = m_denseChunks < m_budget + m_instances * 4 / KpIfcSlotChunk::kSlots;
        if (m_sparseStretches.count(stretch)) return sparseSlot(name);
        if (!affordable) {
            m_sparseStretches.insert(stretch);
            return sparseSlot(name);
        }
        if (page >= m_pages.size()) m_pages.resize(page + 1);
        if (!m_pages[page]) m_pages[page] = std::make_unique<Page>();
        chunk = newChunk();
        chunk->firstName = stretch * KpIfcSlotChunk::kSlots;
        m_pages[page]->chunks[stretch % kPage] = chunk;
        ++m_denseChunks;
    }
    m_last = chunk;
    m_lastFirst = chunk->firstName;
    return &chunk->slots[offset];
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
    const std::uint64_t stretch = name / KpIfcSlotChunk::kSlots;
    const std::size_t page = stretch / kPage;
    if (name < kDirectNames && page < m_pages.size() && m_pages[page])
        if (KpIfcSlotChunk* chunk = m_pages[page]->chunks[stretch % kPage])
            return &chunk->slots[name % KpIfcSlotChunk::kSlots];
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
