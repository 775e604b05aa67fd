#pragma once

#include "facts/Diagnostics.h"
#include "facts/Lexer.h"
#include "facts/Syntax.h"

#include <string>
#include <string_view>

namespace kpifcgen::facts {

/// What is wrong with a line; ends the reading of that line only.
struct LineError {
    Diagnostic diagnostic;
};

/// Reads the tokens of one line from left to right. `expected` texts complete "expected ..., found ...".
class Cursor {
public:
    explicit Cursor(const Line& line) : m_tokens(line.tokens) {}

    const Token& peek() const { return m_tokens[m_next]; }
    bool atEnd() const { return peek().kind == TokenKind::EndOfLine; }

    /// Passes the next token if it is this word or mark.
    bool accept(std::string_view text);

    void expect(std::string_view text, std::string_view expected);
    void expectEnd();
    int number(std::string_view expected);
    Token word(std::string_view expected);

    /// A word that is not reserved.
    syntax::Name name(std::string_view expected);

    [[noreturn]] void fail(std::string_view expected) const;

private:
    Token take() { return m_tokens[atEnd() ? m_next : m_next++]; }

    const std::vector<Token>& m_tokens;
    std::size_t m_next = 0;
};

} // namespace kpifcgen::facts
