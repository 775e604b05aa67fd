#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kpifc {

/// Lists, one in the other, of which a text gets no more than so many elements. Writers of values (ValueWalk) call it
/// where lists begin, before every element, and where they end.
class ShortenedLists {
public:
    /// `most`: all elements where there is none.
    ShortenedLists(std::string& out, std::optional<std::size_t> most, const char* separator)
        : m_out(out), m_most(most), m_separator(separator) {}

    void begin() { m_lists.emplace_back(); }
    void next() {
        List& list = m_lists.back();
        if (m_most && list.count == *m_most) {
            list.cut = m_out.size();
        }
        m_out += list.count++ ? m_separator : "";
    }
    /// Takes back what is too much; returns how many elements there are in all, 0 where all are told.
    std::size_t end() {
        const List list = m_lists.back();
        m_lists.pop_back();
        if (!list.cut) {
            return 0;
        }
        m_out.resize(list.cut);
        return list.count;
    }
    /// Whether what comes now will be taken back.
    bool isCut() const { return !m_lists.empty() && m_lists.back().cut; }

private:
    struct List {
        std::size_t count = 0;
        std::size_t cut = 0; ///< where in the text what is not told begins
    };

    std::string& m_out;
    std::optional<std::size_t> m_most;
    const char* m_separator;
    std::vector<List> m_lists; ///< that are being written, the outermost first
};

} // namespace kpifc
