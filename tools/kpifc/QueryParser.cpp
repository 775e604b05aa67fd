#include "QueryGrammar.h"
#include "SchemaNames.h"
#include "Utf8.h"

#include <KpIfcCore/KpIfcGUID.h>

#include <fmt/format.h>

#include <algorithm>

using namespace KP_SDAI;

namespace kpifc::query {

void Grammar::fail(std::size_t at, const std::string& what) const {
    throw QueryError(m_lexer.text(), at, what);
}

void Grammar::expected(std::string_view what) const {
    fail(token().at, fmt::format("{}, expected {}", token().found(), what));
}

bool Grammar::accept(std::string_view sign) {
    const bool isIt = token().isSign(sign);
    if (isIt) {
        m_lexer.take();
    }
    return isIt;
}

bool Grammar::acceptWord(std::string_view word) {
    const bool isIt = token().isWord(word);
    if (isIt) {
        m_lexer.take();
    }
    return isIt;
}

void Grammar::expect(std::string_view sign) {
    if (!accept(sign)) {
        expected(sign);
    }
}

void Grammar::expectEnd(std::string_view what) const {
    if (token().kind != Kind::end) {
        expected(what);
    }
}

ParsedQuery Grammar::query() {
    ParsedQuery parsed;
    do {
        selection(parsed);
    } while (accept(","));
    expectEnd("[, /, a comma or the end");
    return parsed;
}

std::vector<Path> Grammar::paths(const Types& types) {
    std::vector<Path> paths;
    do {
        paths.push_back(path(types).path);
    } while (accept(","));
    expectEnd(". or a comma or the end");
    return paths;
}

// selection = ( type | "#15" | GlobalId ) { filter } { "/" step }
void Grammar::selection(ParsedQuery& parsed) {
    Selection selection;
    Types types;
    if (const std::string globalId = globalIdHere(); !globalId.empty()) {
        selection.target = globalId;
        m_lexer.goTo(token().at + globalId.size());
        types = anyType(m_schema);
    } else if (token().kind == Kind::reference) {
        selection.target = m_lexer.take().text;
        types = anyType(m_schema);
    } else {
        selection.type = type("an entity such as IfcWall, *, #15 or a GlobalId");
        types = typesOf(selection.type);
    }
    selection.filters = filters(types);
    while (acceptSeparator()) {
        const std::size_t at = token().at;
        ParsedPath step{{}, types, {}};
        this->step(step);
        if (step.types.empty()) {
            fail(at, "this holds no instances; queries find instances, --columns shows values");
        }
        types = std::move(step.types);
        selection.steps.push_back(std::move(step.path.steps.back()));
    }
    parsed.types.insert(parsed.types.end(), types.begin(), types.end());
    parsed.query.push_back(std::move(selection));
}

std::string Grammar::globalIdHere() const {
    const std::string_view rest = m_lexer.text().substr(std::min(token().at, m_lexer.text().size()));
    const std::string_view word = rest.substr(0, rest.find_first_of(" \t\r\n[/.,"));
    const bool fits = word.size() == KpIfcGUID::kLength &&
                      std::all_of(word.begin(), word.end(),
                                  [](char c) {
                                      return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
                                             (c >= 'a' && c <= 'z') || c == '_' || c == '$';
                                  }) &&
                      !m_schema.findEntity(word);
    return fits ? std::string(word) : std::string();
}

// type = "*" | [ "=" ] ENTITY
TypeTest Grammar::type(std::string_view what) {
    if (accept("*")) {
        return {};
    }
    const bool isExact = accept("=");
    if (token().kind != Kind::name) {
        expected(isExact ? "an entity such as IfcWall" : what);
    }
    const KpIfcEntityType* entity = m_schema.findEntity(token().text);
    if (!entity) {
        fail(token().at, fmt::format("{} has no entity {}{}", m_schema.name(), printable(token().text),
                                     didYouMean(suggestions(SchemaNames(m_schema).entities, token().text))));
    }
    m_lexer.take();
    return {entity, isExact};
}

Types Grammar::typesOf(const TypeTest& type) const {
    return type.entity ? Types{type} : anyType(m_schema);
}

// path = "count" "(" path ")" | step { "." step }
ParsedPath Grammar::path(const Types& types) {
    const Depth depth(*this);
    const std::size_t start = token().at;
    ParsedPath parsed{{}, types, {}};
    const Token first = token();
    if (acceptWord("count")) {
        if (accept("(")) {
            parsed = path(types);
            expect(")");
            parsed.attributes.clear();
            parsed.path.isCount = true;
            parsed.path.text = textSince(start);
            return parsed;
        }
        m_lexer.goTo(first.at); // an attribute of that name
    }
    do {
        if (parsed.types.empty()) {
            fail(token().at, "what stands before this holds no instances, so nothing can follow it");
        }
        step(parsed);
    } while (acceptSeparator());
    parsed.path.text = textSince(start);
    return parsed;
}

/// What was read since a place, without the blanks behind it.
std::string Grammar::textSince(std::size_t start) const {
    const std::string_view read = m_lexer.text().substr(start, token().at - start);
    return std::string(read.substr(0, read.find_last_not_of(" \t\r\n") + 1));
}

// step = ( ATTRIBUTE | set "." PROPERTY | "^" type | "@id" | "@type" ) { filter }
void Grammar::step(ParsedPath& parsed) {
    const Depth depth(*this);
    Step step{};
    if (accept("^")) {
        step.kind = Step::Kind::referrers;
        step.referrer = type("an entity such as IfcRelAssociates or *");
        parsed.types = typesOf(step.referrer);
        parsed.attributes.clear();
    } else if (accept("@")) {
        const bool isId = token().isWord("id");
        if (!isId && !token().isWord("type")) {
            expected("id or type");
        }
        m_lexer.take();
        step.kind = isId ? Step::Kind::id : Step::Kind::type;
        parsed.types.clear();
        parsed.attributes.clear();
    } else {
        attributeOrProperty(step, parsed);
    }
    if (token().isSign("[") && parsed.types.empty()) {
        fail(token().at, "what stands before this holds no instances that could be chosen from");
    }
    step.filters = filters(parsed.types);
    parsed.path.steps.push_back(std::move(step));
}

void Grammar::attributeOrProperty(Step& step, ParsedPath& parsed) {
    const Token name = token();
    const bool isAnySet = name.isSign("*");
    if (name.kind != Kind::name && name.kind != Kind::quoted && !isAnySet) {
        expected("an attribute, or a property as Set.Property");
    }
    m_lexer.take();
    const Attributes found = name.kind == Kind::name ? attributesOf(parsed.types, name.text) : Attributes();
    if (!found.empty()) {
        const auto isDerived = [&types = parsed.types](const KpIfcAttributeDefinition* attribute) {
            return attribute->kind() == KpIfcAttributeKind::derivedAttribute ||
                   std::all_of(types.begin(), types.end(),
                               [=](const TypeTest& type) { return type.entity->redeclarationOf(*attribute); });
        };
        if (std::all_of(found.begin(), found.end(), isDerived)) {
            fail(name.at, fmt::format("{} is derived: models hold no value of it", found.front()->displayName()));
        }
        step.kind = Step::Kind::attribute;
        step.name = found.front()->displayName();
        parsed.types = targetsOf(found);
        parsed.attributes = found;
        return;
    }
    if (!haveProperties(parsed.types) || !acceptSeparator()) {
        const std::string what =
            name.kind == Kind::name ? didYouMean(suggestions(attributeNames(parsed.types), name.text)) : "";
        fail(name.at, fmt::format("{} has no attribute {}{}", namesOf(parsed.types), printable(name.text),
                                  what.empty() ? "; a property is written Set.Property" : what));
    }
    if (token().kind != Kind::name && token().kind != Kind::quoted) {
        expected("the name of a property");
    }
    step.kind = Step::Kind::property;
    step.set = name.text;
    step.name = m_lexer.take().text;
    parsed.types.clear();
    parsed.attributes.clear();
}

bool Grammar::haveProperties(const Types& types) const {
    const KpIfcEntityType* objects = m_schema.findEntity("IfcObjectDefinition");
    return objects && std::any_of(types.begin(), types.end(), [objects](const TypeTest& type) {
               return type.entity->isKindOf(objects) || objects->isKindOf(type.entity);
           });
}

ParsedQuery parseQuery(std::string_view text, const KpIfcSchema& schema) {
    return Grammar(text, schema).query();
}

std::vector<Path> parsePaths(std::string_view text, const Types& types, const KpIfcSchema& schema) {
    return Grammar(text, schema).paths(types);
}

} // namespace kpifc::query
