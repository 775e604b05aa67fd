#include "QueryLexer.h"

#include "Utf8.h"

#include <KpIfcCore/KpTextCase.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

using namespace KP_SDAI;

namespace kpifc::query {

QueryError::QueryError(std::string_view expression, std::size_t at, const std::string& what)
    : Failure([&] {
          const std::string before = printable(expression.substr(0, at));
          return fmt::format("at column {}: {}\n  {}\n  {:>{}}", displayWidth(before) + 1, what, printable(expression),
                             '^', displayWidth(before) + 1);
      }()) {}

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Letters of any alphabet: names of properties have them.
bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

} // namespace

bool Token::isWord(std::string_view word) const {
    return kind == Kind::name && equalNoCase(text.data(), text.size(), std::string(word).c_str());
}

std::string Token::found() const {
    return kind == Kind::end ? "found the end" : fmt::format("found {}", printable(text));
}

void Lexer::read() {
    m_next = std::min(m_text.find_first_not_of(" \t\r\n", m_next), m_text.size());
    m_token = Token();
    m_token.at = m_next;
    if (m_next < m_text.size()) {
        const char c = m_text[m_next];
        const char after = m_next + 1 < m_text.size() ? m_text[m_next + 1] : '\0';
        if (c == '"' || c == '\'') {
            quoted(c);
        } else if (isDigit(c) || ((c == '-' || c == '+' || c == '#') && isDigit(after))) {
            numberOrReference();
        } else if (isLetter(c)) {
            m_token.kind = Token::Kind::name;
            while (m_next < m_text.size() && (isLetter(m_text[m_next]) || isDigit(m_text[m_next]))) {
                ++m_next;
            }
        } else {
            m_token.kind = Token::Kind::sign;
            const std::string_view two = m_text.substr(m_next, 2);
            m_next += two == "!=" || two == "<=" || two == ">=" || two == "!~" ? 2 : 1;
        }
        if (m_token.kind != Token::Kind::quoted) {
            m_token.text = m_text.substr(m_token.at, m_next - m_token.at);
        }
    }
    m_token.end = m_next;
}

/// A quote in a text is written twice.
void Lexer::quoted(char quote) {
    m_token.kind = Token::Kind::quoted;
    for (;;) {
        const std::size_t end = m_text.find(quote, m_next + 1);
        if (end == std::string_view::npos) {
            throw QueryError(m_text, m_token.at, fmt::format("this text has no end, expected {}", quote));
        }
        m_token.text += m_text.substr(m_next + 1, end - m_next - 1);
        m_next = end + 1;
        if (m_next == m_text.size() || m_text[m_next] != quote) {
            break;
        }
        m_token.text += quote;
    }
    const bool hasFlag = m_text.substr(m_next).starts_with('i');
    const char behind = m_next + 1 < m_text.size() ? m_text[m_next + 1] : ' ';
    if (hasFlag && !isLetter(behind) && !isDigit(behind)) {
        m_token.ignoresCase = true;
        ++m_next;
    }
}

void Lexer::numberOrReference() {
    const bool isReference = m_text[m_next] == '#';
    const char* const start = m_text.data() + m_next + (isReference || m_text[m_next] == '+');
    const char* const end = m_text.data() + m_text.size();
    const auto result =
        isReference ? std::from_chars(start, end, m_token.reference) : std::from_chars(start, end, m_token.number);
    m_token.kind = isReference ? Token::Kind::reference : Token::Kind::number;
    m_next = static_cast<std::size_t>(result.ptr - m_text.data());
    if (result.ec != std::errc() || (m_next < m_text.size() && isLetter(m_text[m_next]))) {
        throw QueryError(m_text, m_token.at,
                         isReference ? "found no instance name, expected one such as #15"
                                     : "found no number, expected one such as 2.5; names with digits in front and "
                                       "texts stand in quotes");
    }
}

} // namespace kpifc::query
