#include "part21/Window.h"

#include "part21/PartSource.h"

#include <cstring>
#include <utility>

namespace KP_SDAI {

bool Window::refill(const char*& place) {
    if (m_ended) return false;
    const auto dropped = static_cast<std::size_t>(place - m_buffer.data());
    const std::size_t kept = m_length - dropped;
    m_layout.closeBlock({m_buffer.data(), dropped});
    if (kept) std::memmove(m_buffer.data(), place, kept);
    m_offset += dropped;
    // A record longer than half of the window makes it grow.
    if (m_buffer.size() < kSize || kept > m_buffer.size() / 2)
        m_buffer.resize((m_buffer.size() < kSize ? kSize : m_buffer.size() * 2) + kZeros);
    const std::size_t got = m_source.read(m_buffer.data() + kept, m_buffer.size() - kZeros - kept);
    m_length = kept + got;
    if (const void* zero = m_firstZero == kNoZero ? std::memchr(m_buffer.data() + kept, 0, got) : nullptr)
        m_firstZero = offsetOf(static_cast<const char*>(zero));
    std::memset(m_buffer.data() + m_length, 0, kZeros);
    m_ended = got == 0;
    place = m_buffer.data();
    return got != 0;
}

void Window::moveTo(std::uint64_t offset, std::string_view bytes) {
    if (m_buffer.size() < bytes.size() + kZeros) m_buffer.resize(bytes.size() + kZeros);
    bytes.copy(m_buffer.data(), bytes.size());
    std::memset(m_buffer.data() + bytes.size(), 0, kZeros);
    m_length = bytes.size();
    m_offset = offset;
    m_ended = false;
}

std::uint64_t Window::readToEnd() {
    const char* place = end();
    while (refill(place)) place = end();
    m_layout.closeBlock({m_buffer.data(), m_length});
    m_offset += std::exchange(m_length, 0);
    m_buffer = std::vector<char>(kZeros);
    return m_offset;
}

} // namespace KP_SDAI
