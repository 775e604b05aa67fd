#pragma once

#include <KpIfcCore/KpIfcSchema.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace KP_SDAI {

/// Entity types by the keywords of records: asked once per record. An entity's row holds its name, too, so that a look
/// costs one line of the processor's cache besides a small table, and hardly a branch. As in Scan.h, sixteen bytes from
/// where a keyword begins are looked at, whatever they are.
class EntityNames {
public:
    explicit EntityNames(const KpIfcSchema& schema) : m_rows(1), m_places(kSize) {
        m_rows.reserve(1 + schema.entities().entries().size());
        for (const Dictionary::Entry& entry : schema.entities().entries()) {
            Row row;
            row.type = static_cast<KpIfcEntityType*>(entry.object.get());
            row.length = static_cast<std::uint32_t>(entry.name.size());
            std::memcpy(row.name, entry.name.data(), std::min(entry.name.size(), sizeof row.name));
            const bool isWhole = entry.name.size() <= sizeof row.name; // with zeros behind it
            std::size_t at = hash(isWhole ? std::string_view(row.name, row.length) : std::string_view(entry.name));
            while (m_places[at]) at = (at + 1) & (kSize - 1);
            m_places[at] = static_cast<std::uint16_t>(m_rows.size());
            m_rows.push_back(row);
        }
    }
    /// The place of the entity with that keyword, in upper case as the standard wants it; below kSize, 0 where there is
    /// none.
    std::size_t indexOf(std::string_view keyword) const {
        std::size_t at = hash(keyword);
        while (m_places[at] && !isEqual(m_rows[m_places[at]], keyword)) at = (at + 1) & (kSize - 1);
        return m_places[at];
    }
    /// The entity at a place, or null.
    KpIfcEntityType* at(std::size_t index) const { return index < m_rows.size() ? m_rows[index].type : nullptr; }
    static constexpr std::size_t kSize = 4096;

private:
    struct alignas(64) Row {
        KpIfcEntityType* type = nullptr;
        std::uint32_t length = 0;
        char name[52] = {}; ///< as much of it as there is room for
    };
    static std::uint64_t word(const char* p) {
        std::uint64_t characters;
        std::memcpy(&characters, p, sizeof characters);
        return characters;
    }
    /// The first `count` characters of a word, one to eight; the others are taken for zeros.
    static std::uint64_t first(std::uint64_t word, std::size_t count) {
        const std::size_t others = 64 - 8 * std::clamp<std::size_t>(count, 1, 8);
        return std::endian::native == std::endian::little ? word << others >> others : word >> others << others;
    }
    static bool isEqual(const Row& row, std::string_view keyword) {
        const std::size_t size = keyword.size();
        if (row.length != size) return false;
        if (size > 32) return row.type->name() == keyword;
#ifdef __SSE2__
        // Those of a short name are the same ones twice.
        const std::size_t last = size > 16 ? size - 16 : 0;
        const auto equal = [&](std::size_t at) {
            const auto* const text = reinterpret_cast<const __m128i*>(keyword.data() + at);
            const auto* const name = reinterpret_cast<const __m128i*>(row.name + at);
            return _mm_movemask_epi8(_mm_cmpeq_epi8(_mm_loadu_si128(text), _mm_loadu_si128(name)));
        };
        const unsigned both = static_cast<unsigned>(equal(0) & equal(last));
        return (both | (0xFFFFFFFFu << std::min<std::size_t>(size, 16))) == 0xFFFFFFFFu;
#else
        return std::memcmp(keyword.data(), row.name, size) == 0;
#endif
    }
    /// Of the length, the eight characters behind the common prefix and the last eight.
    static std::size_t hash(std::string_view name) {
        const std::size_t size = name.size();
        const std::uint64_t head = first(word(name.data() + 3), size > 3 ? size - 3 : 1);
        const std::uint64_t tail = first(word(name.data() + std::max<std::size_t>(size, 8) - 8), size);
        const std::uint64_t mixed = (head ^ (tail * 0x9E3779B97F4A7C15u) ^ size) * 0xFF51AFD7ED558CCDu;
        return (mixed >> 40) & (kSize - 1);
    }

    std::vector<Row> m_rows;             ///< the first is none
    std::vector<std::uint16_t> m_places; ///< in m_rows, by hash; 0 for none
};

} // namespace KP_SDAI
