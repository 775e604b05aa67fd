#include "model/PackedOrder.h"

#include <cstddef>

namespace KP_SDAI {

namespace {

// Three bits in a half byte, the lowest first, the fourth set where more follow. A number never ends in a zero that
// follows another one, so these two say that the address of a kept record comes.
constexpr unsigned kBits = 3;
constexpr unsigned kMore = 1u << kBits;
constexpr unsigned kRecord[] = {kMore, 0};
constexpr unsigned kAddressSize = 2 * sizeof(std::uintptr_t);

} // namespace

void PackedOrder::makeRoom(const OrderEntry& entry) {
    while (!hasRoom(kLongest)) m_chunks.push_back(std::make_unique<std::uint8_t[]>(kChunk / 2));
    if (!m_positions.empty() && entry.slot()) m_positions[entry.slot()] = m_end.count;
}

void PackedOrder::append(const OrderEntry& entry) {
    makeRoom(entry);
    if (KeptRecord* const record = entry.record()) {
        const auto address = reinterpret_cast<std::uintptr_t>(record);
        for (const unsigned mark : kRecord) put(mark);
        for (unsigned i = 0; i < kAddressSize; ++i) put(static_cast<unsigned>(address >> (4 * i) & 0xFu));
    } else {
        const std::uint64_t name = KpDbObjectId(entry.slot()).instanceName();
        const std::uint64_t difference = name - m_end.name;
        // Small ones below zero are to be small, too: the sign goes to the lowest bit.
        std::uint64_t rest = difference << 1 ^ (difference >> 63 ? UINT64_MAX : 0);
        for (; rest >= kMore; rest >>= kBits) put(static_cast<unsigned>(rest & (kMore - 1)) | kMore);
        put(static_cast<unsigned>(rest));
        m_end.name = name;
    }
    ++m_end.count;
}

void PackedOrder::append(std::span<const OrderEntry> entries) {
    for (const OrderEntry& entry : entries) {
        KpIfcSlot* const slot = entry.slot();
        const std::uint64_t difference = slot ? KpDbObjectId(slot).instanceName() - m_end.name : UINT64_MAX;
        if (difference >= kMore / 2 || !hasRoom(1) || !m_positions.empty()) {
            append(entry);
            continue;
        }
        put(static_cast<unsigned>(difference << 1));
        m_end.name += difference;
        ++m_end.count;
    }
}

OrderEntry PackedOrder::next(const InstanceTable& table, Reading& reading) const {
    std::size_t& place = reading.place;
    unsigned last = half(place++);
    if (last == kRecord[0] && half(place) == kRecord[1]) {
        std::uintptr_t address = 0;
        ++place;
        for (unsigned i = 0; i < kAddressSize; ++i) address |= std::uintptr_t{half(place++)} << (4 * i);
        return OrderEntry(reinterpret_cast<KeptRecord*>(address));
    }
    std::uint64_t bits = last & (kMore - 1);
    for (unsigned shift = kBits; last & kMore; shift += kBits) {
        last = half(place++);
        bits |= std::uint64_t{last & (kMore - 1)} << shift;
    }
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
    m_end = mark; // further memory stays for what comes
    std::erase_if(m_positions, [&](const auto& position) { return position.second >= mark.count; });
}

} // namespace KP_SDAI
