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
            while (m_table[at].type) at = (at + 1) & (kSize - 1);
            m_table[at] = {entry.name, static_cast<KpIfcEntityType*>(entry.object.get())};
        }
    }
    /// Null where no entity has that keyword, in upper case as the standard wants it.
    KpIfcEntityType* find(std::string_view keyword) const { return m_table[indexOf(keyword)].type; }
    /// The place of an entity in the table; some place without one where no entity has that keyword.
    std::size_t indexOf(std::string_view keyword) const {
        std::size_t at = hash(keyword);
        while (m_table[at].type && !isEqual(m_table[at].name, keyword)) at = (at + 1) & (kSize - 1);
        return at;
    }
    /// The entity at a place of the table, or null.
    KpIfcEntityType* at(std::size_t index) const { return m_table[index].type; }
    static constexpr std::size_t kSize = 4096;

private:
    struct Row {
        std::string_view name;
        KpIfcEntityType* type = nullptr;
    };
    /// Without a call, for nearly always they are equal.
    static bool isEqual(std::string_view a, std::string_view b) {
        if (a.size() != b.size()) return false;
        if (a.size() < 8 || a.size() > 32) return a == b;
        const auto differ = [&](std::size_t at) {
            std::uint64_t x;
            std::uint64_t y;
            std::memcpy(&x, a.data() + at, 8);
            std::memcpy(&y, b.data() + at, 8);
            return x ^ y;
        };
        const std::size_t last = a.size() - 8;
        const auto place = [&](std::size_t at) { return at < last ? at : last; };
        return (differ(0) | differ(place(8)) | differ(place(16)) | differ(last)) == 0;
    }
    /// Of the length, the eight characters behind the common prefix and the last eight.
    static std::size_t hash(std::string_view name) {
        std::uint64_t head = 0;
        std::uint64_t tail = 0;
        if (name.size() >= 11) {
            std::memcpy(&head, name.data() + 3, 8);
            std::memcpy(&tail, name.data() + name.size() - 8, 8);
        } else {
            std::memcpy(&head, name.data(), name.size() < 8 ? name.size() : 8);
            if (name.size() > 8) std::memcpy(&tail, name.data() + 8, name.size() - 8);
        }
        const std::uint64_t mixed = (head ^ (tail * 0x9E3779B97F4A7C15u) ^ name.size()) * 0xFF51AFD7ED558CCDu;
        return (mixed >> 40) & (kSize - 1);
    }
    std::vector<Row> m_table;
};

} // namespace KP_SDAI
