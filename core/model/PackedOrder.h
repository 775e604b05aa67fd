#pragma once

#include "model/FileOrder.h"
#include "model/InstanceTable.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace KP_SDAI {

/// The order in which a file has its records. Most names follow closely on the one before, so an instance takes the
/// difference of the two in as many bytes as it needs, nearly always one.
class PackedOrder {
public:
    /// An end of the order that can be returned to.
    struct Mark {
        std::size_t bytes = 0;
        std::size_t count = 0;
        std::uint64_t name = 0;
    };

    /// Sees to it that appending this needs no memory.
    void makeRoom(const OrderEntry& entry);
    void append(const OrderEntry& entry);
    /// Puts the text of a record in the place of the last instance that was appended with that slot.
    void replace(const InstanceTable& table, KpIfcSlot* slot, KeptRecord* record);
    void clear() { *this = PackedOrder(); }
    Mark mark() const { return m_end; }
    /// Drops what was appended since; needs no memory. What has been replaced stands before.
    void returnTo(const Mark& mark);

    /// Calls `visit(const OrderEntry&)` for all, in order.
    template <class Visit>
    void visit(const InstanceTable& table, Visit visit) const {
        Reading reading{m_bytes.data(), 0, nullptr};
        for (std::size_t i = 0; i < m_end.count; ++i) {
            const OrderEntry entry = next(table, reading);
            const auto replaced = m_replaced.empty() ? m_replaced.end() : m_replaced.find(i);
            visit(replaced == m_replaced.end() ? entry : OrderEntry(replaced->second));
        }
    }

private:
    static constexpr std::size_t kLongest = 10; ///< bytes of an entry
    struct Reading {
        const std::uint8_t* next;
        std::uint64_t name; ///< of the instance before
        KpIfcSlot* slot;    ///< of that
    };
    static OrderEntry next(const InstanceTable& table, Reading& reading);

    std::vector<std::uint8_t> m_bytes;
    Mark m_end;
    std::unordered_map<std::size_t, KeptRecord*> m_replaced; ///< by place
    std::unordered_map<KpIfcSlot*, std::size_t> m_positions; ///< of instances; filled when one is to be replaced
};

} // namespace KP_SDAI
