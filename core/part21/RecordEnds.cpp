#include "part21/RecordEnds.h"

#include "part21/Lexer.h"

#include <KpIfcCore/KpTextCase.h>

#include <cstddef>
#include <cstring>
#include <string>

namespace KP_SDAI {

const char* nextRecordLine(const char* p, const char* end) {
    while (p < end) {
        p = static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)));
        if (!p) return nullptr;
        ++p;
        if (lexer::beginsRecord(p, end)) return p;
        const char* q = p;
        while (*q == ' ' || *q == '\t') ++q;
        if (end - q >= 7 && std::memcmp(q, "ENDSEC;", 7) == 0) return p;
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

const char* openComment(const char* p, const char* end) {
    while (p && p < end) {
        if (*p == '\'') {
            p = KpStepText::stringEnd(p + 1, end);
        } else if (lexer::isComment(p)) {
            const char* const behind = lexer::commentEnd(p, end);
            if (!behind) return p;
            p = behind;
        } else {
            ++p;
        }
    }
    return nullptr;
}

bool isStatement(const char* begin, const char* end, std::string_view keyword) {
    return end - begin >= static_cast<std::ptrdiff_t>(keyword.size()) &&
           equalNoCase(begin, keyword.size(), std::string(keyword).c_str()) &&
           !lexer::isKeywordPart(begin[keyword.size()]);
}

} // namespace KP_SDAI
