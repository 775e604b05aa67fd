#pragma once

#include "part21/Lexer.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Steps over the most frequent tokens many characters at a time. Up to scan::kReach bytes from where they begin are
/// looked at, whatever they are, so only places in a Window, which has as many behind its end, will do.
namespace KP_SDAI::scan {

constexpr std::size_t kReach = 16;

/// Up to eight digits: how many there are, and the number that they spell.
struct Digits {
    unsigned count;
    std::uint32_t value;
};

inline Digits digits(const char* p) {
    if constexpr (std::endian::native != std::endian::little) {
        Digits run{0, 0};
        while (run.count < 8 && lexer::isDigit(p[run.count]))
            run.value = run.value * 10 + static_cast<unsigned>(p[run.count++] - '0');
        return run;
    }
    // All eight characters in one word, the first one lowest; pairs of digits are joined to pairs of pairs and so on.
    constexpr std::uint64_t kHigh = 0xF0F0F0F0F0F0F0F0u;
    std::uint64_t word;
    std::memcpy(&word, p, sizeof word);
    const std::uint64_t others = ((word & kHigh) | ((word + 0x0606060606060606u) & kHigh) >> 4) ^ 0x3333333333333333u;
    const unsigned count = static_cast<unsigned>(std::countr_zero(others)) / 8;
    if (count == 0) return {0, 0};
    word <<= 64 - 8 * count; // what is missing in front counts as zeros
    word &= 0x0F0F0F0F0F0F0F0Fu;
    word = (word * 10 + (word >> 8)) & 0x00FF00FF00FF00FFu;
    word = (word * 100 + (word >> 16)) & 0x0000FFFF0000FFFFu;
    word = word * 10000 + (word >> 32);
    return {count, static_cast<std::uint32_t>(word)};
}

/// Behind the digits of an instance name of up to eight at `p`, of which it takes the number; null where there are none
/// or more.
inline const char* name(const char* p, std::uint64_t& name) {
    const Digits run = digits(p);
    name = run.value;
    p += run.count;
    return run.count == 0 || lexer::isDigit(*p) ? nullptr : p;
}

/// Behind the last character of a keyword.
inline const char* keywordEnd(const char* p) {
#if defined(__SSE2__)
    for (;; p += 16) {
        const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        // A character less the first one of a range lies in it where it is not above the range's length.
        const __m128i letter = _mm_sub_epi8(text, _mm_set1_epi8('A'));
        const __m128i digit = _mm_sub_epi8(text, _mm_set1_epi8('0'));
        const __m128i isLetter = _mm_cmpeq_epi8(_mm_min_epu8(letter, _mm_set1_epi8(25)), letter);
        const __m128i isDigit = _mm_cmpeq_epi8(_mm_min_epu8(digit, _mm_set1_epi8(9)), digit);
        const auto others = ~static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(isLetter, isDigit))) & 0xFFFFu;
        if (others == 0) continue;
        p += std::countr_zero(others);
        break;
    }
#endif
    return lexer::keywordEnd(p); // the rarer ones
}

/// The first character of a text that is not printable ASCII, or an apostrophe, or a reverse solidus.
inline const char* plainEnd(const char* p) {
#if defined(__SSE2__)
    for (;; p += 16) {
        const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const __m128i isPrintable = _mm_cmpgt_epi8(text, _mm_set1_epi8(0x1F)); // signed: not above 0x7F
        const __m128i isSpecial = _mm_or_si128(
            _mm_cmpeq_epi8(text, _mm_set1_epi8(0x7F)),
            _mm_or_si128(_mm_cmpeq_epi8(text, _mm_set1_epi8('\'')), _mm_cmpeq_epi8(text, _mm_set1_epi8('\\'))));
        const auto plain = static_cast<unsigned>(_mm_movemask_epi8(_mm_andnot_si128(isSpecial, isPrintable)));
        if (plain != 0xFFFFu) return p + std::countr_one(plain);
    }
#else
    while (static_cast<unsigned char>(*p) >= ' ' && static_cast<unsigned char>(*p) < 0x7F && *p != '\'' && *p != '\\')
        ++p;
    return p;
#endif
}

} // namespace KP_SDAI::scan
