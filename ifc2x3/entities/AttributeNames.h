#pragma once

#include "entities/EntityClass.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

/// Finding the rows of attributes by name, in any letter case.
namespace IFC2X3 {

namespace detail {

constexpr std::uint64_t everyByte(std::uint8_t byte) {
    return 0x0101010101010101u * byte;
}

template <class Word>
std::uint64_t wordAt(const char* text) {
    Word word;
    std::memcpy(&word, text, sizeof word);
    return word;
}

/// True where eight characters differ in the case of letters at most. The bytes of `row` are ASCII.
inline bool equalNoCase(std::uint64_t text, std::uint64_t row) {
    constexpr std::uint64_t caseBits = everyByte(0x20);
    const std::uint64_t different = text ^ row;
    if (different & ~caseBits) return false;
    if (different == 0) return true;
    // Sets the high bit of every byte that is a letter in lower case: from 'a' on and not beyond 'z'.
    const std::uint64_t lower = row | caseBits;
    const std::uint64_t letters = (lower + everyByte(0x80 - 'a')) & ~(lower + everyByte(0x80 - 'z' - 1));
    return (different << 2 & ~letters & everyByte(0x80)) == 0;
}

/// Two names of the same length, compared without regard to ASCII case.
inline bool equalNoCase(const char* text, const char* row, std::size_t length) {
    if (length < 4) return KP_SDAI::equalNoCase(text, length, row);
    if (length < 8) { // the first four characters and the last four
        const auto ends = [length](const char* name) {
            return wordAt<std::uint32_t>(name) | wordAt<std::uint32_t>(name + length - 4) << 32;
        };
        return equalNoCase(ends(text), ends(row));
    }
    const auto eight = wordAt<std::uint64_t>;
    for (std::size_t i = 0; i + 8 < length; i += 8)
        if (!equalNoCase(eight(text + i), eight(row + i))) return false;
    return equalNoCase(eight(text + length - 8), eight(row + length - 8));
}

} // namespace detail

/// A name that is looked for.
class Name {
public:
    explicit Name(const KpAnsiString& name)
        : m_text(name.view()), m_key(KpIfcAttributeFacts::keyOf(m_text.data(), m_text.size())) {}

    std::uint32_t key() const { return m_key; }
    bool operator==(const KpIfcAttributeFacts& row) const {
        return row.key == m_key && row.nameLength == m_text.size() &&
               detail::equalNoCase(m_text.data(), row.name, m_text.size());
    }
    bool operator==(const KpIfcInverseFacts& row) const {
        return row.key == m_key && KP_SDAI::equalNoCase(m_text.data(), m_text.size(), row.name);
    }

private:
    std::string_view m_text;
    std::uint32_t m_key;
};

/// Where names were found before, so that nobody walks up the supertypes for them again.
///
/// Any number of threads may use it at once: an entry is filled once and stays. The few names whose entries are those
/// of others are looked for every time.
class FoundRows {
public:
    /// The explicit attribute of a name, the entity's own or the nearest supertype's; null where there is none.
    const KpIfcAttributeFacts* find(const KpIfcEntityFacts& facts, const Name& name) {
        Entry& entry = entryOf(facts, name);
        const KpIfcAttributeFacts* const known = entry.row.load(std::memory_order_acquire);
        if (known && entry.facts.load(std::memory_order_relaxed) == &facts && name == *known) return known;
        return findAndNote(facts, name, entry);
    }

private:
    struct Entry {
        std::atomic<const KpIfcEntityFacts*> facts{nullptr};
        std::atomic<const KpIfcAttributeFacts*> row{nullptr}; ///< set last
    };
    static constexpr int kBits = 12;

    Entry& entryOf(const KpIfcEntityFacts& facts, const Name& name) {
        const std::uint64_t mixed = (reinterpret_cast<std::uintptr_t>(&facts) ^ std::uint64_t{name.key()} << 16) *
                                    0x9E37'79B9'7F4A'7C15; // 2^64 divided by the golden ratio
        return m_entries[mixed >> (64 - kBits)];
    }
    [[gnu::noinline]] static const KpIfcAttributeFacts* findAndNote(const KpIfcEntityFacts& facts, const Name& name,
                                                                    Entry& entry) {
        for (const KpIfcEntityFacts* level = &facts; level; level = level->supertype) {
            for (const KpIfcAttributeFacts& row : std::span(level->attributes, level->attributeCount)) {
                if (!(name == row)) continue;
                const KpIfcEntityFacts* nobody = nullptr;
                if (entry.facts.compare_exchange_strong(nobody, &facts, std::memory_order_relaxed))
                    entry.row.store(&row, std::memory_order_release);
                return &row;
            }
        }
        return nullptr;
    }

    Entry m_entries[std::size_t{1} << kBits];
};

} // namespace IFC2X3
