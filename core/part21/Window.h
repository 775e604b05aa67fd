#pragma once

#include "part21/ByteSource.h"
#include "part21/Scan.h"
#include "part21/SourceLayout.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace KP_SDAI {

/// The part of a source that is in memory: a buffer that moves along, with zeros behind its end.
class Window {
public:
    /// What leaves the window is noted in `layout`.
    Window(ByteSource& source, SourceLayout& layout) : m_source(source), m_layout(layout) {}

    const char* end() const { return m_buffer.data() + m_length; }
    const char* begin() const { return m_buffer.data(); }
    /// Offset in the source of a place in the window.
    std::uint64_t offsetOf(const char* place) const {
        return m_offset + static_cast<std::uint64_t>(place - m_buffer.data());
    }
    /// Drops what stands before `place`, which lies between statements, and reads on behind the end; `place` moves
    /// along, all other places are gone. False where the source has ended.
    bool refill(const char*& place);
    /// Forgets all that was read; the source goes on at `offset`.
    void moveTo(std::uint64_t offset);
    /// The place in the window of an offset in the source; null where that is outside.
    const char* at(std::uint64_t offset) const {
        return offset >= m_offset && offset < m_offset + m_length ? begin() + (offset - m_offset) : nullptr;
    }
    /// Reads what is left; returns the size of the source.
    std::uint64_t readToEnd();
    SourceLayout& layout() const { return m_layout; }
    /// Offset of the first zero byte that was read; kNoZero where there was none.
    std::uint64_t firstZero() const { return m_firstZero; }
    static constexpr std::uint64_t kNoZero = UINT64_MAX;
    /// True once a refill has found the end of the source: all that is left stands in the window.
    bool hasEnded() const { return m_ended; }
    /// So many bytes behind any place, at least, can be had by a refill.
#ifdef KP_WINDOW_REACH // of fuzzers, whose files are small
    static constexpr std::ptrdiff_t kReach = KP_WINDOW_REACH;
#else
    static constexpr std::ptrdiff_t kReach = 256 * 1024;
#endif

private:
    static constexpr std::size_t kSize = 2 * kReach;
    static constexpr std::size_t kZeros = scan::kReach;
    ByteSource& m_source;
    SourceLayout& m_layout;
    std::vector<char> m_buffer = std::vector<char>(kZeros);
    std::size_t m_length = 0;
    std::uint64_t m_offset = 0;
    std::uint64_t m_firstZero = kNoZero;
    bool m_ended = false;
};

} // namespace KP_SDAI
