#pragma once

#include "part21/Scan.h"
#include "part21/SourceLayout.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace KP_SDAI {

class PartSource;

/// The part of a source that is in memory: a buffer that moves along, with zeros behind its end.
class Window {
public:
    /// What leaves the window is noted in `layout`.
    Window(PartSource& source, SourceLayout& layout) : m_source(source), m_layout(layout) {}

    const char* end() const { return m_buffer.data() + m_length; }
    const char* begin() const { return m_buffer.data(); }
    /// Offset in the source of a place in the window.
    std::uint64_t offsetOf(const char* place) const {
        return m_offset + static_cast<std::uint64_t>(place - m_buffer.data());
    }
    /// Drops what stands before `place`, which lies between statements, and reads on behind the end; `place` moves
    /// along, all other places are gone. False where the source has ended.
    bool refill(const char*& place);
    /// Drops all and goes on with the bytes that follow next in the source, of which `bytes` have been read already.
    /// What stood in the window, and what was passed over, is noted in the layout by now.
    void moveTo(std::uint64_t offset, std::string_view bytes);
    /// Reads what is left and gives the memory back: all places are gone. Returns the size of the source.
    std::uint64_t readToEnd();
    /// Offset of the first zero byte that was read; kNoZero where there was none.
    std::uint64_t firstZero() const { return m_firstZero; }
    /// Notes the first zero byte of a stretch that was not read here.
    void noteZero(std::uint64_t offset) {
        if (m_firstZero == kNoZero) m_firstZero = offset;
    }
    static constexpr std::uint64_t kNoZero = UINT64_MAX;
    /// So many zeros, at least, stand behind what is parsed.
    static constexpr std::size_t kZeros = scan::kReach;
    /// True once a refill has found the end of the source: all that is left stands in the window.
    bool hasEnded() const { return m_ended; }
    /// So many bytes behind any place, at least, can be had by a refill.
#ifdef KP_WINDOW_REACH // of fuzzers, whose files are small
    static constexpr std::ptrdiff_t kReach = KP_WINDOW_REACH;
#else
    static constexpr std::ptrdiff_t kReach = 64 * 1024;
#endif

private:
    static constexpr std::size_t kSize = 2 * kReach;
    PartSource& m_source;
    SourceLayout& m_layout;
    std::vector<char> m_buffer = std::vector<char>(kZeros);
    std::size_t m_length = 0;
    std::uint64_t m_offset = 0;
    std::uint64_t m_firstZero = kNoZero;
    bool m_ended = false;
};

} // namespace KP_SDAI
