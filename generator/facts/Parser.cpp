#include "facts/Parser.h"

#include "facts/Cursor.h"

#include <functional>
#include <string>

namespace kpifcgen::facts {

namespace {

Bounds readBounds(Cursor& cursor) {
    cursor.expect("[", "'['");
    Bounds bounds;
    const Position at = cursor.peek().at;
    bounds.low = cursor.number("the lower bound");
    cursor.expect(":", "':' between the bounds");
    if (!cursor.accept("?")) {
        bounds.high = cursor.number("the upper bound or '?'");
        if (*bounds.high < bounds.low) {
            throw LineError{{at, "bounds " + spell(bounds) + " are the wrong way round"}};
        }
    }
    cursor.expect("]", "']'");
    return bounds;
}

SimpleType readSimpleType(Cursor& cursor, SimpleKind kind) {
    SimpleType type{.kind = kind, .width = {}, .fixed = false};
    if (cursor.peek().text == "(") {
        const Position at = cursor.peek().at;
        cursor.accept("(");
        type.width = cursor.number("a width");
        cursor.expect(")", "')'");
        type.fixed = cursor.accept("fixed");
        if (kind != SimpleKind::String && kind != SimpleKind::Binary) {
            throw LineError{{at, "a width is for string and binary only, not for " + std::string(spell(kind))}};
        }
        if (*type.width == 0) {
            throw LineError{{at, "a width must not be 0"}};
        }
    }
    return type;
}

/// Spellings of aggregates hold those of their elements: what is nested without end would cost without measure.
constexpr int kMostNested = 32;

syntax::Type readType(Cursor& cursor, int nested = 0) {
    const Token& token = cursor.peek();
    if (const auto kind = simpleKind(token.text)) {
        cursor.word("a type");
        return readSimpleType(cursor, *kind);
    }
    if (const auto kind = aggregateKind(token.text)) {
        syntax::Aggregation aggregation{.at = token.at, .kind = *kind, .bounds = {}, .unique = false, .element = {}};
        if (nested == kMostNested) {
            throw LineError{{token.at, "aggregates are nested more than " + std::to_string(kMostNested) + " deep"}};
        }
        cursor.word("a type");
        aggregation.bounds = readBounds(cursor);
        if (*kind == AggregateKind::Array && !aggregation.bounds.high) {
            throw LineError{{token.at, "an array needs an upper bound"}};
        }
        cursor.expect("of", "'of'");
        aggregation.unique = cursor.accept("unique");
        aggregation.element = readType(cursor, nested + 1);
        return std::make_shared<const syntax::Aggregation>(std::move(aggregation));
    }
    return cursor.name("a type");
}

syntax::ExplicitAttribute readExplicit(Cursor& cursor) {
    syntax::ExplicitAttribute attribute;
    attribute.name = cursor.name("an attribute name, 'derive', 'inverse' or 'unique'");
    cursor.expect(":", "':' after attribute name '" + attribute.name.text + "'");
    attribute.optional = cursor.accept("optional");
    attribute.type = readType(cursor);
    return attribute;
}

syntax::DerivedAttribute readDerived(Cursor& cursor) {
    syntax::DerivedAttribute attribute;
    attribute.name = cursor.name("a derived attribute's name");
    if (cursor.accept(".")) {
        attribute.redeclaredIn = std::move(attribute.name);
        attribute.name = cursor.name("the name of the redeclared attribute");
    }
    cursor.expect(":", "':' after attribute name '" + attribute.name.text + "'");
    attribute.type = readType(cursor);
    return attribute;
}

syntax::InverseAttribute readInverse(Cursor& cursor) {
    syntax::InverseAttribute attribute;
    attribute.name = cursor.name("an inverse attribute's name");
    cursor.expect(":", "':' after attribute name '" + attribute.name.text + "'");
    const Token& token = cursor.peek();
    if (const auto kind = aggregateKind(token.text)) {
        if (*kind != AggregateKind::Set && *kind != AggregateKind::Bag) {
            cursor.fail("an entity, 'set' or 'bag'");
        }
        cursor.word("'set'");
        attribute.aggregate = kind;
        attribute.bounds = readBounds(cursor);
        cursor.expect("of", "'of'");
    }
    attribute.target = cursor.name("an entity");
    cursor.expect("for", "'for' and the attribute that is inverted");
    attribute.attribute = cursor.name("the attribute that is inverted");
    return attribute;
}

syntax::UniqueRule readUnique(Cursor& cursor) {
    syntax::UniqueRule rule;
    rule.label = cursor.name("a rule label");
    cursor.expect(":", "':' after rule label '" + rule.label.text + "'");
    do {
        rule.attributes.push_back(cursor.name("an attribute name"));
    } while (cursor.accept(","));
    return rule;
}

class Parser {
public:
    explicit Parser(Diagnostics& diagnostics) : m_diagnostics(diagnostics) {}

    void read(const Line& line) {
        Cursor cursor(line);
        try {
            if (line.indented) {
                m_readBody(cursor);
            } else {
                // An unreadable head makes its body unreadable too: one error, not one per line.
                m_readBody = [](Cursor&) {};
                readHead(cursor);
            }
        } catch (LineError& error) {
            m_diagnostics.push_back(std::move(error.diagnostic));
        }
    }

    syntax::Schema finish() {
        if (m_diagnostics.empty()) {
            if (!m_schemaSeen) {
                m_diagnostics.push_back({{1, 1}, "expected 'schema', found the end of the file"});
            }
            requireWords(m_schema.enumerations, "enumeration", "literals");
            requireWords(m_schema.selects, "select", "members");
        }
        return std::move(m_schema);
    }

private:
    void readHead(Cursor& cursor) {
        const Token head = cursor.peek();
        const auto expected = m_schemaSeen ? "'type', 'enum', 'select', 'entity' or 'abstract'" : "'schema'";
        if (m_schemaSeen != (head.text != "schema") && !m_schemaErrorSeen) {
            m_schemaErrorSeen = true;
            cursor.fail(expected);
        }
        if (cursor.accept("schema")) {
            readSchema(cursor);
        } else if (cursor.accept("type")) {
            readDefinedType(cursor);
        } else if (cursor.accept("enum")) {
            readWordList(cursor, m_schema.enumerations, "a literal");
        } else if (cursor.accept("select")) {
            readWordList(cursor, m_schema.selects, "a member");
        } else if (cursor.accept("entity")) {
            readEntity(cursor, false);
        } else if (cursor.accept("abstract")) {
            cursor.expect("entity", "'entity' after 'abstract'");
            readEntity(cursor, true);
        } else {
            cursor.fail(expected);
        }
    }

    void readSchema(Cursor& cursor) {
        m_schemaSeen = true;
        m_readBody = [](Cursor& inner) { inner.fail("a statement that starts in column 1"); };
        m_schema.name = cursor.name("the schema's name");
        do {
            m_schema.version +=
                (m_schema.version.empty() ? "" : ".") + std::to_string(cursor.number("a version number"));
        } while (cursor.accept("."));
        cursor.expectEnd();
    }

    void readDefinedType(Cursor& cursor) {
        m_readBody = [](Cursor& inner) { inner.fail("a statement that starts in column 1"); };
        syntax::DefinedType type;
        type.name = cursor.name("a type name");
        cursor.expect("=", "'=' after type name '" + type.name.text + "'");
        type.type = readType(cursor);
        cursor.expectEnd();
        m_schema.definedTypes.push_back(std::move(type));
    }

    void readWordList(Cursor& cursor, std::vector<syntax::WordList>& lists, const char* expected) {
        syntax::WordList list;
        list.name = cursor.name("a type name");
        cursor.expectEnd();
        lists.push_back(std::move(list));
        m_readBody = [&words = lists.back().words, expected](Cursor& inner) {
            while (!inner.atEnd()) {
                words.push_back(inner.name(expected));
            }
        };
    }

    void readEntity(Cursor& cursor, bool abstract) {
        syntax::Entity entity;
        entity.abstract = abstract;
        entity.name = cursor.name("an entity name");
        m_schema.entities.push_back(std::move(entity));
        auto& added = m_schema.entities.back();
        m_readBody = [&added](Cursor& inner) { readAttribute(inner, added); };
        if (cursor.accept(":")) {
            added.supertype = cursor.name("a supertype");
        }
        cursor.expectEnd();
    }

    static void readAttribute(Cursor& cursor, syntax::Entity& entity) {
        if (cursor.accept("derive")) {
            entity.derivedAttributes.push_back(readDerived(cursor));
        } else if (cursor.accept("inverse")) {
            entity.inverseAttributes.push_back(readInverse(cursor));
        } else if (cursor.accept("unique")) {
            entity.uniqueRules.push_back(readUnique(cursor));
        } else {
            entity.explicitAttributes.push_back(readExplicit(cursor));
        }
        cursor.expectEnd();
    }

    void requireWords(const std::vector<syntax::WordList>& lists, const std::string& kind, const std::string& words) {
        for (const auto& list : lists) {
            if (list.words.empty()) {
                std::string message = kind;
                message.append(" '").append(list.name.text).append("' has no ").append(words);
                m_diagnostics.push_back({list.name.at, std::move(message)});
            }
        }
    }

    Diagnostics& m_diagnostics;
    syntax::Schema m_schema;
    bool m_schemaSeen = false;
    bool m_schemaErrorSeen = false;
    /// Reads an indented line below the last head; refers to the declaration last added, so heads must not be read
    /// while it runs.
    std::function<void(Cursor&)> m_readBody = [](Cursor& inner) { inner.fail("'schema'"); };
};

} // namespace

syntax::Schema parse(std::string_view text, Diagnostics& diagnostics) {
    Parser parser(diagnostics);
    for (const Line& line : splitLines(text, diagnostics)) {
        parser.read(line);
    }
    return parser.finish();
}

} // namespace kpifcgen::facts
