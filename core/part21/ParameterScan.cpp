#include "part21/ParameterScan.h"

#include "part21/Lexer.h"

#include <bit>
#include <cstdint>

#ifdef __SSE2__
#include <immintrin.h>
#endif

namespace KP_SDAI {

namespace {

/// Which characters of a block are of what kind, a bit each. A block has as many characters as Bits.
template <class Bits>
struct Kinds {
    Bits quotes = 0;
    Bits opens = 0;
    Bits closes = 0;
    Bits commas = 0;
    Bits semicolons = 0;
    Bits blanks = 0; ///< and whatever else is below them
    Bits odd = 0;    ///< what does not stand in plain records outside texts: / \ =
};

#ifdef __SSE2__

struct Blocks {
    using Bits = std::uint32_t;
    template <class Find>
    static Bits bits(const char* p, Find find) {
        const auto* const parts = reinterpret_cast<const __m128i*>(p);
        const int low = _mm_movemask_epi8(find(_mm_loadu_si128(parts)));
        const int high = _mm_movemask_epi8(find(_mm_loadu_si128(parts + 1)));
        return static_cast<Bits>(low) | static_cast<Bits>(high) << 16;
    }
    static __m128i isOf(__m128i part, char c) { return _mm_cmpeq_epi8(part, _mm_set1_epi8(c)); }
    static Bits are(const char* p, char c) {
        return bits(p, [c](__m128i part) { return isOf(part, c); });
    }
    static Bits areAtMost(const char* p, char c) {
        return bits(p, [c](__m128i part) { return _mm_cmpeq_epi8(_mm_min_epu8(part, _mm_set1_epi8(c)), part); });
    }
    static Kinds<Bits> kinds(const char* p) {
        return {.quotes = are(p, '\''),
                .opens = are(p, '('),
                .closes = are(p, ')'),
                .commas = are(p, ','),
                .semicolons = are(p, ';'),
                .blanks = areAtMost(p, ' '),
                .odd = bits(p, [](__m128i part) {
                    return _mm_or_si128(_mm_or_si128(isOf(part, '/'), isOf(part, '\\')), isOf(part, '='));
                })};
    }
};

#define KP_WIDE [[gnu::target("avx512bw,bmi,bmi2,lzcnt,popcnt")]]

/// The same for processors that look at 64 characters at once, where nearly all records end.
struct WideBlocks {
    using Bits = std::uint64_t;
    KP_WIDE static Bits are(__m512i block, char c) { return _mm512_cmpeq_epi8_mask(block, _mm512_set1_epi8(c)); }
    KP_WIDE static Bits areAtMost(const char* p, char c) {
        return _mm512_cmple_epu8_mask(_mm512_loadu_si512(p), _mm512_set1_epi8(c));
    }
    KP_WIDE static Kinds<Bits> kinds(const char* p) {
        const __m512i block = _mm512_loadu_si512(p);
        return {.quotes = are(block, '\''),
                .opens = are(block, '('),
                .closes = are(block, ')'),
                .commas = are(block, ','),
                .semicolons = are(block, ';'),
                .blanks = areAtMost(p, ' '),
                .odd = are(block, '/') | are(block, '\\') | are(block, '=')};
    }
};

#else

struct Blocks {
    using Bits = std::uint32_t;
    static Kinds<Bits> kinds(const char* p) {
        Kinds<Bits> kinds;
        for (unsigned i = 0; i < 8 * sizeof(Bits); ++i) {
            const Bits bit = Bits{1} << i;
            switch (p[i]) {
            case '\'': kinds.quotes |= bit; break;
            case '(': kinds.opens |= bit; break;
            case ')': kinds.closes |= bit; break;
            case ',': kinds.commas |= bit; break;
            case ';': kinds.semicolons |= bit; break;
            case '/':
            case '\\':
            case '=': kinds.odd |= bit; break;
            default:
                if (static_cast<unsigned char>(p[i]) <= ' ') kinds.blanks |= bit;
            }
        }
        return kinds;
    }
    static Bits areAtMost(const char* p, char c) {
        Bits bits = 0;
        for (unsigned i = 0; i < 8 * sizeof(Bits); ++i)
            if (static_cast<unsigned char>(p[i]) <= c) bits |= Bits{1} << i;
        return bits;
    }
};

#endif

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
#ifdef KP_WIDE
KP_WIDE inline bool areAsMany(std::uint64_t a, std::uint64_t b) {
    return std::popcount(a) == std::popcount(b);
}
#endif
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

/// The same for whatever records hold, character by character.
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

/// See ParameterScan::Pass.
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
        const Kinds<Bits> kinds = Block::kinds(p);
        Bits text = inText;
        if (kinds.quotes) text ^= parity(kinds.quotes);
        const Bits semicolons = kinds.semicolons & ~text;
        const Bits within = semicolons ? lowest(semicolons) - 1 : kAll;
        const Bits outside = within & ~text;
        // Slash and equals sign do no harm in a text, a backslash may make an apostrophe mean something else, and a
        // line that begins in a text may look like a record.
        if ((kinds.odd & outside) | (((kinds.odd << 1) | lastOdd) & kinds.quotes & within) |
            ((kinds.blanks & text & within) ? Block::areAtMost(p, ' ' - 1) & text & within : 0))
            return passSlowly(place, end);
        lastOdd = kinds.odd >> kLast;

        const Bits blanks = kinds.blanks & outside;
        const Bits opens = kinds.opens & outside;
        const Bits closes = kinds.closes & outside;
        const Bits commas = kinds.commas & outside;
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

#ifdef KP_WIDE
KP_WIDE ParameterScan::Result passWide(const char*& place, const char* end) {
    return passBlocks<WideBlocks>(place, end);
}
#endif

ParameterScan::Result passNarrow(const char*& place, const char* end) {
    return passBlocks<Blocks>(place, end);
}

} // namespace

std::vector<ParameterScan::Pass> ParameterScan::ways() {
    std::vector<Pass> ways{passNarrow};
#ifdef KP_WIDE
    if (__builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("bmi2")) ways.push_back(passWide);
#endif
    return ways;
}

} // namespace KP_SDAI
