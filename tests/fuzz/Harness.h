#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string_view>

/// What a fuzz target does with its bytes: whatever they are, it returns. Each target is a source that defines this;
/// LibFuzzerMain.cpp or ReplayMain.cpp makes a program of it. Inputs are independent of each other.
void fuzzTarget(std::string_view bytes);

/// Ends the program where something that always holds does not; libFuzzer then keeps the input.
inline void require(bool holds, std::string_view what) {
    if (!holds) {
        std::cerr << "not so: " << what << '\n';
        std::abort();
    }
}

/// The same for two texts, which are told where they differ.
inline void requireSame(std::string_view found, std::string_view expected, std::string_view what) {
    if (found != expected) {
        std::cerr << "found:\n" << found << "\nexpected:\n" << expected << '\n';
    }
    require(found == expected, what);
}

/// Bytes as decisions. Behind the end all are 0.
class Decisions {
public:
    explicit Decisions(std::string_view bytes) : m_bytes(bytes) {}

    bool isDone() const { return m_bytes.empty(); }
    std::uint8_t byte() {
        if (m_bytes.empty()) {
            return 0;
        }
        const auto next = static_cast<std::uint8_t>(m_bytes.front());
        m_bytes.remove_prefix(1);
        return next;
    }
    /// A number below `bound`, which is below 65536 and not 0.
    std::size_t below(std::size_t bound) {
        const std::size_t high = bound > 256 ? byte() : 0u;
        return (high << 8 | byte()) % bound;
    }
    /// Up to `length` bytes.
    std::string_view text(std::size_t length) {
        const std::string_view next = m_bytes.substr(0, length);
        m_bytes.remove_prefix(next.size());
        return next;
    }
    std::string_view rest() const { return m_bytes; }

private:
    std::string_view m_bytes;
};
