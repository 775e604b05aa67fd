#include "model/ModelData.h"

#include "model/RootedEntity.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace KP_SDAI {

KpIfcEntityBase* readOnTouch(KpIfcSlot& slot) {
    if (!(slot.word & KpIfcSlot::kUnread)) return nullptr;
    return KpIfcSlotChunk::of(&slot)->model->data().read(slot);
}

namespace {

template <class Visit>
void visitChunks(const InstanceTable& table, Visit visit) {
    for (std::size_t stretch = 0; stretch < table.stretchCount(); ++stretch)
        if (KpIfcSlotChunk* const chunk = table.chunk(stretch)) visit(*chunk);
}

/// What all slots of a table held at one time. Scattered ones are empty where a model is read lazily.
class SlotWords {
public:
    explicit SlotWords(const InstanceTable& table) {
        std::size_t chunks = 0;
        visitChunks(table, [&](KpIfcSlotChunk&) { ++chunks; });
        m_chunks.reserve(chunks);
        m_words.reserve(chunks * KpIfcSlotChunk::kSlots);
        visitChunks(table, [this](KpIfcSlotChunk& chunk) {
            m_chunks.push_back(&chunk);
            for (const KpIfcSlot& slot : chunk.slots) m_words.push_back(slot.word);
        });
    }

    /// Into slots that are all empty, those that have come since included.
    void restore() const noexcept {
        const std::uintptr_t* word = m_words.data();
        for (KpIfcSlotChunk* const chunk : m_chunks)
            for (KpIfcSlot& slot : chunk->slots) slot.word = *word++;
    }

private:
    std::vector<KpIfcSlotChunk*> m_chunks;
    std::vector<std::uintptr_t> m_words;
};

} // namespace

void ModelData::noteUnread(KpIfcSlot* slot, std::uint64_t name, std::uintptr_t word) {
    m_explicitOrder |= name < highestName; // who wants to know more has all read
    slot->word = word;
    if (name > highestName) highestName = name;
    ++instanceCount;
    table.noteInstances(1);
}

KpIfcEntityBase* ModelData::read(KpIfcSlot& slot) {
    if (m_unread->isReading()) return m_unread->read(slot);
    if (!m_unread->areMostlyRead())
        if (KpIfcEntityBase* const instance = m_unread->read(slot)) return instance;
    readAll();
    return KpDbObjectId(&slot).instanceRead();
}

void ModelData::unread(KpIfcSlot* slot, std::uintptr_t word) noexcept {
    if (KpIfcEntityBase* const instance = KpDbObjectId(slot).instanceRead()) {
        m_keptFields.erase(instance);
        instance->m_self &= KpIfcEntityBase::kState;
    }
    slot->word = word;
}

void ModelData::forgetRead() noexcept {
    visitChunks(table, [](KpIfcSlotChunk& chunk) {
        for (KpIfcSlot& slot : chunk.slots) slot.word = 0;
    });
    for (KpIfcSlot* const slot : table.sparse()) slot->word = 0;
    m_order.clear();
    m_explicitOrder = false;
    m_kept.clear();
    m_keptFields.clear();
    instanceCount = keptCount = 0;
    highestName = highestNameInText = 0;
}

void ModelData::readAnew(const std::function<void()>& readFile, std::span<KpIfcEntityBase* const> known) {
    const SlotWords words(table);
    auto unread = std::move(m_unread);
    auto keptFields = std::exchange(m_keptFields, {});
    const auto was = std::tuple(m_explicitOrder, instanceCount, highestName);
    forgetRead();
    try {
        readFile();
    } catch (...) {
        // What was read stays behind in the arena, in no slot.
        forgetRead();
        words.restore();
        m_unread = std::move(unread);
        m_keptFields = std::move(keptFields);
        std::tie(m_explicitOrder, instanceCount, highestName) = was;
        throw;
    }
    for (KpIfcEntityBase* const instance : known) {
        KpIfcSlot* const slot = instance->objectId().slot();
        KpIfcEntityBase* const twin = KpDbObjectId(slot).instanceRead();
        if (!twin) continue; // cannot be, for both were read from the same bytes
        Inverses::move(*twin, *instance);
        if (auto kept = m_keptFields.extract(twin)) {
            kept.key() = instance;
            m_keptFields.insert(std::move(kept));
        }
        assign(*instance, slot);
        slot->word = reinterpret_cast<std::uintptr_t>(instance);
    }
}

std::vector<KpDbObjectId> ModelData::findUnread(std::string_view globalId) {
    if (globalId.empty()) return {};
    const RootedEntity rooted(schema());
    std::vector<KpDbObjectId> found = m_unread->mayHaveGlobalId(globalId);
    std::erase_if(found, [&](const KpDbObjectId& handle) {
        KpIfcEntityBase* const instance = handle.openObject();
        if (!instance || !instance->isKindOf(rooted.entity)) return true;
        const KpIfcGUID& own = rooted.globalIdOf(*instance);
        return own.isUnset() || std::string_view(own.constStr()) != globalId;
    });
    std::sort(found.begin(), found.end());
    return found;
}

} // namespace KP_SDAI
