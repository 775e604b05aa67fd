#include "part21/PartSource.h"

#include "part21/Lexer.h"

#include <algorithm>
#include <cstring>

namespace KP_SDAI {

namespace {

/// Where so many parts have no place to cut at, who reads byte by byte goes on.
constexpr std::size_t kMostParts = 8;

/// The last place between the start of `text` and `limit` where a record seems to begin: "#12=" behind a semicolon. 0
/// where there is none.
std::size_t lastRecord(const char* text, std::size_t limit, std::size_t length) {
    for (std::size_t at = limit; at-- > 1;) {
        if (text[at] != '#') continue;
        std::size_t before = at - 1;
        while (before > 0 && static_cast<unsigned char>(text[before]) <= ' ') --before;
        if (text[before] == ';' && lexer::beginsRecord(text + at, text + length)) return at;
    }
    return 0;
}

} // namespace

std::size_t PartSource::read(char* to, std::size_t size) {
    if (m_partsOut) throw ReadAgain();
    std::size_t got = std::min(size, m_length);
    if (got) {
        std::memcpy(to, m_ahead.data(), got);
        m_length -= got;
        std::memmove(m_ahead.data(), m_ahead.data() + got, m_length);
    } else if (!m_isEnded) {
        got = m_source.read(to, size);
    }
    m_offset += got;
    return got;
}

void PartSource::giveBack(std::string_view bytes) {
    m_ahead.resize(m_length);
    m_ahead.insert(m_ahead.begin(), bytes.begin(), bytes.end());
    m_length = m_ahead.size();
    m_offset -= bytes.size();
}

bool PartSource::next(Part& part) {
    // What stands behind a part is seen by who reads it: of a damaged record more than its own text is looked at.
    const std::size_t behind = m_partSize / 16 + 64;
    std::size_t cut = 0;
    for (std::size_t parts = 1; cut == 0; ++parts) {
        if (parts > kMostParts) return false;
        const std::size_t wanted = parts * m_partSize + behind;
        m_ahead.resize(std::max({m_ahead.size(), wanted + Window::kZeros, m_length + Window::kZeros}));
        if (m_length < wanted && !m_isEnded) {
            const std::size_t got = m_source.read(m_ahead.data() + m_length, wanted - m_length);
            m_isEnded = got < wanted - m_length;
            m_length += got;
        }
        std::memset(m_ahead.data() + m_length, 0, Window::kZeros);
        if (m_length == 0) return false;
        part.isLast = m_isEnded && m_length <= wanted;
        cut = part.isLast ? m_length : lastRecord(m_ahead.data(), wanted - behind, m_length);
    }
    part.length = cut;
    part.seen = m_length;
    part.offset = m_offset;
    part.buffer.swap(m_ahead);
    m_length -= cut;
    m_ahead.resize(std::max(m_ahead.size(), m_length));
    std::copy(part.end(), part.begin() + part.seen, m_ahead.begin());
    m_offset += cut;
    ++m_partsOut;
    return true;
}

} // namespace KP_SDAI
