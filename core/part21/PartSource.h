#pragma once

#include "part21/ByteSource.h"
#include "part21/Part.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace KP_SDAI {

/// A source from front to back, as bytes or in parts that are cut before what looks like a record.
class PartSource {
public:
    /// A part has about `partSize`.
    PartSource(ByteSource& source, std::size_t partSize) : m_source(source), m_partSize(partSize) {}

    /// Reads up to `size` bytes, none at the end only. Throws ReadAgain while parts are out: who reads bytes where a
    /// part should begin has found that it does not.
    std::size_t read(char* to, std::size_t size);
    /// Takes bytes back that were read last.
    void giveBack(std::string_view bytes);
    /// Gives the next part out; false at the end, or where no place to cut at is near.
    bool next(Part& part);
    /// A part is no longer out: everything up to its end is read.
    void comeBack() { --m_partsOut; }
    std::size_t partsOut() const { return m_partsOut; }
    const ByteSource& source() const { return m_source; }
    /// Bytes that were given out in all.
    std::uint64_t offset() const { return m_offset; }

private:
    ByteSource& m_source;
    std::size_t m_partSize;
    std::vector<char> m_ahead; ///< begins with what was read of the source, but not given out
    std::size_t m_length = 0;  ///< of that
    std::uint64_t m_offset = 0;
    std::size_t m_partsOut = 0;
    bool m_isEnded = false; ///< of the source itself
};

} // namespace KP_SDAI
