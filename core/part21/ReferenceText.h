#pragma once

#include "part21/Lexer.h"

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

/// References as they stand in source text.
namespace KP_SDAI {

/// Calls `visit(std::uint64_t name, std::string_view text)` for every "#n" outside texts and comments, in order.
template <class Visit>
void visitReferenceTexts(const std::string& source, Visit&& visit) {
    const char* p = source.c_str();
    const char* const end = p + source.size();
    while (p && p < end) {
        if (*p == '\'') {
            p = KpStepText::stringEnd(p + 1, end);
        } else if (lexer::isComment(p)) {
            p = lexer::commentEnd(p, end);
        } else if (*p == '#' && lexer::isDigit(p[1])) {
            std::uint64_t name = 0;
            const auto [behind, error] = std::from_chars(p + 1, end, name);
            if (error == std::errc() && name != 0)
                visit(name, std::string_view(p, static_cast<std::size_t>(behind - p)));
            p = behind;
        } else {
            ++p;
        }
    }
}

/// The same text with what `rename(std::uint64_t name)` gives in place of every reference.
template <class Rename>
std::string withReferencesRenamed(const std::string& source, Rename&& rename) {
    std::string renamed;
    const char* rest = source.c_str();
    visitReferenceTexts(source, [&](std::uint64_t name, std::string_view text) {
        renamed.append(rest, text.data());
        renamed += rename(name);
        rest = text.data() + text.size();
    });
    return renamed.append(rest, source.c_str() + source.size());
}

} // namespace KP_SDAI
