#include "part21/SourcePiece.h"

#include "part21/Findings.h"
#include "part21/Scan.h"

#include <KpIfcCore/KpIfcException.h>

#include <cstring>
#include <string>

namespace KP_SDAI {

namespace {

constexpr std::size_t kPiece = 64 * 1024;
constexpr std::uint64_t kBefore = 16 * 1024; // what is touched next stands before as often as behind

[[noreturn]] void throwSystemError(const std::string& reason) {
    throw KpIfcException(1000, "Underlying system error", reason.c_str());
}

} // namespace

const char* SourcePiece::at(std::uint64_t offset) {
    if (offset < m_offset || offset >= m_offset + m_length) {
        m_length = 0;
        m_offset = offset < kBefore ? 0 : offset - kBefore;
        while (offset >= m_offset + m_length)
            if (!grow()) return nullptr;
    }
    return begin() + (offset - m_offset);
}

bool SourcePiece::grow() {
    if (m_buffer.size() < m_length + kPiece + scan::kReach) m_buffer.resize(2 * m_length + kPiece + scan::kReach);
    const std::size_t room = m_length == 0 ? kPiece : m_buffer.size() - scan::kReach - m_length;
    std::string reason;
    const std::size_t got = m_source.readAt(m_offset + m_length, m_buffer.data() + m_length, room, reason);
    if (!reason.empty()) throwSystemError(reason);
    if (m_source.hasChanged()) throwSystemError(kSourceHasChanged);
    m_length += got;
    std::memset(m_buffer.data() + m_length, 0, scan::kReach);
    return got != 0;
}

} // namespace KP_SDAI
