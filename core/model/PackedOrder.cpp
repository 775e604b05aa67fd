#include "model/PackedOrder.h"

#include <cstring>

namespace KP_SDAI {

namespace {

// Seven bits a byte, the lowest first, the eighth set where more follow. A number never ends in a zero byte that
// follows another one, so these two say that the address of a kept record comes.
constexpr std::uint8_t kMore = 0x80;
constexpr std::uint8_t kRecord[] = {kMore, 0};

} // namespace

void PackedOrder::makeRoom(const OrderEntry& entry) {
    if (m_bytes.capacity() - m_bytes.size() < kLongest) m_bytes.reserve(m_bytes.size() + m_bytes.size() / 2 + 64);
    if (!m_positions.empty() && entry.slot()) m_positions[entry.slot()] = m_end.count;
}

void PackedOrder::append(const OrderEntry& entry) {
    makeRoom(entry);
    if (KeptRecord* const record = entry.record()) {
        const auto* const address = reinterpret_cast<const std::uint8_t*>(&record);
        m_bytes.insert(m_bytes.end(), kRecord, kRecord + sizeof kRecord);
        m_bytes.insert(m_bytes.end(), address, address + sizeof record);
    } else {
        const std::uint64_t name = KpDbObjectId(entry.slot()).instanceName();
        const std::uint64_t difference = name - m_end.name;
        // Small ones below zero are to be small, too: the sign goes to the lowest bit.
        std::uint64_t rest = difference << 1 ^ (difference >> 63 ? UINT64_MAX : 0);
        for (; rest >= kMore; rest >>= 7) m_bytes.push_back(static_cast<std::uint8_t>(rest | kMore));
        m_bytes.push_back(static_cast<std::uint8_t>(rest));
        m_end.name = name;
    }
    ++m_end.count;
    m_end.bytes = m_bytes.size();
}

OrderEntry PackedOrder::next(const InstanceTable& table, Reading& reading) {
    const std::uint8_t*& p = reading.next;
    if (p[0] == kRecord[0] && p[1] == kRecord[1]) {
        KeptRecord* record;
        std::memcpy(&record, p + sizeof kRecord, sizeof record);
        p += sizeof kRecord + sizeof record;
        return OrderEntry(record);
    }
    std::uint64_t bits = *p & (kMore - 1u);
    for (unsigned shift = 7; *p++ & kMore; shift += 7) bits |= std::uint64_t{*p & (kMore - 1u)} << shift;
    reading.name += bits >> 1 ^ (bits & 1 ? UINT64_MAX : 0);
    KpIfcSlotChunk* const chunk = reading.slot ? KpIfcSlotChunk::of(reading.slot) : nullptr;
    if (chunk && !chunk->names && reading.name - chunk->firstName < KpIfcSlotChunk::kSlots)
        reading.slot = &chunk->slots[reading.name - chunk->firstName];
    else
        reading.slot = table.find(reading.name);
    return OrderEntry(reading.slot);
}

void PackedOrder::replace(const InstanceTable& table, KpIfcSlot* slot, KeptRecord* record) {
    if (m_positions.empty()) {
        std::size_t place = 0;
        visit(table, [&](const OrderEntry& entry) {
            if (entry.slot()) m_positions[entry.slot()] = place;
            ++place;
        });
    }
    m_replaced[m_positions.at(slot)] = record;
}

void PackedOrder::returnTo(const Mark& mark) {
    m_bytes.resize(mark.bytes);
    m_end = mark;
    std::erase_if(m_positions, [&](const auto& position) { return position.second >= mark.count; });
}

} // namespace KP_SDAI
