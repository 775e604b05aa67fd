#include "facts/Derivation.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace kpifcgen::facts {

namespace {

TypeRef followTo(const TypeRef& type) {
    const auto* defined = std::get_if<const DefinedType*>(&type);
    return defined ? followTo((*defined)->type) : type;
}

/// Each select is taken apart once, however many ways lead to it.
struct Alternatives {
    std::vector<TypeRef>& found;
    std::unordered_set<std::string> seen = {};
    std::unordered_set<const Select*> entered = {};

    void add(const Select& select) {
        if (!entered.insert(&select).second) {
            return;
        }
        for (const TypeRef& member : select.members) {
            if (const auto* nested = std::get_if<const Select*>(&member)) {
                add(**nested);
            } else if (seen.insert(spell(member)).second) {
                found.push_back(member);
            }
        }
    }
};

std::vector<RecordField> recordFields(const Entity& entity) {
    std::unordered_map<const ExplicitAttribute*, const DerivedAttribute*> redeclarations; // the nearest ones
    for (const Entity* link : entity.chain) {
        for (const DerivedAttribute& attribute : link->derivedAttributes) {
            redeclarations.emplace(attribute.redeclared, &attribute);
        }
    }
    std::vector<RecordField> fields;
    for (auto link = entity.chain.rbegin(); link != entity.chain.rend(); ++link) {
        for (const ExplicitAttribute& attribute : (*link)->explicitAttributes) {
            const auto found = redeclarations.find(&attribute);
            fields.push_back({&attribute, found == redeclarations.end() ? nullptr : found->second});
        }
    }
    return fields;
}

} // namespace

void deriveTypeFacts(Schema& schema) {
    for (auto& type : schema.definedTypes) {
        type.underlying = followTo(type.type);
    }
    for (auto& select : schema.selects) {
        Alternatives{select.alternatives}.add(select);
    }
}

void deriveChains(Schema& schema) {
    std::unordered_set<const Entity*> placed;
    for (auto& entity : schema.entities) {
        for (const Entity* link = &entity; link; link = link->supertype) {
            entity.chain.push_back(link);
        }
        for (auto link = entity.chain.rbegin(); link != entity.chain.rend(); ++link) {
            if (placed.insert(*link).second) {
                schema.supertypesFirst.push_back(*link);
            }
        }
    }
    for (auto& supertype : schema.entities) {
        for (const auto& entity : schema.entities) {
            if (entity.supertype == &supertype) {
                supertype.subtypes.push_back(&entity);
            }
        }
    }
}

void deriveAttributeFacts(Schema& schema) {
    std::vector<const InverseAttribute*> inverses;
    for (const auto& entity : schema.entities) {
        for (const auto& inverse : entity.inverseAttributes) {
            inverses.push_back(&inverse);
        }
    }
    for (auto& entity : schema.entities) {
        entity.recordFields = recordFields(entity);
        entity.isInverted = std::ranges::any_of(
            inverses, [&](const InverseAttribute* inverse) { return entity.isKindOf(*inverse->target); });
        for (auto& attribute : entity.explicitAttributes) {
            std::ranges::copy_if(inverses, std::back_inserter(attribute.inverses),
                                 [&](const InverseAttribute* inverse) { return inverse->inverted == &attribute; });
        }
    }
}

} // namespace kpifcgen::facts
