#include "part21/SourceLayout.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace KP_SDAI {

std::uint64_t SourceLayout::digest(std::string_view bytes) {
    return XXH3_64bits(bytes.data(), bytes.size());
}

void SourceLayout::closeBlock(std::string_view bytes) {
    if (bytes.empty()) return;
    m_blocks.push_back({bytes.size(), digest(bytes), m_lowestName, m_highestName});
    m_lowestName = UINT64_MAX;
    m_highestName = 0;
}

void SourceLayout::noteOpaque(std::uint64_t begin, std::uint64_t end, std::uint64_t name) {
    if (begin < end) m_opaque.push_back({begin, end, name});
    if (name) noteName(name);
}

} // namespace KP_SDAI
