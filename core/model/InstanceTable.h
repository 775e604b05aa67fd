#pragma once

#include <KpIfcCore/KpDbObjectId.h>

#include "values/BlockPool.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace KP_SDAI {

/// The chunk in which one thread has looked for a name last.
struct SlotCache {
    std::uint64_t firstName = 0;
    KpIfcSlotChunk* chunk = nullptr;
};

/// Slots by instance name.
///
/// Names are cut into stretches of as many as a chunk holds. Nearly always a stretch is used densely and has a chunk
/// of its own, found through a two-level table. A stretch that would cost more memory than its instances are worth
/// (names scattered over a wide range) is kept in a hash table instead, for good: slots never move.
///
/// Several threads may make and find slots at once, each with a cache of its own; all else is for one thread. Which
/// stretches are dense may depend on which thread comes first; what is found and the order of names do not.
class InstanceTable {
public:
    InstanceTable(KpIfcModel& model, BlockPool& pool);
    InstanceTable(const InstanceTable&) = delete;
    InstanceTable& operator=(const InstanceTable&) = delete;
    ~InstanceTable();

    /// The slot of a name, made where there is none.
    KpIfcSlot* slot(std::uint64_t name, SlotCache& cache) {
        const std::uint64_t offset = name - cache.firstName;
        if (offset < KpIfcSlotChunk::kSlots && cache.chunk) return &cache.chunk->slots[offset];
        return slotSlow(name, cache);
    }
    /// The same for the one thread that has the model.
    KpIfcSlot* slot(std::uint64_t name) { return slot(name, m_cache); }
    /// The slot of a name, or null.
    KpIfcSlot* find(std::uint64_t name) const;

    /// Dense chunks in ascending order of names; null where a stretch has none.
    std::size_t stretchCount() const { return m_pageCount * kPage; }
    KpIfcSlotChunk* chunk(std::size_t stretch) const { return chunkIn(*m_directory.load(), stretch); }
    /// Slots of scattered names, ascending. sortSparse() must have been called since the last slot was made.
    const std::vector<KpIfcSlot*>& sparse() const { return m_sparse; }
    void sortSparse();

    /// How far a walk over the slots has come.
    struct Place {
        std::size_t stretch = 0;
        std::size_t index = 0;
        std::size_t sparse = 0;
    };
    /// The next slot that is not empty, in ascending order of names; null at the end. As for sparse().
    KpIfcSlot* next(Place& place) const;

    /// Tells how much memory the table may spend on stretches that may turn out thinly used.
    void expectFile(std::uint64_t bytes) { m_budget = 16 + bytes / (2 * KpIfcSlotChunk::kBytes); }
    /// Tells that so many instances are about to come in ascending order of their names.
    void expectInstances(std::size_t count) { m_budget += count * 4 / KpIfcSlotChunk::kSlots; }
    /// By the one thread that has the model, while others may make slots.
    void noteInstances(std::size_t count) {
        m_instances.store(m_instances.load(std::memory_order_relaxed) + count, std::memory_order_relaxed);
    }

private:
    static constexpr std::size_t kPage = 256;
    /// From here on names are scattered. Begins a stretch, so that none is kept both ways.
    static constexpr std::uint64_t kDirectNames =
        (std::uint64_t{1} << 31) / KpIfcSlotChunk::kSlots * KpIfcSlotChunk::kSlots;
    struct Page {
        std::atomic<KpIfcSlotChunk*> chunks[kPage] = {};
    };
    /// Replaced by a larger one where names outgrow it. Who still reads the one before finds less there, and then looks
    /// again under the lock.
    struct Directory {
        explicit Directory(std::size_t size) : pages(std::make_unique<std::atomic<Page*>[]>(size)), count(size) {}
        std::unique_ptr<std::atomic<Page*>[]> pages;
        std::size_t count;
    };

    static KpIfcSlotChunk* chunkIn(const Directory& directory, std::uint64_t stretch);
    KpIfcSlot* slotSlow(std::uint64_t name, SlotCache& cache);
    /// Under the lock: the chunk of a stretch, null where that is scattered.
    KpIfcSlotChunk* makeChunk(std::uint64_t stretch);
    void growTo(std::size_t pageCount);
    KpIfcSlot* sparseSlot(std::uint64_t name);
    KpIfcSlotChunk* newChunk();

    KpIfcModel& m_model;
    BlockPool& m_pool;
    std::uint64_t m_serial;
    SlotCache m_cache;

    std::mutex m_making; ///< of slots that are not there yet, and of scattered ones
    std::atomic<Directory*> m_directory;
    std::vector<std::unique_ptr<Directory>> m_directories;
    std::vector<std::unique_ptr<Page>> m_pages; ///< in no order
    std::size_t m_pageCount = 0;                ///< of the directory's pages, those that names reach
    std::uint64_t m_denseChunks = 0;
    std::uint64_t m_budget = 16; ///< dense chunks allowed besides those that the instances are worth
    std::atomic<std::uint64_t> m_instances{0};

    std::unordered_map<std::uint64_t, KpIfcSlot*> m_sparseByName;
    std::unordered_set<std::uint64_t> m_sparseStretches;
    std::vector<KpIfcSlot*> m_sparse;
    bool m_sparseSorted = true;
    KpIfcSlotChunk* m_sparseChunk = nullptr;
    std::size_t m_sparseFill = KpIfcSlotChunk::kSlots;

    std::vector<void*> m_slabs; ///< besides blocks of the pool
    char* m_slabNext = nullptr;
    char* m_slabEnd = nullptr;
    std::vector<std::unique_ptr<std::uint64_t[]>> m_sparseNames;
};

} // namespace KP_SDAI
