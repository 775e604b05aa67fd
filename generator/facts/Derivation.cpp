#include "facts/Derivation.h"

#include <algorithm>
#include <unordered_set>

namespace kpifcgen::facts {

namespace {

TypeRef followTo(const TypeRef& type) {
    const auto* defined = std::get_if<const DefinedType*>(&type);
    return defined ? followTo((*defined)->type) : type;
}

void addAlternatives(const Select& select, std::vector<TypeRef>& alternatives, std::unordered_set<std::string>& seen) {
    for (const TypeRef& member : select.members) {
        if (const auto* nested = std::get_if<const Select*>(&member)) {
            addAlternatives(**nested, alternatives, seen);
        } else if (seen.insert(spell(member)).second) {
            alternatives.push_back(member);
        }
    }
}

const DerivedAttribute* redeclaration(const Entity& entity, const ExplicitAttribute& attribute) {
    for (const Entity* link : entity.chain) {
        const auto found = std::ranges::find(link->derivedAttributes, &attribute, &DerivedAttribute::redeclared);
        if (found != link->derivedAttributes.end()) {
            return &*found;
        }
    }
    return nullptr;
}

std::vector<RecordField> recordFields(const Entity& entity) {
    std::vector<RecordField> fields;
    for (auto link = entity.chain.rbegin(); link != entity.chain.rend(); ++link) {
        for (const ExplicitAttribute& attribute : (*link)->explicitAttributes) {
            fields.push_back({&attribute, redeclaration(entity, attribute)});
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
        std::unordered_set<std::string> seen;
        addAlternatives(select, select.alternatives, seen);
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
