#include "part21/SourceLayout.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <algorithm>

namespace KP_SDAI {

namespace {

std::uint64_t lineFeeds(std::string_view bytes) {
    constexpr std::size_t kRun = 240; // whose number fits a byte, so that as many are counted at once as can be
    std::uint64_t count = 0;
    for (std::size_t at = 0; at < bytes.size(); at += kRun) {
        const std::size_t end = std::min(bytes.size(), at + kRun);
        std::uint8_t ofRun = 0;
        for (std::size_t i = at; i < end; ++i) ofRun = static_cast<std::uint8_t>(ofRun + (bytes[i] == '\n'));
        count += ofRun;
    }
    return count;
}

} // namespace

std::uint64_t SourceLayout::digest(std::string_view bytes) {
    return XXH3_64bits(bytes.data(), bytes.size());
}

void SourceLayout::closeBlock(std::string_view bytes) {
    if (bytes.empty()) return;
    m_blocks.push_back({bytes.size(), digest(bytes), m_lowestName, m_highestName, lineFeeds(bytes)});
    m_lowestName = UINT64_MAX;
    m_highestName = 0;
}

void SourceLayout::append(SourceLayout& next) {
    m_blocks.insert(m_blocks.end(), next.m_blocks.begin(), next.m_blocks.end());
    m_opaque.insert(m_opaque.end(), next.m_opaque.begin(), next.m_opaque.end());
    for (const auto& [name, offset] : next.m_counting) m_counting[name] = offset;
    m_surplus.merge(next.m_surplus);
    m_irregularEnds.merge(next.m_irregularEnds);
    if (next.m_lowestName < m_lowestName) m_lowestName = next.m_lowestName;
    if (next.m_highestName > m_highestName) m_highestName = next.m_highestName;
    next.m_blocks.clear();
    next.m_opaque.clear();
    next.m_counting.clear();
    next.m_surplus.clear();
    next.m_irregularEnds.clear();
    next.m_lowestName = UINT64_MAX;
    next.m_highestName = 0;
}

void SourceLayout::noteOpaque(std::uint64_t begin, std::uint64_t end, std::uint64_t name) {
    if (begin < end) m_opaque.push_back({begin, end, name});
    if (name) noteName(name);
}

} // namespace KP_SDAI
