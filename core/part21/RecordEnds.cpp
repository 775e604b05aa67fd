#include "part21/RecordEnds.h"

#include "part21/Lexer.h"

#include <KpIfcCore/KpTextCase.h>

#include <cstddef>
#include <cstring>
#include <string>

namespace KP_SDAI {

namespace {

/// True where a line looks like the next record or the end of the section.
bool isRecordLine(const char* line, const char* end) {
    if (lexer::beginsRecord(line, end)) return true;
    while (*line == ' ' || *line == '\t') ++line;
    return end - line >= 7 && std::memcmp(line, "ENDSEC;", 7) == 0;
}

/// Behind the text or comment that begins at `p`, or else the character; null where it does not end.
const char* behindPiece(const char* p, const char* end) {
    if (*p == '\'') return KpStepText::stringEnd(p + 1, end);
    return lexer::isComment(p) ? lexer::commentEnd(p, end) : p + 1;
}

} // namespace

const char* nextRecordLine(const char* p, const char* end) {
    while (p < end) {
        p = static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)));
        if (!p) return nullptr;
        if (isRecordLine(++p, end)) return p;
    }
    return nullptr;
}

const char* damagedRecordEnd(const char* begin, const char* end) {
    for (std::ptrdiff_t reach = 256;; reach *= 4) {
        const char* const limit = end - begin > reach ? begin + reach : end;
        const char* const semicolon = lexer::recordEnd(begin, limit);
        const char* const line = nextRecordLine(begin + 1, semicolon ? semicolon : limit);
        if (line) return line;
        if (semicolon || limit == end) return semicolon;
    }
}

const char* wholeRecordEnd(const char* p, const char* end) {
    while (p && p < end) {
        if (*p == ';') return p + 1;
        if (*p == '\n' && isRecordLine(p + 1, end)) return p + 1;
        p = behindPiece(p, end);
    }
    return nullptr;
}

const char* openPiece(const char* p, const char* end) {
    while (p < end) {
        const char* const behind = behindPiece(p, end);
        if (!behind) return p;
        p = behind;
    }
    return nullptr;
}

bool isStatement(const char* begin, const char* end, std::string_view keyword) {
    return end - begin >= static_cast<std::ptrdiff_t>(keyword.size()) &&
           equalNoCase(begin, keyword.size(), std::string(keyword).c_str()) &&
           !lexer::isKeywordPart(begin[keyword.size()]);
}

} // namespace KP_SDAI
