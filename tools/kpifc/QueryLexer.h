#pragma once

#include "QueryExpression.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kpifc::query {

struct Token {
    enum class Kind { end, name, quoted, number, reference, sign };
    Kind kind = Kind::end;
    std::size_t at = 0;  ///< bytes before it
    std::size_t end = 0; ///< bytes up to its end
    std::string text;    ///< of names, quoted texts without their quotes, signs
    double number = 0;
    std::uint64_t reference = 0;
    bool ignoresCase = false; ///< an i stands behind a quoted text

    bool isSign(std::string_view sign) const { return kind == Kind::sign && text == sign; }
    /// A word of the language, in any letter case.
    bool isWord(std::string_view word) const;
    /// For messages: what was found.
    std::string found() const;
};

/// Words of an expression, one after the other.
class Lexer {
public:
    explicit Lexer(std::string_view text) : m_text(text) { read(); }

    const Token& token() const { return m_token; }
    Token take() {
        Token taken = std::move(m_token);
        read();
        return taken;
    }
    std::string_view text() const { return m_text; }
    /// Reads on from a place.
    void goTo(std::size_t at) {
        m_next = at;
        read();
    }

private:
    void read();
    void quoted(char quote);
    void numberOrReference();

    std::string_view m_text;
    std::size_t m_next = 0;
    Token m_token;
};

} // namespace kpifc::query
