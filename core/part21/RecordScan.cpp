#include "part21/RecordScan.h"

#include "model/RootedEntity.h"
#include "part21/Lexer.h"
#include "part21/ParameterScan.h"
#include "part21/Scan.h"
#include "part21/UnreadWord.h"

#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace KP_SDAI {

namespace {

#ifdef KP_WINDOW_REACH // of fuzzers, whose files are small
constexpr std::size_t kPiece = KP_WINDOW_REACH;
#else
constexpr std::size_t kPiece = 256 * 1024;
#endif
/// Longer records are out of the ordinary.
constexpr std::size_t kLongest = 64 * kPiece;

/// Behind the blanks at `p`; comments stop it.
const char* behindBlanks(const char* p, const char* end) {
    while (static_cast<unsigned char>(*p) <= ' ' && p != end) ++p;
    return p;
}

/// The '(' behind a keyword, or what stands in its place.
const char* openBehind(const char* keyword) {
#ifdef __SSE2__
    const __m128i open = _mm_set1_epi8('(');
    const auto* const block = reinterpret_cast<const __m128i*>(keyword);
    const auto found = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_loadu_si128(block), open))) |
                       static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_loadu_si128(block + 1), open)))
                           << 16;
    if (found) return keyword + std::countr_zero(found);
#endif
    return lexer::keywordEnd(keyword);
}

} // namespace

RecordScan::RecordScan(ByteSource& source, ModelData& data, const EntityNames& names, ScannedGlobalIds& globalIds)
    : m_source(source), m_data(data), m_names(names), m_globalIds(globalIds), m_hasGlobalId(EntityNames::kSize),
      m_counts(EntityNames::kSize), m_buffer(kPiece + ParameterScan::kZeros) {
    const RootedEntity rooted(data.schema());
    for (std::size_t i = 0; i < EntityNames::kSize; ++i)
        m_hasGlobalId[i] = rooted.entity && names.at(i) && names.at(i)->isKindOf(rooted.entity);
}

/// Drops what stands before `place` and reads on; false at the end of the file and where a record is too long.
bool RecordScan::refill(const char*& place, ProgressMeter& progress) {
    if (m_hasEnded) return false;
    const auto dropped = static_cast<std::size_t>(place - m_buffer.data());
    const std::size_t kept = m_length - dropped;
    if (kept > kLongest) return false;
    std::memmove(m_buffer.data(), place, kept);
    m_offset += dropped;
    if (m_buffer.size() < kept + kPiece / 2 + ParameterScan::kZeros) m_buffer.resize(2 * m_buffer.size());
    const std::size_t room = m_buffer.size() - ParameterScan::kZeros - kept;
    const std::size_t got = m_source.readAt(m_offset + kept, m_buffer.data() + kept, room, m_error);
    m_length = kept + got;
    std::memset(m_buffer.data() + m_length, 0, ParameterScan::kZeros);
    m_hasEnded = got < room;
    place = m_buffer.data();
    progress.readTo(m_offset + m_length);
    m_data.expectRest(m_source.fileSize(), m_offset);
    return got != 0;
}

/// Goes to what is neither blank nor comment; false where the file ends before.
bool RecordScan::skipBlanks(const char*& place, ProgressMeter& progress) {
    for (;;) {
        place = behindBlanks(place, end());
        if (place < end() && lexer::isComment(place)) {
            if (const char* const behind = lexer::commentEnd(place, end())) {
                place = behind;
                continue;
            }
        } else if (place < end() && (*place != '/' || place + 1 < end())) {
            return true;
        }
        if (!refill(place, progress)) return false;
    }
}

/// Goes behind a statement that is nothing but a word.
bool RecordScan::passWord(const char*& place, std::string_view word, ProgressMeter& progress) {
    if (!skipBlanks(place, progress)) return false;
    if (static_cast<std::size_t>(end() - place) < word.size()) refill(place, progress);
    if (std::memcmp(place, word.data(), word.size()) != 0) return false; // zeros stand behind the end
    place += word.size();
    return true;
}

bool RecordScan::run(std::uint64_t offset, ProgressMeter& progress) {
    m_offset = offset;
    const char* place = m_buffer.data();
    passWord(place, "ENDSEC;", progress); // of the header section, which may lack it
    if (!passWord(place, "DATA;", progress) || !passRecords(place, progress)) return false;
    if (!passWord(place, "ENDSEC;", progress) || !passWord(place, "END-ISO-10303-21;", progress)) return false;
    do {
        place = behindBlanks(place, end());
        if (place != end()) return false; // text behind the end
    } while (refill(place, progress));
    return m_error.empty() && m_data.table.sparse().empty() && fileSize() <= UnreadWord::kLargestOffset;
}

/// Goes to what stands behind the last record; false where one is no plain one.
bool RecordScan::passRecords(const char*& place, ProgressMeter& progress) {
    for (;;) {
        place = behindBlanks(place, end());
        if (*place != '#') {
            if (!skipBlanks(place, progress)) return false;
            if (*place != '#') return true;
        }
        const char* p = place + 1;
        std::uint64_t name = 0;
        if (const char* const behind = scan::name(p, name)) {
            p = behind;
        } else {
            for (name = 0; lexer::isDigit(*p); ++p) name = name * 10 + static_cast<unsigned>(*p - '0');
        }
        const std::ptrdiff_t digits = p - place - 1;
        p = behindBlanks(p, end());
        const bool hasName = digits > 0 && digits <= 18 && name != 0 && *p == '=';
        const char* const keyword = hasName ? behindBlanks(p + 1, end()) : p;
        p = openBehind(keyword);
        const char* behindKeyword = p;
        if (*p == '(')
            while (behindKeyword > keyword && static_cast<unsigned char>(behindKeyword[-1]) <= ' ') --behindKeyword;
        else
            p = behindBlanks(p, end());
        if (hasName && *p == '(') {
            const std::size_t entity = m_names.indexOf({keyword, static_cast<std::size_t>(behindKeyword - keyword)});
            if (!m_names.at(entity)) return false;
            const char* const parameters = p;
            const ParameterScan::Result result = m_pass(p, end());
            if (result == ParameterScan::Result::odd) return false;
            if (result == ParameterScan::Result::sound) {
                KpIfcSlot* const slot = m_data.table.slot(name);
                if (slot->word != 0) return false; // the name is another one's
                const auto offset = m_offset + static_cast<std::uint64_t>(place - m_buffer.data());
                m_data.noteUnread(slot, name, UnreadWord::of(offset, entity));
                ++m_counts[entity];
                if (m_hasGlobalId[entity]) m_globalIds.note(name, parameters + 1);
                place = p;
                continue;
            }
        } else if (end() - place > 1024) {
            return false;
        }
        if (!refill(place, progress)) return false;
    }
}

} // namespace KP_SDAI
