#pragma once

#include <cstdint>

namespace KP_SDAI {

/// The decimal digits of a number below 10^8, leading zeros included, as the bytes of a word: the first in the lowest.
inline std::uint64_t eightDigits(std::uint64_t number) {
    const std::uint64_t halves = number / 10000 | number % 10000 << 32;
    const std::uint64_t hundreds = halves * 10486 >> 20 & 0x7F'0000'007F; // 10486 / 2^20 is a hundredth
    const std::uint64_t pairs = hundreds + ((halves - 100 * hundreds) << 16);
    const std::uint64_t tens = pairs * 103 >> 10 & 0x000F'000F'000F'000F; // 103 / 2^10 is a tenth
    return tens + ((pairs - 10 * tens) << 8);
}

/// Makes characters of eight digits.
inline constexpr std::uint64_t kZeros = 0x3030'3030'3030'3030;

} // namespace KP_SDAI
