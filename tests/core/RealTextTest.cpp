#include <KpIfcCore/KpStepText.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <string_view>

namespace {

namespace text = KP_SDAI::KpStepText;

std::string_view written(double value, char (&room)[text::kRealRoom]) {
    return {room, static_cast<std::size_t>(text::writeReal(value, room) - room)};
}

std::size_t digitsAt(std::string_view number, std::size_t from) {
    std::size_t to = from;
    while (to < number.size() && number[to] >= '0' && number[to] <= '9') ++to;
    return to - from;
}

/// ISO 10303-21: [sign] digit {digit} "." {digit} ["E" [sign] digit {digit}].
bool isReal(std::string_view number) {
    const auto signAt = [&](std::size_t i) { return i < number.size() && (number[i] == '-' || number[i] == '+'); };
    std::size_t i = signAt(0);
    const std::size_t whole = digitsAt(number, i);
    i += whole;
    if (!whole || i == number.size() || number[i++] != '.') return false;
    i += digitsAt(number, i);
    if (i == number.size()) return true;
    if (number[i++] != 'E') return false;
    i += signAt(i);
    const std::size_t exponent = digitsAt(number, i);
    return exponent && i + exponent == number.size();
}

bool readsBack(double value, std::string_view number) {
    double back = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), back);
    return error == std::errc() && end == number.data() + number.size() &&
           std::bit_cast<std::uint64_t>(back) == std::bit_cast<std::uint64_t>(value);
}

double randomFinite(std::mt19937_64& random) {
    for (;;) {
        const auto value = std::bit_cast<double>(random());
        if (std::isfinite(value)) return value;
    }
}

template <class Next>
void expectReadBack(int count, unsigned seed, Next next) {
    std::mt19937_64 random(seed);
    char room[text::kRealRoom];
    for (int i = 0; i < count; ++i) {
        const double value = next(random);
        const std::string_view number = written(value, room);
        if (!isReal(number) || !readsBack(value, number)) FAIL() << number;
    }
}

TEST(RealText, TenMillionRandomNumbersReadBackToTheSameBits) {
    expectReadBack(10'000'000, 20, randomFinite);
}

/// Numbers as models have them: few digits, small exponents.
TEST(RealText, DecimalNumbersReadBackToTheSameBits) {
    expectReadBack(1'000'000, 21, [](std::mt19937_64& random) {
        return static_cast<double>(static_cast<std::int64_t>(random() % 20'000'001) - 10'000'000) /
               std::pow(10., static_cast<double>(random() % 12));
    });
}

/// What the standard library finds shortest, with a point and the exponent in the form of the standard.
std::string spelled(double value) {
    char room[64];
    std::string number(room, std::to_chars(room, room + sizeof room, value).ptr);
    const std::size_t exponent = std::min(number.find('e'), number.size());
    std::string tail = number.substr(exponent);
    number.resize(exponent);
    if (number.find('.') == std::string::npos) number += '.';
    if (!tail.empty()) number += 'E' + tail.substr(tail[1] == '+' ? 2 : 1);
    return number;
}

/// Decimal numbers are written by a way of their own, and must look like the others: also at its ends, and where an
/// exponent makes them shorter.
TEST(RealText, DecimalNumbersAreSpelledLikeOthers) {
    std::mt19937_64 random(23);
    char room[text::kRealRoom];
    for (int i = 0; i < 400'000; ++i) {
        const double power = std::pow(10., static_cast<double>(random() % 26));
        const auto digits =
            random() % static_cast<std::uint64_t>(std::pow(10., static_cast<double>(random() % 17 + 1)));
        const double decimal = static_cast<double>(digits) / power;
        for (const double value : {decimal, -decimal, std::nextafter(decimal, HUGE_VAL), decimal * power * power})
            ASSERT_EQ(written(value, room), spelled(value));
    }
}

TEST(RealText, IsNoLongerThanNeeded) {
    std::mt19937_64 random(22);
    char room[text::kRealRoom];
    for (int i = 0; i < 20'000; ++i) {
        const double value = randomFinite(random);
        char fewest[64];
        int precision = 0;
        do std::snprintf(fewest, sizeof fewest, "%.*e", precision++, value);
        while (std::strtod(fewest, nullptr) != value);
        ASSERT_LE(written(value, room).size(), std::strlen(fewest) + 1) << fewest; // the point
    }
}

TEST(RealText, SpellsNumbersAsPeopleDo) {
    const struct {
        double value;
        const char* text;
    } kCases[] = {
        {0., "0."},
        {-0., "-0."},
        {1., "1."},
        {-1., "-1."},
        {0.1, "0.1"},
        {0.001, "0.001"},
        {-0.5, "-0.5"},
        {1. / 3, "0.3333333333333333"},
        {2700., "2700."},
        {12345.678, "12345.678"},
        {123456789., "123456789."},
        {1e-5, "1.E-05"},
        {-1.5e-7, "-1.5E-07"},
        {1e22, "1.E22"},
        {1.7e100, "1.7E100"},
        {4.9e-324, "5.E-324"},
        {DBL_MIN, "2.2250738585072014E-308"},
        {-DBL_MAX, "-1.7976931348623157E308"},
        {9007199254740993., "9007199254740992."},
    };
    char room[text::kRealRoom];
    for (const auto& param : kCases) EXPECT_EQ(written(param.value, room), param.text);
}

} // namespace
