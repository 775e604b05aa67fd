#pragma once

#include "QueryLexer.h"
#include "QueryParser.h"

#include <string>
#include <string_view>
#include <vector>

namespace kpifc::query {

/// A path, and what is known of where it ends.
struct ParsedPath {
    Path path;
    Types types;           ///< of the instances that it leads to; empty for values
    Attributes attributes; ///< that its last step reads
};

/// Recursive descent: a function for each rule of the grammar, which kpifc query --help tells. Selections, paths and
/// steps are in QueryParser.cpp, conditions in QueryConditions.cpp.
class Grammar {
public:
    Grammar(std::string_view text, const KP_SDAI::KpIfcSchema& schema) : m_lexer(text), m_schema(schema) {}

    ParsedQuery query();
    std::vector<Path> paths(const Types& types);

private:
    class Depth;
    using Kind = Token::Kind;

    const Token& token() const { return m_lexer.token(); }
    [[noreturn]] void fail(std::size_t at, const std::string& what) const;
    [[noreturn]] void expected(std::string_view what) const;
    bool accept(std::string_view sign);
    bool acceptWord(std::string_view word);
    bool acceptSeparator() { return accept("/") || accept("."); }
    void expect(std::string_view sign);
    void expectEnd(std::string_view what) const;

    void selection(ParsedQuery& parsed);
    std::string globalIdHere() const;
    TypeTest type(std::string_view what);
    Types typesOf(const TypeTest& type) const;

    ParsedPath path(const Types& types);
    std::string textSince(std::size_t start) const;
    void step(ParsedPath& parsed);
    void attributeOrProperty(Step& step, ParsedPath& parsed);
    bool haveProperties(const Types& types) const;

    std::vector<Condition> filters(const Types& types);
    Condition condition(const Types& types);
    Condition joined(const Types& types, std::string_view word, Condition::Kind kind);
    Condition negation(const Types& types);
    Condition comparison(const Types& types);
    void operand(Condition& test, const Attributes& attributes);
    void pattern(Condition& test);
    Literal literal(const Attributes& attributes);
    void checkLiteral(const Token& word, const Attributes& attributes) const;

    Lexer m_lexer;
    const KP_SDAI::KpIfcSchema& m_schema;
    int m_depth = 0;
};

/// No stack is endless: stands in every function that can come to itself again.
class Grammar::Depth {
public:
    explicit Depth(Grammar& grammar) : m_grammar(grammar) {
        constexpr int kDeepest = 300;
        if (m_grammar.m_depth == kDeepest) {
            m_grammar.fail(m_grammar.token().at, "this is nested too deeply");
        }
        ++m_grammar.m_depth;
    }
    Depth(const Depth&) = delete;
    Depth& operator=(const Depth&) = delete;
    ~Depth() { --m_grammar.m_depth; }

private:
    Grammar& m_grammar;
};

} // namespace kpifc::query
