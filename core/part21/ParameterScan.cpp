#include "part21/ParameterScan.h"

#include "part21/Lexer.h"

#include <bit>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace KP_SDAI {

namespace {

using Bits = std::uint32_t;
constexpr std::size_t kBlock = 32;
constexpr Bits kAll = ~Bits{0};
constexpr unsigned kLast = kBlock - 1;

/// Which characters of a block are of what kind, a bit each.
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

inline Kinds kindsOf(const char* p) {
    const auto* const place = reinterpret_cast<const __m128i*>(p);
    const __m128i low = _mm_loadu_si128(place);
    const __m128i high = _mm_loadu_si128(place + 1);
    const auto bits = [&](auto find) {
        return static_cast<Bits>(_mm_movemask_epi8(find(low))) | static_cast<Bits>(_mm_movemask_epi8(find(high))) << 16;
    };
    const auto isOf = [&](char c) {
        return bits([c](__m128i block) { return _mm_cmpeq_epi8(block, _mm_set1_epi8(c)); });
    };
    Kinds kinds;
    kinds.quotes = isOf('\'');
    kinds.opens = isOf('(');
    kinds.closes = isOf(')');
    kinds.commas = isOf(',');
    kinds.semicolons = isOf(';');
    kinds.blanks = bits([](__m128i block) { return _mm_cmpeq_epi8(_mm_min_epu8(block, _mm_set1_epi8(' ')), block); });
    kinds.odd = bits([](__m128i block) {
        return _mm_or_si128(
            _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('/')), _mm_cmpeq_epi8(block, _mm_set1_epi8('\\'))),
            _mm_cmpeq_epi8(block, _mm_set1_epi8('=')));
    });
    return kinds;
}

#else

inline Kinds kindsOf(const char* p) {
    Kinds kinds;
    for (unsigned i = 0; i < kBlock; ++i) {
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

#endif

/// For each bit whether an odd number of them is set up to there.
inline Bits parity(Bits bits) {
    for (unsigned shift = 1; shift < kBlock; shift *= 2) bits ^= bits << shift;
    return bits;
}

/// Moves bits that stand at the start of a run of blanks behind it. `carry` becomes true where a run does not end.
inline Bits behindBlanks(Bits bits, Bits blanks, bool& carry) {
    const Bits starts = bits & blanks;
    const Bits sum = starts + blanks;
    carry |= sum < starts;
    return (bits & ~blanks) | (starts ? sum & ~blanks : 0);
}

/// True where as many bits are set in one as in the other; without the instruction, which not every processor has.
inline bool areAsMany(Bits a, Bits b) {
    std::uint64_t both = a | std::uint64_t{b} << 32;
    both -= (both >> 1) & 0x5555555555555555u;
    both = (both & 0x3333333333333333u) + ((both >> 2) & 0x3333333333333333u);
    both = (both + (both >> 4)) & 0x0F0F0F0F0F0F0F0Fu;
    both += both >> 8;
    both += both >> 16;
    return (both & 0xFF) == ((both >> 32) & 0xFF);
}

inline Bits lowest(Bits bits) {
    return bits & (~bits + 1);
}
/// All bits above the highest one.
inline Bits above(Bits bits) {
    return bits ? ~(kAll >> std::countl_zero(bits)) : kAll;
}

/// The same as pass() for whatever records hold, character by character.
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

} // namespace

ParameterScan::Result ParameterScan::pass(const char*& place, const char* end) {
    Bits inText = 0;           // all: the block begins within a text
    Bits lastOdd = 0;          // lowest bit: so was the character before the block
    bool isAfterComma = false; // only blanks stand between a ',' and the block
    bool isAfterOpen = false;  // the same of a '('
    bool isClosed = false;
    std::uint32_t depth = 0;
    for (const char* p = place; p < end; p += kBlock) {
        const Kinds kinds = kindsOf(p);
        Bits text = inText;
        if (kinds.quotes) text ^= parity(kinds.quotes);
        const Bits semicolons = kinds.semicolons & ~text;
        const Bits within = semicolons ? lowest(semicolons) - 1 : kAll;
        const Bits outside = within & ~text;
        // Slash and equals sign do no harm in a text, a backslash may make an apostrophe mean something else, and a
        // line that begins in a text may look like a record.
        if ((kinds.odd & outside) | (((kinds.odd << 1) | lastOdd) & kinds.quotes & within))
            return passSlowly(place, end);
        lastOdd = kinds.odd >> kLast;
        for (Bits left = kinds.blanks & text & within; left; left &= left - 1)
            if (p[std::countr_zero(left)] != ' ') return passSlowly(place, end);

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
                depth += opens & bit ? 1 : kAll;
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

} // namespace KP_SDAI
