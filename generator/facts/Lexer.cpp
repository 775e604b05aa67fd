#include "facts/Lexer.h"

#include <cstdio>

namespace kpifcgen::facts {

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}
bool isMark(char c) {
    return std::string_view(":=,.[]()?").find(c) != std::string_view::npos;
}

std::string describeCharacter(char c) {
    const auto code = static_cast<unsigned char>(c);
    if (code > 0x20 && code < 0x7F) {
        return std::string("'") + c + "'";
    }
    char text[8];
    std::snprintf(text, sizeof text, "0x%02X", code);
    return text;
}

/// The token that starts at `begin`; one of kind EndOfLine where no token can start with that character.
Token readToken(std::string_view line, std::size_t begin, Position at) {
    std::size_t end = begin;
    auto kind = TokenKind::EndOfLine;
    if (isLetter(line[begin])) {
        kind = TokenKind::Word;
        while (end < line.size() && (isLetter(line[end]) || isDigit(line[end]) || line[end] == '_')) {
            ++end;
        }
    } else if (isDigit(line[begin])) {
        kind = TokenKind::Number;
        while (end < line.size() && isDigit(line[end])) {
            ++end;
        }
    } else if (isMark(line[begin])) {
        kind = TokenKind::Mark;
        ++end;
    }
    return {kind, line.substr(begin, end - begin), at};
}

} // namespace

std::vector<Line> splitLines(std::string_view text, Diagnostics& diagnostics) {
    std::vector<Line> lines;
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view content = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), content.size() + 1));
        if (content.starts_with('#')) {
            continue;
        }
        Line line{.indented = !content.empty() && isBlank(content.front()), .tokens = {}};
        bool sound = true;
        for (std::size_t at = 0; at < content.size() && sound;) {
            const Position position{number, static_cast<int>(at) + 1};
            if (isBlank(content[at])) {
                ++at;
                continue;
            }
            const Token token = readToken(content, at, position);
            sound = token.kind != TokenKind::EndOfLine;
            if (sound) {
                line.tokens.push_back(token);
                at += token.text.size();
            } else {
                diagnostics.push_back({position, "unexpected character " + describeCharacter(content[at])});
            }
        }
        if (sound && !line.tokens.empty()) {
            line.tokens.push_back({TokenKind::EndOfLine, {}, {number, static_cast<int>(content.size()) + 1}});
            lines.push_back(std::move(line));
        }
    }
    return lines;
}

} // namespace kpifcgen::facts
