#pragma once

#include "model/FileOrder.h"
#include "model/InstanceTable.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

namespace KP_SDAI {

/// The order in which a file has its records. Most names follow closely on the one before, so an instance takes the
/// difference of the two in as many half bytes as it needs, nearly always one.
class PackedOrder {
public:
    /// An end of the order that can be returned to.
    struct Mark {
        std::size_t size = 0; ///< in half bytes
        std::size_t count = 0;
        std::uint64_t name = 0;
    };

    /// Sees to it that appending this needs no memory.
    void makeRoom(const OrderEntry& entry);
    void append(const OrderEntry& entry);
    void append(std::span<const OrderEntry> entries);
    /// Puts the text of a record in the place of the last instance that was appended with that slot.
    void replace(const InstanceTable& table, KpIfcSlot* slot, KeptRecord* record);
    void clear() { *this = PackedOrder(); }
    Mark mark() const { return m_end; }
    /// Drops what was appended since; needs no memory. What has been replaced stands before.
    void returnTo(const Mark& mark);

    /// Calls `visit(const OrderEntry&)` for all, in order.
    template <class Visit>
    void visit(const InstanceTable& table, Visit visit) const {
        Reading reading{0, 0, nullptr};
        for (std::size_t i = 0; i < m_end.count; ++i) {
            const OrderEntry entry = next(table, reading);
            const auto replaced = m_replaced.empty() ? m_replaced.end() : m_replaced.find(i);
            visit(replaced == m_replaced.end() ? entry : OrderEntry(replaced->second));
        }
    }

private:
    static constexpr std::size_t kLongest = 22; ///< half bytes of an entry
    struct Reading {
        std::size_t place;  ///< of the next half byte
        std::uint64_t name; ///< of the instance before
        KpIfcSlot* slot;    ///< of that
    };
    OrderEntry next(const InstanceTable& table, Reading& reading) const;
    bool hasRoom(std::size_t size) const { return m_chunks.size() * kChunk - m_end.size >= size; }
    unsigned half(std::size_t place) const {
        return m_chunks[place / kChunk][place % kChunk / 2] >> (place % 2 * 4) & 0xFu;
    }
    /// There must be room.
    void put(unsigned half) {
        std::uint8_t& byte = m_chunks[m_end.size / kChunk][m_end.size % kChunk / 2];
        byte = static_cast<std::uint8_t>(m_end.size % 2 ? (byte & 0xFu) | half << 4 : half);
        ++m_end.size;
    }

    // In pieces that stay where they are: one that grows would leave behind as much as it holds.
    static constexpr std::size_t kChunk = 4096; ///< half bytes
    std::vector<std::unique_ptr<std::uint8_t[]>> m_chunks;
    Mark m_end;
    std::unordered_map<std::size_t, KeptRecord*> m_replaced; ///< by place
    std::unordered_map<KpIfcSlot*, std::size_t> m_positions; ///< of instances; filled when one is to be replaced
};

} // namespace KP_SDAI
