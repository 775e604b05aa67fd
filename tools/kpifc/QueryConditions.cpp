#include "QueryGrammar.h"
#include "Suggestions.h"
#include "Utf8.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

using namespace KP_SDAI;

namespace kpifc::query {

static Condition no(Condition condition) {
    Condition result{.kind = Condition::Kind::no};
    result.parts.push_back(std::move(condition));
    return result;
}

std::vector<Condition> Grammar::filters(const Types& types) {
    std::vector<Condition> filters;
    while (accept("[")) {
        filters.push_back(condition(types));
        if (!token().isSign("]")) {
            expected("and, or, ]");
        }
        m_lexer.take();
    }
    return filters;
}

// condition = conjunction { "or" conjunction };  conjunction = negation { "and" negation }
Condition Grammar::condition(const Types& types) {
    return joined(types, "or", Condition::Kind::any);
}
Condition Grammar::joined(const Types& types, std::string_view word, Condition::Kind kind) {
    const Depth depth(*this);
    Condition all{.kind = kind};
    do {
        all.parts.push_back(kind == Condition::Kind::any ? joined(types, "and", Condition::Kind::all)
                                                         : negation(types));
    } while (acceptWord(word));
    return all.parts.size() == 1 ? Condition(std::move(all.parts.front())) : std::move(all);
}

// negation = "not" negation | "(" condition ")" | "is" type | comparison
Condition Grammar::negation(const Types& types) {
    const Depth depth(*this);
    if (acceptWord("not")) {
        return no(negation(types));
    }
    if (accept("(")) {
        Condition inner = condition(types);
        if (!token().isSign(")")) {
            expected("and, or, )");
        }
        m_lexer.take();
        return inner;
    }
    if (acceptWord("is")) {
        return {.kind = Condition::Kind::type, .type = type("an entity such as IfcWall")};
    }
    return comparison(types);
}

// comparison = path [ ( "=" | "!=" | "<" | ... ) literal | "in" "(" literal { "," literal } ")" ]
Condition Grammar::comparison(const Types& types) {
    ParsedPath parsed = path(types);
    Condition test{.kind = Condition::Kind::comparison, .path = std::move(parsed.path)};
    if (acceptWord("in")) {
        expect("(");
        do {
            test.literals.push_back(literal(parsed.attributes));
        } while (accept(","));
        expect(")");
        test.comparison = Comparison::equal;
        return test;
    }
    static constexpr std::pair<std::string_view, Comparison> kSigns[] = {
        {"=", Comparison::equal},      {"!=", Comparison::equal},   {"<", Comparison::less},
        {"<=", Comparison::lessEqual}, {">", Comparison::greater},  {">=", Comparison::greaterEqual},
        {"~", Comparison::matches},    {"!~", Comparison::matches},
    };
    for (const auto& [sign, comparison] : kSigns) {
        if (accept(sign)) {
            test.comparison = comparison;
            comparison == Comparison::matches ? pattern(test) : operand(test, parsed.attributes);
            return sign[0] == '!' ? no(std::move(test)) : std::move(test);
        }
    }
    return test;
}

void Grammar::operand(Condition& test, const Attributes& attributes) {
    const std::size_t at = token().at;
    test.literals.push_back(literal(attributes));
    const Literal& literal = test.literals.back();
    if (test.comparison != Comparison::equal && !std::holds_alternative<double>(literal) &&
        !std::holds_alternative<std::string>(literal)) {
        fail(at, "only numbers and texts have an order, expected a number or a text in quotes");
    }
}

void Grammar::pattern(Condition& test) {
    if (token().kind != Kind::quoted) {
        expected("a text in quotes");
    }
    const Token text = m_lexer.take();
    try {
        test.pattern = std::make_shared<Pattern>(text.text, text.ignoresCase);
    } catch (const std::regex_error& error) {
        if (error.code() == std::regex_constants::error_space) {
            fail(text.at, "this pattern is too large");
        }
        fail(text.at, fmt::format("found {}, expected a regular expression", printable(text.text)));
    }
}

// literal = number | text | "#15" | "$" | "unset" | word | "." word "."
Literal Grammar::literal(const Attributes& attributes) {
    const Token first = token();
    switch (first.kind) {
    case Kind::number: m_lexer.take(); return first.number;
    case Kind::reference: m_lexer.take(); return Reference{first.reference};
    case Kind::quoted:
        m_lexer.take();
        if (first.ignoresCase) {
            fail(first.at, "letter case can be ignored behind ~ only");
        }
        return first.text;
    default: break;
    }
    if (accept("$") || acceptWord("unset")) {
        return Unset{};
    }
    const bool isDotted = accept(".");
    if (token().kind != Kind::name) {
        expected("a value: a number, a text in quotes, true, false, unset, #15 or a literal such as ELEMENT");
    }
    const Token word = m_lexer.take();
    if (isDotted) {
        expect(".");
    }
    checkLiteral(word, attributes);
    if (isDotted && word.text.size() == 1) { // as files write logicals
        return Word{word.isWord("t") ? "true" : word.isWord("f") ? "false" : "unknown"};
    }
    return Word{word.text};
}

void Grammar::checkLiteral(const Token& word, const Attributes& attributes) const {
    const std::vector<std::string> known = literalsOf(attributes);
    if (!known.empty() &&
        std::none_of(known.begin(), known.end(), [&](const std::string& each) { return word.isWord(each); })) {
        const std::string near = didYouMean(suggestions(known, word.text));
        fail(word.at, fmt::format("{} is no literal of {}{}", printable(word.text), attributes.front()->typeText(),
                                  near.empty() ? fmt::format(", expected {}", fmt::join(known, ", ")) : near));
    }
}

} // namespace kpifc::query
