#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace KP_SDAI {

/// Of which entities the instances are that one thread has read so far, by instance name. Two bytes each and close
/// together, so that most references can be checked without a look at what they refer to, which is seldom in the
/// processor's cache.
class KnownTypes {
public:
    /// What stands for the entity; 0 where it is not known.
    std::uint16_t of(std::uint64_t name) const {
        const std::uint64_t page = name / kPage;
        return page < m_pages.size() && m_pages[page] ? m_pages[page][name % kPage] : std::uint16_t{0};
    }
    void note(std::uint64_t name, std::uint16_t type) {
        ++m_count;
        const std::uint64_t page = name / kPage;
        if (page < m_pages.size() && m_pages[page])
            m_pages[page][name % kPage] = type;
        else if (isWorthIt(page))
            makePage(page)[name % kPage] = type;
    }
    /// Forgets all and gives the memory back.
    void clear() { *this = KnownTypes(); }

private:
    static constexpr std::size_t kPage = 128 * 1024;
    /// Names that are scattered over a wide range are not noted.
    bool isWorthIt(std::uint64_t page) const {
        constexpr std::uint64_t kThinnest = 8; // names per instance
        return page < 2 + kThinnest * m_count / kPage && m_pageCount < 2 + kThinnest * m_count / kPage;
    }
    std::uint16_t* makePage(std::uint64_t page) {
        if (page >= m_pages.size()) m_pages.resize(page + 1);
        m_pages[page] = std::make_unique<std::uint16_t[]>(kPage);
        ++m_pageCount;
        return m_pages[page].get();
    }

    std::vector<std::unique_ptr<std::uint16_t[]>> m_pages;
    std::uint64_t m_pageCount = 0;
    std::uint64_t m_count = 0;
};

} // namespace KP_SDAI
