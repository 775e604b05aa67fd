#include <KpIfcCore/KpIfcSchema.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

/// Eight characters at a time, for building a schema looks up thousands of names.
constexpr std::size_t kWord = 8;
constexpr std::uint64_t everyByte(std::uint8_t byte) {
    return byte * 0x0101010101010101u;
}

/// The characters of a name from `at` on, at most eight, in lower case. Where there are less than eight, they are the
/// last eight of the name, and of a shorter name all, with zeros behind them.
std::uint64_t lowerWord(std::string_view name, std::size_t at) {
    std::uint64_t word = 0;
    if (name.size() >= kWord)
        std::memcpy(&word, name.data() + std::min(at, name.size() - kWord), kWord);
    else
        for (std::size_t i = name.size(); i-- > 0;) word = word << 8 | static_cast<unsigned char>(name[i]);
    // The highest bit of each byte of the sums tells whether the character is at least 'A', above 'Z'.
    const std::uint64_t low = word & everyByte(0x7F);
    const std::uint64_t fromA = low + everyByte(0x80 - 'A');
    const std::uint64_t aboveZ = low + everyByte(0x7F - 'Z');
    return word | ((fromA & ~aboveZ & ~word & everyByte(0x80)) >> 2);
}

bool equalNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t at = 0; at < a.size(); at += kWord)
        if (lowerWord(a, at) != lowerWord(b, at)) return false;
    return true;
}

} // namespace

Dictionary::~Dictionary() = default;

std::size_t Dictionary::hashOf(std::string_view name) {
    std::uint64_t hash = name.size();
    for (std::size_t at = 0; at < name.size(); at += kWord) {
        hash = (hash ^ lowerWord(name, at)) * 0x9E3779B97F4A7C15u;
        hash ^= hash >> 32;
    }
    return static_cast<std::size_t>(hash);
}

/// Where a name of that hash stands in the table, or the free place where it would stand.
std::size_t Dictionary::place(std::string_view name, std::size_t hash) const {
    const std::size_t mask = m_table.size() - 1;
    std::size_t at = hash & mask;
    while (m_table[at] && !equalNoCase(name, m_entries[m_table[at] - 1].name)) at = (at + 1) & mask;
    return at;
}

void Dictionary::grow() {
    m_table.assign(m_table.empty() ? 64 : m_table.size() * 2, 0);
    for (std::uint32_t i = 0; i < m_entries.size(); ++i)
        m_table[place(m_entries[i].name, hashOf(m_entries[i].name))] = i + 1;
}

void Dictionary::putAt(const char* name, KP_SDAI::DictionaryInstance* object) {
    std::unique_ptr<KP_SDAI::DictionaryInstance> owned(object);
    if ((m_entries.size() + 1) * 2 > m_table.size()) grow();
    std::uint32_t& entry = m_table[place(name, hashOf(name))];
    if (entry) {
        m_entries[entry - 1] = {name, std::move(owned)};
        return;
    }
    m_entries.push_back({name, std::move(owned)});
    entry = static_cast<std::uint32_t>(m_entries.size());
}

KP_SDAI::DictionaryInstance* Dictionary::at(std::string_view name, std::size_t hash) const {
    if (m_table.empty()) return nullptr;
    const std::uint32_t entry = m_table[place(name, hash)];
    return entry ? m_entries[entry - 1].object.get() : nullptr;
}
