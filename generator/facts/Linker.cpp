#include "facts/Linker.h"

#include "facts/Attributes.h"
#include "facts/Cycles.h"
#include "facts/Derivation.h"
#include "facts/Names.h"
#include "facts/Parser.h"

namespace kpifcgen::facts {

namespace {

/// Where an aggregation is written.
using Usage = bool Aggregation::*;

class Linker {
public:
    Linker(const syntax::Schema& written, Diagnostics& diagnostics)
        : m_written(written), m_diagnostics(diagnostics), m_names(m_schema, diagnostics) {}

    std::optional<Schema> run() {
        declareAll();
        linkTypes();
        linkEntities();
        reportCycles(m_schema, m_diagnostics);
        if (!m_diagnostics.empty()) {
            return std::nullopt;
        }
        deriveTypeFacts(m_schema);
        deriveChains(m_schema);
        linkAttributes(m_written, m_schema, m_diagnostics);
        if (!m_diagnostics.empty()) {
            return std::nullopt;
        }
        deriveAttributeFacts(m_schema);
        return std::move(m_schema);
    }

private:
    // Declarations of the schema stand at the same index as the written ones from here on.
    void declareAll() {
        m_schema.name = m_written.name.text;
        m_schema.version = m_written.version;
        for (const auto& type : m_written.definedTypes) {
            m_names.declare(m_schema.definedTypes, type.name);
        }
        for (const auto& enumeration : m_written.enumerations) {
            auto& declared = m_names.declare(m_schema.enumerations, enumeration.name);
            UniqueNames unique;
            for (const auto& literal : enumeration.words) {
                unique.add(literal, "literal", "listed", m_diagnostics);
                declared.literals.push_back(literal.text);
            }
        }
        for (const auto& select : m_written.selects) {
            m_names.declare(m_schema.selects, select.name);
        }
        for (const auto& entity : m_written.entities) {
            m_names.declare(m_schema.entities, entity.name).abstract = entity.abstract;
        }
    }

    TypeRef linkType(const syntax::Type& type, Usage usage) {
        const TypeRef linked = m_names.type(type);
        markUsage(linked, usage);
        return linked;
    }

    void markUsage(const TypeRef& type, Usage usage) {
        if (const auto* aggregation = std::get_if<const Aggregation*>(&type)) {
            auto& interned = m_names.aggregation((*aggregation)->kind, (*aggregation)->bounds, (*aggregation)->unique,
                                                 (*aggregation)->element);
            interned.*usage = true;
            markUsage(interned.element, usage);
        }
    }

    void linkTypes() {
        for (std::size_t i = 0; i < m_written.definedTypes.size(); ++i) {
            auto& type = m_schema.definedTypes[i];
            type.type = linkType(m_written.definedTypes[i].type, &Aggregation::inDefinedType);
            if (const auto* name = std::get_if<syntax::Name>(&m_written.definedTypes[i].type);
                name && !std::holds_alternative<const DefinedType*>(type.type) &&
                !std::holds_alternative<SimpleType>(type.type)) {
                m_diagnostics.push_back(
                    {name->at, "defined type '" + type.name +
                                   "' must stand for a simple type, a defined type or an aggregation, not for '" +
                                   name->text + "'"});
            }
        }
        for (std::size_t i = 0; i < m_written.selects.size(); ++i) {
            UniqueNames unique;
            for (const auto& member : m_written.selects[i].words) {
                unique.add(member, "member", "listed", m_diagnostics);
                if (const auto found = m_names.find(member)) {
                    m_schema.selects[i].members.push_back(*found);
                }
            }
        }
    }

    void linkEntities() {
        for (std::size_t i = 0; i < m_written.entities.size(); ++i) {
            const auto& written = m_written.entities[i];
            auto& entity = m_schema.entities[i];
            if (written.supertype) {
                entity.supertype = m_names.entity(*written.supertype, "a supertype");
            }
            for (const auto& attribute : written.explicitAttributes) {
                entity.explicitAttributes.push_back({.name = attribute.name.text,
                                                     .at = attribute.name.at,
                                                     .owner = &entity,
                                                     .optional = attribute.optional,
                                                     .type = linkType(attribute.type, &Aggregation::inExplicit),
                                                     .inverses = {}});
            }
            for (const auto& attribute : written.derivedAttributes) {
                entity.derivedAttributes.push_back({.name = attribute.name.text,
                                                    .at = attribute.name.at,
                                                    .owner = &entity,
                                                    .type = linkType(attribute.type, &Aggregation::inDerived)});
            }
            for (const auto& attribute : written.inverseAttributes) {
                linkInverse(attribute, entity);
            }
        }
    }

    void linkInverse(const syntax::InverseAttribute& written, Entity& entity) {
        auto& inverse = entity.inverseAttributes.emplace_back();
        inverse.name = written.name.text;
        inverse.at = written.name.at;
        inverse.owner = &entity;
        inverse.target = m_names.entity(written.target, "the target of an inverse attribute");
        if (written.aggregate && inverse.target) {
            auto& aggregation = m_names.aggregation(*written.aggregate, written.bounds, false, inverse.target);
            aggregation.inInverse = true;
            inverse.aggregation = &aggregation;
        }
    }

    const syntax::Schema& m_written;
    Diagnostics& m_diagnostics;
    Schema m_schema;
    Names m_names;
};

} // namespace

std::optional<Schema> link(const syntax::Schema& written, Diagnostics& diagnostics) {
    return Linker(written, diagnostics).run();
}

std::optional<Schema> load(std::string_view text, Diagnostics& diagnostics) {
    const syntax::Schema written = parse(text, diagnostics);
    return diagnostics.empty() ? link(written, diagnostics) : std::nullopt;
}

} // namespace kpifcgen::facts
