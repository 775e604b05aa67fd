#include <KpIfcCore/KpStepText.h>

#include "part21/Digits.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace KP_SDAI::KpStepText {

namespace {

constexpr double kPowers[] = {1e0, 1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7, 1e8,
                              1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16}; // all exact

/// Writes a number that a decimal number of up to 15 digits stands for, as nearly all in files are; null, and nothing
/// of use written, for others and for those that are shorter with an exponent.
///
/// No two decimal numbers of up to 15 digits are the same double. So where one is found that gives this double, it is
/// the shortest, and the way in which it was found does not matter. The quotient of two exact numbers is what reading
/// the decimal number gives.
char* writeDecimal(double value, char* to) {
    if constexpr (std::endian::native != std::endian::little) return nullptr;
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const double magnitude = std::fabs(value);
    if (!(magnitude >= 1e-7 && magnitude < 1e15)) return nullptr;
    int decimals = magnitude < 0.1 ? 16 : 15; // digits behind the point in `number`
    if (magnitude >= 1) {
        const int exponent = static_cast<int>(bits >> 52 & 0x7FF) - 1023;
        const int whole = (exponent * 1233 >> 12) + 1; // 1233 / 2^12 is the logarithm of 2; may be one too few
        decimals -= whole + (magnitude >= kPowers[whole]);
    }
    const auto number = static_cast<std::uint64_t>(magnitude * kPowers[decimals] + 0.5);
    if (number >= 1'000'000'000'000'000 || static_cast<double>(number) / kPowers[decimals] != magnitude) return nullptr;

    const std::uint64_t high = eightDigits(number / 100'000'000);
    const std::uint64_t low = eightDigits(number % 100'000'000);
    const int trailing = (low ? std::countl_zero(low) : 64 + std::countl_zero(high)) / 8;
    const int leading = (high ? std::countr_zero(high) : 64 + std::countr_zero(low)) / 8;
    const int digits = 16 - leading - trailing;
    const int behind = decimals - trailing; // less than 0: there are zeros before the point
    // With an exponent it takes four characters more, and a point where there are several digits.
    const int most = 4 + (digits > 1);
    if (magnitude < 1 ? behind > digits - 2 + most : -behind > most) return nullptr;

    char text[32]; // the first digit is a zero; what stands behind the sixteenth is copied but not used
    const std::uint64_t halves[] = {high | kZeros, low | kZeros};
    std::memcpy(text, halves, sizeof halves);
    const int before = 16 - decimals;
    if (bits >> 63) *to++ = '-';
    std::memcpy(to, before > 1 ? text + 1 : text, 16);
    to += before > 1 ? before - 1 : 1;
    *to++ = '.';
    std::memcpy(to, text + before, 16);
    return to + (behind > 0 ? behind : 0);
}

} // namespace

char* writeReal(double value, char* to) {
    if (char* const end = writeDecimal(value, to)) return end;
    char* const end = std::to_chars(to, to + kRealRoom - 4, value).ptr;
    char* exponent = to;
    bool point = false;
    for (; exponent != end && *exponent != 'e'; ++exponent) point |= *exponent == '.';
    if (exponent == end) {
        if (!point) *exponent++ = '.';
        return exponent;
    }
    // "1e-05" becomes "1.E-05"
    char tail[8];
    const char* from = exponent + 1;
    if (*from == '+') ++from;
    const auto length = static_cast<std::size_t>(end - from);
    std::memcpy(tail, from, length);
    if (!point) *exponent++ = '.';
    *exponent++ = 'E';
    std::memcpy(exponent, tail, length);
    return exponent + length;
}

} // namespace KP_SDAI::KpStepText
