#pragma once

#include "part21/ByteSource.h"

#include <cstdint>
#include <vector>

namespace KP_SDAI {

/// The piece of a source around the place that was looked at last, zeros behind its end. Throws KpIfcException 1000
/// where that cannot be read or is no longer what it was when the source was opened.
class SourcePiece {
public:
    explicit SourcePiece(ByteSource& source) : m_source(source) {}

    /// The place of an offset in memory, read anew where it is not there. Null where the source ends before.
    const char* at(std::uint64_t offset);
    /// Reads on behind the end, and moves all places; false where the source has ended.
    bool grow();

    const char* begin() const { return m_buffer.data(); }
    const char* end() const { return m_buffer.data() + m_length; }
    std::uint64_t offset() const { return m_offset; } ///< of begin()

private:
    ByteSource& m_source;
    std::vector<char> m_buffer;
    std::size_t m_length = 0;
    std::uint64_t m_offset = 0;
};

} // namespace KP_SDAI
