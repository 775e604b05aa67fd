#include "part21/Sections.h"

#include "check/HeaderForms.h"
#include "part21/Lexer.h"
#include "part21/StepValueText.h"

#include <algorithm>

namespace KP_SDAI {

namespace {

using Kind = KpStepValue::Kind;

/// Steps through a statement, over what separates tokens.
class Scan {
public:
    explicit Scan(std::string_view text) : m_text(text), m_p(m_text.c_str()), m_end(m_p + m_text.size()) { blanks(); }

    bool take(char c) {
        if (*m_p != c) return false;
        ++m_p;
        blanks();
        return true;
    }
    /// A name: digits, or a keyword in upper case.
    bool takeName() {
        const char* const begin = m_p;
        while (lexer::isDigit(*m_p) || (*m_p >= 'A' && *m_p <= 'Z') || *m_p == '_') ++m_p;
        const bool found = m_p != begin;
        blanks();
        return found;
    }
    /// The name of a tag, in any letter case.
    bool takeTag() {
        const char* const begin = m_p;
        m_p = lexer::keywordEnd(m_p);
        const bool found = m_p != begin;
        blanks();
        return found;
    }
    /// A fragment or resource in angle brackets.
    bool takeBracketed() {
        if (*m_p != '<') return false;
        const char* p = m_p + 1;
        while (*p > ' ' && *p != '<' && *p != '>') ++p;
        if (*p != '>' || p == m_p + 1) return false;
        m_p = p + 1;
        blanks();
        return true;
    }
    /// One value, up to one of `closing`.
    bool takeValue(std::string_view closing) {
        if (*m_p == '<') return takeBracketed();
        if (*m_p == '@') return take('@') && takeName();
        const char* p = m_p;
        int depth = 0;
        while (p < m_end && (depth > 0 || closing.find(*p) == std::string_view::npos)) {
            if (*p == '\'') {
                p = KpStepText::stringEnd(p + 1, m_end);
                if (!p) return false;
                continue;
            }
            depth += *p == '(' ? 1 : *p == ')' ? -1 : 0;
            ++p;
        }
        KpStepValue value;
        if (!KpStepValue::read({m_p, static_cast<std::size_t>(p - m_p)}, value)) return false;
        m_p = p;
        blanks();
        return true;
    }
    bool atEnd() const { return m_p == m_end; }

private:
    void blanks() { m_p = lexer::skipBlanks(m_p, m_end); }

    std::string m_text; // a zero stands behind it
    const char* m_p;
    const char* m_end;
};

bool isText(const KpStepValue& value) {
    return value.kind == Kind::string;
}

} // namespace

std::string DataSections::next(std::string_view opening) {
    ++m_count;
    const std::string text(opening);
    const char* const end = text.c_str() + text.size();
    const char* p = lexer::skipBlanks(lexer::keywordEnd(text.c_str()), end);
    if (*p == ';') {
        m_hasUnnamed = true;
        return m_count == 1 ? "" : "the name and the schemas of a further section";
    }
    std::vector<KpStepValue> values;
    unsigned issues = 0;
    p = *p == '(' ? readStepValues(p + 1, end, values, issues) : nullptr;
    const bool isWellFormed = p && *lexer::skipBlanks(p, end) == ';' && values.size() == 2 && isText(values[0]) &&
                              values[1].kind == Kind::list && !values[1].items.empty() &&
                              std::all_of(values[1].items.begin(), values[1].items.end(), isText);
    if (!isWellFormed) return "a name and a list of schemas";
    if (!m_names.insert(values[0].text).second) return "another name than that of a section before";
    if (m_hasUnnamed) return "a name and the schemas of the section before, too";
    for (const KpStepValue& schema : values[1].items) {
        const auto isNamed = [&](const std::string& one) { return schemaNameOf(one) == schemaNameOf(schema.text); };
        if (std::none_of(m_schemas.begin(), m_schemas.end(), isNamed)) return "schemas that FILE_SCHEMA names";
    }
    return "";
}

bool SectionItems::next(std::string_view statement) {
    constexpr std::size_t kLongest = 4096; // of items with semicolons inside, so that nothing is looked at too often
    m_text += statement;
    const bool isWhole = isItem();
    const std::size_t open = m_text.rfind('<');
    const bool isOpen = open != std::string::npos && m_text.find('>', open) == std::string::npos;
    if (!isWhole && isOpen && m_text.size() <= kLongest) return true;
    m_text.clear();
    return isWhole;
}

bool SectionItems::isItem() const {
    Scan scan(m_text);
    if (m_isReference) {
        const bool isNamed = (scan.take('#') || scan.take('@')) && scan.takeName();
        return isNamed && scan.take('=') && scan.takeBracketed() && scan.take(';') && scan.atEnd();
    }
    if (!scan.takeBracketed() || !scan.take('=') || !scan.takeValue("{;")) return false;
    while (scan.take('{'))
        if (!scan.takeTag() || !scan.take(':') || !scan.takeValue("}") || !scan.take('}')) return false;
    return scan.take(';') && scan.atEnd();
}

bool isSignature(std::string_view statement) {
    constexpr std::string_view kBegin = "SIGNATURE";
    constexpr std::string_view kEnd = "ENDSEC;";
    if (!statement.starts_with(kBegin) || !statement.ends_with(kEnd)) return false;
    statement.remove_prefix(kBegin.size());
    statement.remove_suffix(kEnd.size());
    return std::all_of(statement.begin(), statement.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || lexer::isDigit(c) || c == '+' || c == '/' ||
               c == '=' || c == ';' || static_cast<unsigned char>(c) <= ' ';
    });
}

} // namespace KP_SDAI
