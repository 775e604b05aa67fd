#pragma once

#include "part21/EntityNames.h"
#include "values/BlockPool.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace KP_SDAI {

/// Of which entities the instances are that one thread has read so far, by instance name. A byte each and close
/// together, so that most references can be checked without a look at what they refer to, which is seldom in the
/// processor's cache. Names that are far behind are forgotten.
class KnownTypes {
public:
    /// Keeps what it notes in memory of `pool`.
    explicit KnownTypes(BlockPool& pool) : m_pool(pool) {}
    KnownTypes(const KnownTypes&) = delete;
    KnownTypes& operator=(const KnownTypes&) = delete;
    ~KnownTypes() { clear(); }
    /// The entity of an instance; null where it is not known.
    const KpIfcEntityType* of(std::uint64_t name) const {
        const std::uint64_t page = name / kPage;
        return page < m_pages.size() && m_pages[page] ? m_kinds[m_pages[page][name % kPage]] : nullptr;
    }
    /// Notes the entity at a place of EntityNames, null where the instance's is none of them.
    void note(std::uint64_t name, std::size_t place, const KpIfcEntityType* type) {
        ++m_count;
        std::uint8_t kind = 0;
        if (type) {
            std::uint8_t& known = m_numbers[place];
            if (known == 0 && m_kindCount < kKinds) {
                m_kinds[m_kindCount] = type;
                known = static_cast<std::uint8_t>(m_kindCount++);
            }
            kind = known;
        }
        const std::uint64_t page = name / kPage;
        if (page >= m_pages.size() || !m_pages[page]) {
            if (!isWorthIt(page)) return;
            makePage(page);
        }
        m_pages[page][name % kPage] = kind;
    }
    /// Forgets all and gives the memory back.
    void clear() noexcept {
        m_pages = {};
        if (m_memory) m_pool.giveBack(std::exchange(m_memory, nullptr));
        m_count = m_made = 0;
    }

private:
    static constexpr std::size_t kPage = 32 * 1024;
    static constexpr std::size_t kKept = BlockPool::kBlock / kPage; ///< pages
    static constexpr std::size_t kKinds = 256;                      ///< files have fewer entities, nearly all
    /// Names that are scattered over a wide range are not noted.
    bool isWorthIt(std::uint64_t page) const {
        constexpr std::uint64_t kThinnest = 8; // names per instance
        const std::uint64_t limit = 2 + kThinnest * m_count / kPage;
        return page < limit && m_made < limit;
    }
    void makePage(std::uint64_t page) {
        if (page >= m_pages.size()) m_pages.resize(page + 1);
        if (!m_memory) m_memory = static_cast<std::uint8_t*>(m_pool.take());
        const std::size_t place = m_made++ % kKept;
        std::uint8_t* const memory = m_memory + place * kPage;
        if (m_made > kKept) m_pages[m_kept[place]] = nullptr; // the one that was made first
        m_kept[place] = page;
        m_pages[page] = static_cast<std::uint8_t*>(std::memset(memory, 0, kPage));
    }

    BlockPool& m_pool;
    std::uint8_t* m_memory = nullptr;             ///< a block of the pool, once it is needed
    std::vector<std::uint8_t*> m_pages;           ///< in `m_memory`; null where nothing is noted
    std::array<std::uint64_t, kKept> m_kept = {}; ///< which they are
    std::uint64_t m_made = 0;
    std::uint64_t m_count = 0; ///< of instances
    std::size_t m_kindCount = 1;
    std::array<const KpIfcEntityType*, kKinds> m_kinds = {}; ///< the first one is unknown
    std::array<std::uint8_t, EntityNames::kSize> m_numbers = {};
};

} // namespace KP_SDAI
