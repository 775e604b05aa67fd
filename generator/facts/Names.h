#pragma once

#include "facts/Diagnostics.h"
#include "facts/Schema.h"
#include "facts/Syntax.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kpifcgen::facts {

/// Names that must differ even where case is ignored: identifiers of ISO 10303-11 have no case, and records and
/// late-bound access spell them in upper and lower case.
class UniqueNames {
public:
    /// False, and a diagnostic "<what> 'name' is already <verb> ...", where the name is taken.
    bool add(const syntax::Name& name, std::string_view what, std::string_view verb, Diagnostics& diagnostics);

private:
    std::unordered_map<std::string, syntax::Name> m_taken; // key in lower case
};

/// The declarations of a schema by name, and the aggregations written in it.
class Names {
public:
    Names(Schema& schema, Diagnostics& diagnostics) : m_schema(schema), m_diagnostics(diagnostics) {}

    /// Appends a declaration and makes its name known; reports a name that is taken.
    template <class Declaration>
    Declaration& declare(std::deque<Declaration>& declarations, const syntax::Name& name) {
        Declaration& added = declarations.emplace_back();
        added.name = name.text;
        added.at = name.at;
        if (m_unique.add(name, "name", "declared", m_diagnostics)) {
            m_declared.emplace(name.text, &added);
        }
        return added;
    }

    /// None, and a diagnostic, where the name is unknown.
    std::optional<TypeRef> find(const syntax::Name& name);

    /// Null, and a diagnostic, where the name is not that of an entity.
    const Entity* entity(const syntax::Name& name, std::string_view role);

    /// Some simple type, and a diagnostic, where a name is unknown.
    TypeRef type(const syntax::Type& type);

    /// The one object for aggregations that are written like this.
    Aggregation& aggregation(AggregateKind kind, const Bounds& bounds, bool unique, const TypeRef& element);

private:
    Schema& m_schema;
    Diagnostics& m_diagnostics;
    UniqueNames m_unique;
    std::unordered_map<std::string, TypeRef> m_declared;
    std::unordered_map<std::string, Aggregation*> m_aggregations; // key: spelling
};

} // namespace kpifcgen::facts
