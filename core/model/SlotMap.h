#pragma once

#include <KpIfcCore/KpDbObjectId.h>

#include <memory>
#include <unordered_map>

namespace KP_SDAI {

/// A value for each slot of one model, Value() at first; a page for each chunk that is asked for.
template <class Value>
class SlotMap {
public:
    Value& operator[](const KpIfcSlot* slot) {
        const KpIfcSlotChunk* const chunk = KpIfcSlotChunk::of(slot);
        if (chunk != m_lastChunk) {
            std::unique_ptr<Page>& page = m_pages[chunk];
            if (!page) page = std::make_unique<Page>();
            m_lastChunk = chunk;
            m_last = page.get();
        }
        return m_last->values[slot - chunk->slots];
    }
    Value find(const KpIfcSlot* slot) const {
        const KpIfcSlotChunk* const chunk = KpIfcSlotChunk::of(slot);
        const auto found = m_pages.find(chunk);
        return found == m_pages.end() || !found->second ? Value() : found->second->values[slot - chunk->slots];
    }

private:
    struct Page {
        Value values[KpIfcSlotChunk::kSlots] = {};
    };

    std::unordered_map<const KpIfcSlotChunk*, std::unique_ptr<Page>> m_pages;
    const KpIfcSlotChunk* m_lastChunk = nullptr;
    Page* m_last = nullptr;
};

} // namespace KP_SDAI
