#include "part21/FindingLines.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace KP_SDAI {

namespace {

constexpr std::size_t kPiece = 256 * 1024;

/// A walk over the bytes of a source that comes by the findings.
class LineWalk {
public:
    LineWalk(std::vector<KpIfcReportEntry>& findings, char lineEnd)
        : m_next(findings.begin()), m_end(findings.end()), m_lineEnd(lineEnd) {}
    bool isDone() const { return m_next == m_end; }
    std::uint64_t place() const { return m_offset; }
    std::uint64_t nextPlace() const { return m_next->offset; }

    /// Goes on at a place with so many lines before it. It begins one, or another one begins before the next finding.
    void jump(std::uint64_t offset, std::uint64_t lines) {
        m_offset = m_lineStart = offset;
        m_line = lines + 1;
    }
    /// Goes over the bytes that follow.
    void pass(std::string_view bytes) {
        const std::uint64_t end = m_offset + bytes.size();
        for (; m_next != m_end && m_next->offset < end; locate()) {
            const auto length = static_cast<std::size_t>(m_next->offset - m_offset);
            count(bytes.substr(0, length));
            bytes.remove_prefix(length);
        }
        count(bytes);
    }
    /// All that is left stands behind the last byte.
    void end() {
        while (m_next != m_end) locate();
    }

private:
    void locate() {
        m_next->line = m_line;
        m_next->column = m_next->offset - m_lineStart + 1;
        ++m_next;
    }
    void count(std::string_view bytes) {
        for (std::size_t at = 0; (at = bytes.find(m_lineEnd, at)) != bytes.npos;) {
            ++m_line;
            m_lineStart = m_offset + ++at;
        }
        m_offset += bytes.size();
    }

    std::vector<KpIfcReportEntry>::iterator m_next;
    const std::vector<KpIfcReportEntry>::iterator m_end;
    const char m_lineEnd;
    std::uint64_t m_offset = 0;
    std::uint64_t m_line = 1;
    std::uint64_t m_lineStart = 0;
};

/// Reads only the blocks that have findings, and before each the one in which its first line begins.
void walkBlocks(LineWalk& walk, ByteSource& source, const SourceLayout& layout, std::vector<char>& buffer,
                ProgressMeter& progress) {
    struct Start {
        std::uint64_t offset = 0;
        std::uint64_t lines = 0; ///< before it
    };
    Start start; // of the last block before this one in which a line begins
    Start here;
    for (const SourceLayout::Block& block : layout.blocks()) {
        const std::uint64_t end = here.offset + block.size;
        if (walk.isDone()) return;
        if (walk.nextPlace() < end || &block == &layout.blocks().back()) {
            if (walk.place() < start.offset) walk.jump(start.offset, start.lines);
            while (walk.place() < end) {
                const std::size_t wanted = std::min<std::uint64_t>(buffer.size(), end - walk.place());
                std::string reason;
                const std::size_t got = source.readAt(walk.place(), buffer.data(), wanted, reason);
                walk.pass({buffer.data(), got});
                if (got < wanted) return;
            }
            progress.readTo(end);
        }
        if (block.lines) start = here;
        here = {end, here.lines + block.lines};
    }
}

} // namespace

void locateFindings(std::vector<KpIfcReportEntry>& findings, ByteSource& source, const SourceLayout& layout,
                    ProgressMeter& progress) {
    std::stable_sort(findings.begin(), findings.end(),
                     [](const auto& a, const auto& b) { return a.offset < b.offset; });
    if (findings.empty() || !source.rewind()) return;
    progress.beginBytes(KpIfcStage::locating, source.fileSize());
    std::vector<char> buffer(kPiece);
    std::size_t got = source.read(buffer.data(), buffer.size());
    const bool hasLineFeeds = std::memchr(buffer.data(), '\n', got); // else lines end in carriage returns
    LineWalk walk(findings, hasLineFeeds ? '\n' : '\r');
    if (hasLineFeeds && source.isDirect()) {
        walkBlocks(walk, source, layout, buffer, progress);
    } else {
        for (; got != 0 && !walk.isDone(); got = source.read(buffer.data(), buffer.size()))
            walk.pass({buffer.data(), got});
    }
    walk.end();
}

} // namespace KP_SDAI
