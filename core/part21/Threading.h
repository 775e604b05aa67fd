#pragma once

#include <cstddef>
#include <cstdint>
#include <thread>

namespace KP_SDAI {

/// With how many threads a file is read.
struct Threading {
    static constexpr std::size_t kPartSize = 128 * 1024;

    /// From what the caller of the library wants, 0 for what is best, and a test (SmallParts), 0 for what is usual.
    Threading(unsigned wanted, std::size_t size)
        : threads(wanted ? wanted : std::thread::hardware_concurrency()), partSize(size ? size : kPartSize),
          smallest(size ? size : 8 * kPartSize) {}
    /// Whether a source of a size, 0 where that is not known, may be read by several.
    bool isOfUse(std::uint64_t size) const { return threads > 1 && (size == 0 || size >= smallest); }

    /// With how many to work on what has been read.
    unsigned threadsFor(std::size_t items) const { return items < smallest / 64 ? 1 : threads; }

    unsigned threads; ///< at most, the caller's included
    std::size_t partSize;
    std::uint64_t smallest; ///< bytes for which a thread is started
};

} // namespace KP_SDAI
