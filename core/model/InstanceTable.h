#pragma once

#include <KpIfcCore/KpDbObjectId.h>

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace KP_SDAI {

/// Slots by instance name.
///
/// Names are cut into stretches of as many as a chunk holds. Nearly always a stretch is used densely and has a chunk
/// of its own, found through a two-level table. A stretch that would cost more memory than its instances are worth
/// (names scattered over a wide range) is kept in a hash table instead, for good: slots never move.
class InstanceTable {
public:
    explicit InstanceTable(KpIfcModel& model);
    InstanceTable(const InstanceTable&) = delete;
    InstanceTable& operator=(const InstanceTable&) = delete;
    ~InstanceTable();

    /// The slot of a name, made where there is none.
    KpIfcSlot* slot(std::uint64_t name) {
        const std::uint64_t offset = name - m_lastFirst;
        if (offset < KpIfcSlotChunk::kSlots && m_last) return &m_last->slots[offset];
        return slotSlow(name);
    }
    /// The slot of a name, or null.
    KpIfcSlot* find(std::uint64_t name) const;

    /// Dense chunks in ascending order of names; null where a stretch has none.
    std::size_t stretchCount() const { return m_pages.size() * kPage; }
    KpIfcSlotChunk* chunk(std::size_t stretch) const {
        const auto& page = m_pages[stretch / kPage];
        return page ? page->chunks[stretch % kPage] : nullptr;
    }
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
    void noteInstance() { ++m_instances; }

private:
    static constexpr std::size_t kPage = 256;
    /// From here on names are scattered. Begins a stretch, so that none is kept both ways.
    static constexpr std::uint64_t kDirectNames =
        (std::uint64_t{1} << 31) / KpIfcSlotChunk::kSlots * KpIfcSlotChunk::kSlots;
    struct Page {
        KpIfcSlotChunk* chunks[kPage] = {};
    };

    KpIfcSlot* slotSlow(std::uint64_t name);
    KpIfcSlot* sparseSlot(std::uint64_t name);
    KpIfcSlotChunk* newChunk();

    KpIfcModel& m_model;
    std::uint64_t m_serial;
    std::uint64_t m_lastFirst = 0;
    KpIfcSlotChunk* m_last = nullptr; ///< the dense chunk used last

    std::vector<std::unique_ptr<Page>> m_pages;
    std::uint64_t m_denseChunks = 0;
    std::uint64_t m_budget = 16; ///< dense chunks allowed besides those that the instances are worth
    std::uint64_t m_instances = 0;

    std::unordered_map<std::uint64_t, KpIfcSlot*> m_sparseByName;
    std::unordered_set<std::uint64_t> m_sparseStretches;
    std::vector<KpIfcSlot*> m_sparse;
    bool m_sparseSorted = true;
    KpIfcSlotChunk* m_sparseChunk = nullptr;
    std::size_t m_sparseFill = KpIfcSlotChunk::kSlots;

    std::vector<void*> m_slabs;
    char* m_slabNext = nullptr;
    char* m_slabEnd = nullptr;
    std::vector<std::unique_ptr<std::uint64_t[]>> m_sparseNames;
};

} // namespace KP_SDAI
