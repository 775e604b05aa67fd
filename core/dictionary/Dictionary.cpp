#include <KpIfcCore/KpIfcSchema.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

/// Equal for names that differ in letter case only: the bit that tells upper from lower case is set in all characters.
/// Eight of them at a time, for building a schema looks up thousands of names.
std::size_t hashNoCase(std::string_view name) {
    std::uint64_t hash = name.size();
    for (std::size_t at = 0; at < name.size(); at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, name.data() + at, std::min<std::size_t>(8, name.size() - at));
        hash = (hash ^ (word | 0x2020202020202020u)) * 0x9E3779B97F4A7C15u;
        hash ^= hash >> 32;
    }
    return static_cast<std::size_t>(hash);
}

} // namespace

Dictionary::~Dictionary() = default;

/// Where a name stands in the table, or the free place where it would stand.
std::size_t Dictionary::place(std::string_view name) const {
    const std::size_t mask = m_table.size() - 1;
    std::size_t at = hashNoCase(name) & mask;
    while (m_table[at] && !KP_SDAI::equalNoCase(name.data(), name.size(), m_entries[m_table[at] - 1].name.c_str()))
        at = (at + 1) & mask;
    return at;
}

void Dictionary::grow() {
    m_table.assign(m_table.empty() ? 64 : m_table.size() * 2, 0);
    for (std::uint32_t i = 0; i < m_entries.size(); ++i) m_table[place(m_entries[i].name)] = i + 1;
}

void Dictionary::putAt(const char* name, KP_SDAI::DictionaryInstance* object) {
    std::unique_ptr<KP_SDAI::DictionaryInstance> owned(object);
    if ((m_entries.size() + 1) * 2 > m_table.size()) grow();
    std::uint32_t& entry = m_table[place(name)];
    if (entry) {
        m_entries[entry - 1] = {name, std::move(owned)};
        return;
    }
    m_entries.push_back({name, std::move(owned)});
    entry = static_cast<std::uint32_t>(m_entries.size());
}

KP_SDAI::DictionaryInstance* Dictionary::at(std::string_view name) const {
    if (m_table.empty()) return nullptr;
    const std::uint32_t entry = m_table[place(name)];
    return entry ? m_entries[entry - 1].object.get() : nullptr;
}
