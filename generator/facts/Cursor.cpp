#include "facts/Cursor.h"

#include <charconv>

namespace kpifcgen::facts {

bool Cursor::accept(std::string_view text) {
    const bool matches = !atEnd() && peek().text == text;
    if (matches) {
        take();
    }
    return matches;
}

void Cursor::expect(std::string_view text, std::string_view expected) {
    if (!accept(text)) {
        fail(expected);
    }
}

void Cursor::expectEnd() {
    if (!atEnd()) {
        fail("end of line");
    }
}

int Cursor::number(std::string_view expected) {
    if (peek().kind != TokenKind::Number) {
        fail(expected);
    }
    const Token token = take();
    int value = 0;
    if (std::from_chars(token.text.data(), token.text.data() + token.text.size(), value).ec != std::errc()) {
        throw LineError{{token.at, "number " + std::string(token.text) + " is too large"}};
    }
    return value;
}

Token Cursor::word(std::string_view expected) {
    if (peek().kind != TokenKind::Word) {
        fail(expected);
    }
    return take();
}

syntax::Name Cursor::name(std::string_view expected) {
    if (peek().kind == TokenKind::Word && isReserved(peek().text)) {
        throw LineError{{peek().at, "expected " + std::string(expected) + ", found the reserved word '" +
                                        std::string(peek().text) + "'"}};
    }
    const Token token = word(expected);
    return {std::string(token.text), token.at};
}

void Cursor::fail(std::string_view expected) const {
    const std::string found = atEnd() ? "the end of the line" : "'" + std::string(peek().text) + "'";
    throw LineError{{peek().at, "expected " + std::string(expected) + ", found " + found}};
}

} // namespace kpifcgen::facts
