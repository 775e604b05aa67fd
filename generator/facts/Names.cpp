#include "facts/Names.h"

#include "facts/Text.h"

namespace kpifcgen::facts {

namespace {

std::string kindOf(const TypeRef& type) {
    static constexpr std::string_view kinds[] = {"a simple type", "a defined type", "an enumeration",
                                                 "a select",      "an entity",      "an aggregation"};
    return std::string(kinds[type.index()]);
}

} // namespace

bool UniqueNames::add(const syntax::Name& name, std::string_view what, std::string_view verb,
                      Diagnostics& diagnostics) {
    const auto [entry, added] = m_taken.emplace(lowerCase(name.text), name);
    if (!added) {
        const syntax::Name& first = entry->second;
        diagnostics.push_back({name.at, std::string(what) + " " + quoted(name.text) + " is already " +
                                            std::string(verb) +
                                            (first.text == name.text ? "" : " as " + quoted(first.text)) + " in line " +
                                            std::to_string(first.at.line)});
    }
    return added;
}

std::optional<TypeRef> Names::find(const syntax::Name& name) {
    if (const auto found = m_declared.find(name.text); found != m_declared.end()) {
        return found->second;
    }
    std::string message = "unknown name " + quoted(name.text);
    const std::string lower = lowerCase(name.text);
    for (const auto& [declared, type] : m_declared) {
        if (lowerCase(declared) == lower) {
            message += "; did you mean " + quoted(declared) + "?";
        }
    }
    m_diagnostics.push_back({name.at, std::move(message)});
    return std::nullopt;
}

const Entity* Names::entity(const syntax::Name& name, std::string_view role) {
    const auto found = find(name);
    if (!found) {
        return nullptr;
    }
    if (const auto* entity = std::get_if<const Entity*>(&*found)) {
        return *entity;
    }
    m_diagnostics.push_back(
        {name.at, std::string(role) + " must be an entity, " + quoted(name.text) + " is " + kindOf(*found)});
    return nullptr;
}

TypeRef Names::type(const syntax::Type& type) {
    if (const auto* simple = std::get_if<SimpleType>(&type)) {
        return *simple;
    }
    if (const auto* name = std::get_if<syntax::Name>(&type)) {
        return find(*name).value_or(SimpleType());
    }
    const auto& written = *std::get<std::shared_ptr<const syntax::Aggregation>>(type);
    return &aggregation(written.kind, written.bounds, written.unique, this->type(written.element));
}

Aggregation& Names::aggregation(AggregateKind kind, const Bounds& bounds, bool unique, const TypeRef& element) {
    const std::string spelling =
        std::string(spell(kind)) + " " + spell(bounds) + " of " + (unique ? "unique " : "") + spell(element);
    auto& known = m_aggregations[spelling];
    if (!known) {
        known = &m_schema.aggregations.emplace_back();
        known->kind = kind;
        known->bounds = bounds;
        known->unique = unique;
        known->element = element;
        known->spelling = spelling;
    }
    return *known;
}

} // namespace kpifcgen::facts
