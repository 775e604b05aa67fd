#pragma once

#include <KpIfcCore/KpIfcSchema.h>

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace KP_SDAI {

/// Entity types by the keywords of records: a flat table that is asked once per record.
class EntityNames {
public:
    explicit EntityNames(const KpIfcSchema& schema) : m_table(kSize) {
        for (const Dictionary::Entry& entry : schema.entities().entries()) {
            std::size_t at = hash(entry.name);
            while (m_table[at]) at = (at + 1) & (kSize - 1);
            m_rows.push_back({entry.name, static_cast<KpIfcEntityType*>(entry.object.get())});
            m_table[at] = static_cast<std::uint16_t>(m_rows.size());
        }
    }
    /// Null where no entity has that keyword, in upper case as the standard wants it.
    KpIfcEntityType* find(std::string_view keyword) const {
        for (std::size_t at = hash(keyword); m_table[at]; at = (at + 1) & (kSize - 1)) {
            const Row& row = m_rows[m_table[at] - 1];
            if (isEqual(row.name, keyword)) return row.type;
        }
        return nullptr;
    }

private:
    static constexpr std::size_t kSize = 4096;
    struct Row {
        std::string_view name;
        KpIfcEntityType* type;
    };
    static bool isEqual(std::string_view a, std::string_view b) {
        if (a.size() != b.size()) return false;
        if (a.size() < 8) return a == b;
        const std::size_t last = a.size() - 8;
        for (std::size_t i = 0; i < last; i += 8)
            if (eightBytes(a.data() + i) != eightBytes(b.data() + i)) return false;
        return eightBytes(a.data() + last) == eightBytes(b.data() + last);
    }
    static std::uint64_t eightBytes(const char* text) {
        std::uint64_t bytes;
        std::memcpy(&bytes, text, sizeof bytes);
        return bytes;
    }
    /// Of the length, the eight characters behind the common prefix and the last eight.
    static std::size_t hash(std::string_view name) {
        std::uint64_t head = 0;
        std::uint64_t tail = 0;
        if (name.size() >= 11) {
            head = eightBytes(name.data() + 3);
            tail = eightBytes(name.data() + name.size() - 8);
        } else {
            std::memcpy(&head, name.data(), name.size() < 8 ? name.size() : 8);
            if (name.size() > 8) std::memcpy(&tail, name.data() + 8, name.size() - 8);
        }
        const std::uint64_t mixed = (head ^ (tail * 0x9E3779B97F4A7C15u) ^ name.size()) * 0xFF51AFD7ED558CCDu;
        return (mixed >> 40) & (kSize - 1);
    }
    std::vector<Row> m_rows;
    std::vector<std::uint16_t> m_table; ///< number of a row plus one; 0 where there is none
};

} // namespace KP_SDAI
