#pragma once

#include <KpIfcCore/KpStepText.h>

#include <cstring>

/// Steps over what separates tokens and over whole tokens, between `p` and `end`, where a zero stands.
namespace KP_SDAI::lexer {

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
        if (*p == '/' && p[1] == '*') {
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

/// The ',' or ')' that ends the parameter that begins at `p`, at its own level of parentheses; null where a ';' or the
/// end comes first.
inline const char* parameterEnd(const char* p, const char* end) {
    int depth = 0;
    while (p < end) {
        switch (*p) {
            case '\'':
                p = KpStepText::stringEnd(p + 1, end);
                if (!p) return nullptr;
                continue;
            case '/':
                if (p[1] == '*') {
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
        } else if (*p == '/' && p[1] == '*') {
            p = commentEnd(p, end);
        } else {
            ++p;
        }
        if (!p) return nullptr;
    }
    return nullptr;
}

/// What must be written behind a record's text so that it ends there and takes nothing that follows along: its ';', and
/// the end of a text or comment that it leaves open.
inline const char* missingEnd(const char* p, const char* end) {
    const char* missing = ";";
    while (p < end) {
        missing = ";";
        if (*p == '\'') {
            p = KpStepText::stringEnd(p + 1, end);
            if (!p) return "';";
        } else if (*p == '/' && p[1] == '*') {
            p = commentEnd(p, end);
            if (!p) return "*/;";
        } else if (*p++ == ';') {
            missing = "";
        }
    }
    return missing;
}

inline bool isDigit(char c) { return c >= '0' && c <= '9'; }
inline bool isKeywordStart(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '!'; }
inline bool isKeywordPart(char c) { return isKeywordStart(c) || isDigit(c) || c == '-'; }

inline const char* keywordEnd(const char* p) {
    while (isKeywordPart(*p)) ++p;
    return p;
}

}  // namespace KP_SDAI::lexer
