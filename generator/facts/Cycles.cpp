#include "facts/Cycles.h"

#include <algorithm>
#include <unordered_set>

namespace kpifcgen::facts {

namespace {

std::vector<const Entity*> successors(const Entity& entity) {
    return entity.supertype ? std::vector{entity.supertype} : std::vector<const Entity*>();
}

std::vector<const DefinedType*> successors(const DefinedType& type) {
    const TypeRef* next = &type.type;
    while (const auto* aggregation = std::get_if<const Aggregation*>(next)) {
        next = &(*aggregation)->element;
    }
    const auto* defined = std::get_if<const DefinedType*>(next);
    return defined ? std::vector{*defined} : std::vector<const DefinedType*>();
}

std::vector<const Select*> successors(const Select& select) {
    std::vector<const Select*> nested;
    for (const TypeRef& member : select.members) {
        if (const auto* inner = std::get_if<const Select*>(&member)) {
            nested.push_back(*inner);
        }
    }
    return nested;
}

/// Depth-first search over one kind of declaration; `path` holds the open nodes.
template <class Declaration>
class Search {
public:
    Search(const char* relation, Diagnostics& diagnostics) : m_relation(relation), m_diagnostics(diagnostics) {}

    void visit(const Declaration& node) {
        if (const auto open = std::ranges::find(m_path, &node); open != m_path.end()) {
            report({open, m_path.end()});
        } else if (m_seen.insert(&node).second) {
            m_path.push_back(&node);
            for (const Declaration* next : successors(node)) {
                visit(*next);
            }
            m_path.pop_back();
        }
    }

private:
    void report(const std::vector<const Declaration*>& cycle) {
        std::string names;
        for (const Declaration* node : cycle) {
            names += node->name + " -> ";
        }
        const Declaration& first = *cycle.front();
        m_diagnostics.push_back({first.at, "'" + first.name + "' is " + m_relation + ": " + names + first.name});
    }

    const char* m_relation;
    Diagnostics& m_diagnostics;
    std::vector<const Declaration*> m_path;
    std::unordered_set<const Declaration*> m_seen;
};

template <class Declarations>
void search(const Declarations& declarations, const char* relation, Diagnostics& diagnostics) {
    Search<typename Declarations::value_type> search(relation, diagnostics);
    for (const auto& declaration : declarations) {
        search.visit(declaration);
    }
}

} // namespace

void reportCycles(const Schema& schema, Diagnostics& diagnostics) {
    search(schema.entities, "its own supertype", diagnostics);
    search(schema.definedTypes, "defined by itself", diagnostics);
    search(schema.selects, "a member of itself", diagnostics);
}

} // namespace kpifcgen::facts
