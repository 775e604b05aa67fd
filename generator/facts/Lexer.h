#pragma once

#include "facts/Diagnostics.h"

#include <string_view>
#include <vector>

namespace kpifcgen::facts {

enum class TokenKind { Word, Number, Mark, EndOfLine };

/// Text views point into the text that was given to splitLines.
struct Token {
    TokenKind kind = TokenKind::EndOfLine;
    std::string_view text;
    Position at;
};

/// The tokens of one statement line; the last one is always EndOfLine.
struct Line {
    bool indented = false;
    std::vector<Token> tokens;
};

/// Splits a schema file into its lines; blank lines and lines that start with '#' are left out. Words are letters,
/// digits and underscores that start with a letter, numbers are digits, marks are one of ": = , . [ ] ( ) ?". A line
/// with any other character is reported and left out.
std::vector<Line> splitLines(std::string_view text, Diagnostics& diagnostics);

} // namespace kpifcgen::facts
