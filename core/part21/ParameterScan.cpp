#include "part21/ParameterScan.h"

#include "part21/Lexer.h"

#include <bit>
#include <cstdint>

#ifdef __SSE2__
#include <immintrin.h>
#endif

namespace KP_SDAI {

namespace {

/// Character by character, whatever records hold; see ParameterScan::Pass.
ParameterScan::Result passSlowly(const char*& place, const char* end) {
    using Result = ParameterScan::Result;
    int depth = 0;
    bool canBeEmpty = true; // what comes next may be a ')'
    bool isBegun = true;    // some parameter stands before the next ',' or ')'
    for (const char* p = place; p < end;) {
        const char c = *p;
        if (static_cast<unsigned char>(c) <= ' ') {
            ++p;
            continue;
        }
        if (lexer::isComment(p)) {
            p = lexer::commentEnd(p, end);
            if (!p) return Result::cut;
            continue;
        }
        if (depth == 0 && p != place) {
            if (c != ';') return Result::odd;
            place = p + 1;
            return Result::sound;
        }
        switch (c) {
        case '\'': {
            const char* const text = p;
            p = KpStepText::stringEnd(p + 1, end);
            if (!p) return Result::cut;
            if (lexer::holdsRecordLine(text, p)) return Result::odd;
            isBegun = true;
            continue;
        }
        case '(':
            ++depth;
            isBegun = false;
            canBeEmpty = true;
            break;
        case ',':
            if (!isBegun) return Result::odd;
            isBegun = canBeEmpty = false;
            break;
        case ')':
            if (!isBegun && !canBeEmpty) return Result::odd;
            --depth;
            isBegun = true;
            break;
        case ';':
        case '=':
        case '\\': return Result::odd;
        default: isBegun = true;
        }
        ++p;
    }
    return Result::cut;
}

#ifdef __SSE2__

/// Which of the characters of a block, as many as Bits has, are what is looked for, a bit each.
struct Blocks {
    using Bits = std::uint32_t;
    template <class Find>
    static Bits bits(const char* p, Find find) {
        const auto* const parts = reinterpret_cast<const __m128i*>(p);
        const int low = _mm_movemask_epi8(find(_mm_loadu_si128(parts)));
        const int high = _mm_movemask_epi8(find(_mm_loadu_si128(parts + 1)));
        return static_cast<Bits>(low) | static_cast<Bits>(high) << 16;
    }
    static Bits are(const char* p, char c) {
        return bits(p, [c](__m128i part) { return _mm_cmpeq_epi8(part, _mm_set1_epi8(c)); });
    }
    static Bits areAtMost(const char* p, char c) {
        return bits(p, [c](__m128i part) { return _mm_cmpeq_epi8(_mm_min_epu8(part, _mm_set1_epi8(c)), part); });
    }
};

#define KP_WIDE [[gnu::target("avx512bw,bmi,popcnt")]]

/// The same for processors that look at 64 characters at once, where nearly all records end.
struct WideBlocks {
    using Bits = std::uint64_t;
    KP_WIDE static Bits are(const char* p, char c) {
        return _mm512_cmpeq_epi8_mask(_mm512_loadu_si512(p), _mm512_set1_epi8(c));
    }
    KP_WIDE static Bits areAtMost(const char* p, char c) {
        return _mm512_cmple_epu8_mask(_mm512_loadu_si512(p), _mm512_set1_epi8(c));
    }
};

/// For each bit whether an odd number of them is set up to there.
template <class Bits>
inline Bits parity(Bits bits) {
    for (unsigned shift = 1; shift < 8 * sizeof(Bits); shift *= 2) bits ^= bits << shift;
    return bits;
}

/// Moves bits that stand at the start of a run of blanks behind it. `carry` becomes true where a run does not end.
template <class Bits>
inline Bits behindBlanks(Bits bits, Bits blanks, bool& carry) {
    const Bits starts = bits & blanks;
    const Bits sum = starts + blanks;
    carry |= sum < starts;
    return (bits & ~blanks) | (starts ? sum & ~blanks : 0);
}

/// Whether as many bits are set in both.
KP_WIDE inline bool areAsMany(std::uint64_t a, std::uint64_t b) {
    return std::popcount(a) == std::popcount(b);
}
/// Without the instruction, which not every processor has.
inline bool areAsMany(std::uint32_t a, std::uint32_t b) {
    std::uint64_t both = a | std::uint64_t{b} << 32;
    both -= (both >> 1) & 0x5555555555555555u;
    both = (both & 0x3333333333333333u) + ((both >> 2) & 0x3333333333333333u);
    both = (both + (both >> 4)) & 0x0F0F0F0F0F0F0F0Fu;
    both += both >> 8;
    both += both >> 16;
    return (both & 0xFF) == ((both >> 32) & 0xFF);
}

template <class Bits>
inline Bits lowest(Bits bits) {
    return bits & (~bits + 1);
}
/// All bits above the highest one.
template <class Bits>
inline Bits above(Bits bits) {
    return bits ? ~(~Bits{0} >> std::countl_zero(bits)) : ~Bits{0};
}

/// A block at a time.
template <class Block>
[[gnu::always_inline]] inline ParameterScan::Result passBlocks(const char*& place, const char* end) {
    using Result = ParameterScan::Result;
    using Bits = typename Block::Bits;
    constexpr Bits kAll = ~Bits{0};
    constexpr unsigned kBlock = 8 * sizeof(Bits);
    constexpr unsigned kLast = kBlock - 1;
    Bits inText = 0;           // all: the block begins within a text
    Bits lastOdd = 0;          // lowest bit: so was the character before the block
    bool isAfterComma = false; // only blanks stand between a ',' and the block
    bool isAfterOpen = false;  // the same of a '('
    bool isClosed = false;
    std::uint32_t depth = 0;
    for (const char* p = place; p < end; p += kBlock) {
        const Bits quotes = Block::are(p, '\'');
        Bits text = inText;
        if (quotes) text ^= parity(quotes);
        const Bits semicolons = Block::are(p, ';') & ~text;
        const Bits within = semicolons ? lowest(semicolons) - 1 : kAll;
        const Bits outside = within & ~text;
        // Slash and equals sign do no harm in a text, a backslash may make an apostrophe mean something else, and a
        // line that begins in a text may look like a record.
        const Bits odd = Block::are(p, '/') | Block::are(p, '\\') | Block::are(p, '=');
        const Bits blanksAnywhere = Block::areAtMost(p, ' '); // and whatever else is below them
        if ((odd & outside) | (((odd << 1) | lastOdd) & quotes & within) |
            ((blanksAnywhere & text & within) ? Block::areAtMost(p, ' ' - 1) & text & within : 0))
            return passSlowly(place, end);
        lastOdd = odd >> kLast;

        const Bits blanks = blanksAnywhere & outside;
        const Bits opens = Block::are(p, '(') & outside;
        const Bits closes = Block::are(p, ')') & outside;
        const Bits commas = Block::are(p, ',') & outside;
        Bits afterCommas = (commas << 1) | (isAfterComma ? 1 : 0);
        Bits afterOpens = (opens << 1) | (isAfterOpen ? 1 : 0);
        isAfterComma = (commas >> kLast) != 0;
        isAfterOpen = (opens >> kLast) != 0;
        if ((afterCommas | afterOpens) & blanks) {
            afterCommas = behindBlanks(afterCommas, blanks, isAfterComma);
            afterOpens = behindBlanks(afterOpens, blanks, isAfterOpen);
        }
        if ((afterCommas & (commas | closes)) | (afterOpens & commas)) return Result::odd;

        Bits behind = isClosed ? kAll : 0; // what stands behind the last ')'
        if (depth == 0 && !isClosed && semicolons && lowest(closes) > opens && areAsMany(opens, closes)) {
            isClosed = true; // nearly always: all '(' stand before all ')'
            behind = above(closes);
        } else {
            for (Bits left = opens | closes; left; left &= left - 1) {
                if (isClosed) return Result::odd;
                const Bits bit = lowest(left);
                depth += opens & bit ? 1u : ~0u;
                if (depth == 0) {
                    isClosed = true;
                    behind = above(bit);
                }
            }
        }
        if (behind & within & ~blanks) return Result::odd;
        if (semicolons) {
            if (!isClosed) return Result::odd;
            place = p + std::countr_zero(semicolons) + 1;
            return Result::sound;
        }
        inText = text >> kLast ? kAll : 0;
    }
    return Result::cut;
}

ParameterScan::Result passNarrow(const char*& place, const char* end) {
    return passBlocks<Blocks>(place, end);
}
KP_WIDE ParameterScan::Result passWide(const char*& place, const char* end) {
    return passBlocks<WideBlocks>(place, end);
}

#endif

} // namespace

std::vector<ParameterScan::Pass> ParameterScan::ways() {
    std::vector<Pass> ways{passSlowly};
#ifdef __SSE2__
    ways.push_back(passNarrow);
    if (__builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("popcnt"))
        ways.push_back(passWide);
#endif
    return ways;
}

} // namespace KP_SDAI
