#pragma once

#include <KpIfcCore/KpStepText.h>

#include <cstring>

/// Steps over what separates tokens and over whole tokens, between `p` and `end`, where a zero stands.
namespace KP_SDAI::lexer {

inline bool isComment(const char* p) {
    return *p == '/' && p[1] == '*';
}

/// Behind a comment that begins at `p`; null where it does not end.
inline const char* commentEnd(const char* p, const char* end) {
    for (p += 2; p < end; ++p) {
        p = static_cast<const char*>(std::memchr(p, '*', static_cast<std::size_t>(end - p)));
        if (!p) return nullptr;
        if (p[1] == '/') return p + 2;
    }
    return nullptr;
}

/// Behind blanks, line ends, comments and the print control directives \N\ and \F\. Stops at a comment without end.
inline const char* skipBlanks(const char* p, const char* end) {
    for (;;) {
        while (static_cast<unsigned char>(*p) <= ' ' && p != end) ++p;
        if (isComment(p)) {
            const char* behind = commentEnd(p, end);
            if (!behind) return p;
            p = behind;
        } else if (*p == '\\' && (p[1] == 'N' || p[1] == 'F') && p[2] == '\\') {
            p += 3;
        } else {
            return p;
        }
    }
}

inline bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// True where [p, end) spells an integer.
inline bool isInteger(const char* p, const char* end) {
    if (*p == '+' || *p == '-') ++p;
    while (p < end && isDigit(*p)) ++p;
    return p == end;
}

inline bool endsParameter(char c) {
    return c == ',' || c == ')';
}

/// True where a line begins like a record: "#12=".
inline bool beginsRecord(const char* line, const char* end) {
    while (*line == ' ' || *line == '\t') ++line;
    if (line >= end || *line != '#' || !isDigit(line[1])) return false;
    ++line;
    while (isDigit(*line)) ++line;
    while (*line == ' ') ++line;
    return *line == '=';
}

/// True where a line in [p, end) begins like a record.
inline bool holdsRecordLine(const char* p, const char* end) {
    while ((p = static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)))))
        if (beginsRecord(++p, end)) return true;
    return false;
}

/// The ',' or ')' that ends the parameter that begins at `p`, at its own level of parentheses; null where a ';' or the
/// end comes first, or a line that looks like the next record, even in a text: there an apostrophe is missing.
inline const char* parameterEnd(const char* p, const char* end) {
    int depth = 0;
    while (p < end) {
        switch (*p) {
        case '\'': {
            const char* const text = p;
            p = KpStepText::stringEnd(p + 1, end);
            if (!p || holdsRecordLine(text, p)) return nullptr;
            continue;
        }
        case '/':
            if (isComment(p)) {
                p = commentEnd(p, end);
                if (!p) return nullptr;
                continue;
            }
            break;
        case '(': ++depth; break;
        case ')':
            if (depth == 0) return p;
            --depth;
            break;
        case ',':
            if (depth == 0) return p;
            break;
        case ';': return nullptr;
        case '\n':
            if (beginsRecord(p + 1, end)) return nullptr;
            break;
        default: break;
        }
        ++p;
    }
    return nullptr;
}

/// Behind the next ';' outside strings and comments; null where none comes.
inline const char* recordEnd(const char* p, const char* end) {
    while (p < end) {
        if (*p == ';') return p + 1;
        if (*p == '\'') {
            p = KpStepText::stringEnd(p + 1, end);
        } else if (isComment(p)) {
            p = commentEnd(p, end);
        } else {
            ++p;
        }
        if (!p) return nullptr;
    }
    return nullptr;
}

/// What must be written next behind the text of a record that could not be read, so that it ends there and takes
/// nothing that follows along: its ';', and the end of a text or comment that it leaves open. With the comment closed
/// it could be read and take the name of another; a text behind it keeps it from that.
inline const char* missingEnd(const char* p, const char* end) {
    const char* missing = ";";
    while (p < end) {
        missing = ";";
        if (*p == '\'') {
            p = KpStepText::stringEnd(p + 1, end);
            if (!p) return "';";
        } else if (isComment(p)) {
            p = commentEnd(p, end);
            if (!p) return "*/ 'comment without end';";
        } else if (*p++ == ';') {
            missing = "";
        }
    }
    return missing;
}

inline bool isKeywordStart(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '!';
}
inline bool isKeywordPart(char c) {
    return isKeywordStart(c) || isDigit(c) || c == '-';
}

inline const char* keywordEnd(const char* p) {
    while (isKeywordPart(*p)) ++p;
    return p;
}

} // namespace KP_SDAI::lexer
