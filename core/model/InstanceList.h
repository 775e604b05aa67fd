#pragma once

#include <KpIfcCore/KpArena.h>

#include <cstddef>

namespace KP_SDAI {

class KpIfcEntityBase;

/// Instances of a model, one behind the other in the model's memory; those since a mark are told apart. Growing moves
/// nothing, and nothing is ever removed.
class InstanceList {
public:
    InstanceList() = default;
    InstanceList(const InstanceList&) = delete;
    InstanceList& operator=(const InstanceList&) = delete;

    /// Sees to it that append() needs no memory.
    void makeRoomForOne(KpArena& arena) {
        if (m_end == m_roomEnd) addChunk(arena);
    }
    void append(KpIfcEntityBase& instance) { *m_end++ = &instance; }

    /// True where something was appended since the last mark().
    bool hasNew() const { return m_end != m_mark.at; }
    void mark() { m_mark = {m_last, m_end}; }

    /// Calls `visit(KpIfcEntityBase*)` for all.
    template <class Visit>
    void visit(Visit visit) const {
        if (m_first) visitFrom(m_first, m_first->items, visit);
    }
    /// The same for those that were appended since the last mark().
    template <class Visit>
    void visitNew(Visit visit) const {
        if (m_mark.chunk)
            visitFrom(m_mark.chunk, m_mark.at, visit);
        else
            this->visit(visit);
    }

private:
    struct Chunk {
        static constexpr std::size_t kItems = 63; // half a kilobyte in all
        Chunk* next = nullptr;
        KpIfcEntityBase* items[kItems];
    };
    struct Mark {
        Chunk* chunk = nullptr;
        KpIfcEntityBase** at = nullptr;
    };

    void addChunk(KpArena& arena) {
        auto* const chunk = static_cast<Chunk*>(arena.allocate(sizeof(Chunk)));
        chunk->next = nullptr;
        (m_last ? m_last->next : m_first) = chunk;
        m_last = chunk;
        // A mark at the end of a full chunk is one at the start of the next.
        if (!hasNew()) m_mark = {chunk, chunk->items};
        m_end = chunk->items;
        m_roomEnd = chunk->items + Chunk::kItems;
    }
    template <class Visit>
    void visitFrom(Chunk* chunk, KpIfcEntityBase** at, Visit visit) const {
        for (;;) {
            KpIfcEntityBase** const end = chunk->next ? chunk->items + Chunk::kItems : m_end;
            for (; at != end; ++at) visit(*at);
            chunk = chunk->next;
            if (!chunk) return;
            at = chunk->items;
        }
    }

    Chunk* m_first = nullptr;
    Chunk* m_last = nullptr;
    KpIfcEntityBase** m_end = nullptr;
    KpIfcEntityBase** m_roomEnd = nullptr; ///< of the last chunk
    Mark m_mark;
};

} // namespace KP_SDAI
