#pragma once

#include "part21/ReadRecords.h"
#include "part21/Window.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <vector>

namespace KP_SDAI {

/// A stretch of the source that seems to begin with a record and to end before the next one, and what reading it gave.
struct Part {
    explicit Part(std::size_t listedPerKind) : read(listedPerKind) {}

    const char* begin() const { return buffer.data(); }
    const char* end() const { return buffer.data() + length; }

    std::vector<char> buffer; ///< with zeros behind what is seen
    std::size_t length = 0;   ///< of the part itself
    std::size_t seen = 0;     ///< of it and of what follows, as far as that is known
    std::uint64_t offset = 0; ///< in the source
    bool isLast = false;      ///< the source ends with it

    enum class State { waiting, inWork, done };
    State state = State::waiting;
    ReadRecords read;
    const char* readTo = nullptr; ///< end(), or something that is no record
    std::uint64_t firstZero = Window::kNoZero;
    std::exception_ptr failure;
};

} // namespace KP_SDAI
