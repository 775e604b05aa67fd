#include "facts/Attributes.h"

#include "facts/Names.h"
#include "facts/Text.h"

#include <algorithm>

namespace kpifcgen::facts {

namespace {

/// Pointer to the element of that name, null if there is none.
auto findNamed(const auto& range, std::string_view name) -> decltype(&*range.begin()) {
    const auto found = std::ranges::find_if(range, [&](const auto& element) { return element.name == name; });
    return found == range.end() ? nullptr : &*found;
}

/// An attribute that the entity itself declares.
std::optional<AttributeRef> findOwn(const Entity& entity, std::string_view name) {
    if (const auto* found = findNamed(entity.explicitAttributes, name)) {
        return found;
    }
    if (const auto* found = findNamed(entity.derivedAttributes, name)) {
        return found;
    }
    if (const auto* found = findNamed(entity.inverseAttributes, name)) {
        return found;
    }
    return std::nullopt;
}

std::optional<AttributeRef> findInChain(const Entity& entity, std::string_view name) {
    for (const Entity* link : entity.chain) {
        if (const auto found = findOwn(*link, name)) {
            return found;
        }
    }
    return std::nullopt;
}

bool canRefer(const TypeRef& type, const Entity& entity) {
    const TypeRef stripped = underlying(type);
    if (const auto* aggregation = std::get_if<const Aggregation*>(&stripped)) {
        return canRefer((*aggregation)->element, entity);
    }
    if (const auto* select = std::get_if<const Select*>(&stripped)) {
        return std::ranges::any_of((*select)->alternatives, [&](const TypeRef& one) { return canRefer(one, entity); });
    }
    const auto* other = std::get_if<const Entity*>(&stripped);
    return other && ((*other)->isKindOf(entity) || entity.isKindOf(**other));
}

class AttributeLinker {
public:
    AttributeLinker(const syntax::Entity& written, Entity& entity, Diagnostics& diagnostics)
        : m_written(written), m_entity(entity), m_diagnostics(diagnostics) {}

    void linkRedeclarations() {
        for (std::size_t i = 0; i < m_written.derivedAttributes.size(); ++i) {
            const auto& written = m_written.derivedAttributes[i];
            if (written.redeclaredIn) {
                m_entity.derivedAttributes[i].redeclared = findRedeclared(*written.redeclaredIn, written.name);
            }
        }
    }

    /// An inherited name may come back only as its redeclaration.
    void checkNames() const {
        UniqueNames own;
        for (const auto& attribute : m_written.explicitAttributes) {
            checkName(attribute.name, own);
        }
        for (const auto& attribute : m_written.derivedAttributes) {
            if (attribute.redeclaredIn) {
                own.add(attribute.name, "attribute", "declared", m_diagnostics);
            } else {
                checkName(attribute.name, own);
            }
        }
        for (const auto& attribute : m_written.inverseAttributes) {
            checkName(attribute.name, own);
        }
    }

    void linkInverses() {
        for (std::size_t i = 0; i < m_written.inverseAttributes.size(); ++i) {
            const auto& written = m_written.inverseAttributes[i];
            auto& inverse = m_entity.inverseAttributes[i];
            const auto found = findInChain(*inverse.target, written.attribute.text);
            const auto* inverted = found ? std::get_if<const ExplicitAttribute*>(&*found) : nullptr;
            if (!inverted) {
                report(written.attribute, "entity " + quoted(inverse.target->name) + " has no explicit attribute " +
                                              quoted(written.attribute.text));
            } else if (!canRefer((*inverted)->type, m_entity)) {
                report(written.attribute, "attribute " + quoted((*inverted)->owner->name + "." + (*inverted)->name) +
                                              " cannot refer to a " + quoted(m_entity.name));
            } else {
                inverse.inverted = *inverted;
            }
        }
    }

    void linkUniqueRules() {
        UniqueNames labels;
        for (const auto& written : m_written.uniqueRules) {
            labels.add(written.label, "rule", "declared", m_diagnostics);
            auto& rule = m_entity.uniqueRules.emplace_back();
            rule.label = written.label.text;
            for (const auto& attribute : written.attributes) {
                if (const auto found = findInChain(m_entity, attribute.text)) {
                    rule.attributes.push_back(*found);
                } else {
                    report(attribute,
                           "entity " + quoted(m_entity.name) + " has no attribute " + quoted(attribute.text));
                }
            }
        }
    }

private:
    const ExplicitAttribute* findRedeclared(const syntax::Name& supertype, const syntax::Name& attribute) {
        const auto above = m_entity.supertypes();
        const auto found = std::ranges::find(above, supertype.text, &Entity::name);
        if (found == above.end()) {
            report(supertype, quoted(supertype.text) + " is no supertype of " + quoted(m_entity.name));
            return nullptr;
        }
        const auto* redeclared = findNamed((*found)->explicitAttributes, attribute.text);
        if (!redeclared) {
            report(attribute,
                   "entity " + quoted(supertype.text) + " declares no explicit attribute " + quoted(attribute.text));
        }
        return redeclared;
    }

    void checkName(const syntax::Name& name, UniqueNames& own) const {
        if (!own.add(name, "attribute", "declared", m_diagnostics)) {
            return;
        }
        const std::string lower = lowerCase(name.text);
        const auto takenIn = [&](const auto& attributes) {
            return std::ranges::any_of(attributes, [&](const auto& one) { return lowerCase(one.name) == lower; });
        };
        for (const Entity* link : m_entity.supertypes()) {
            if (takenIn(link->explicitAttributes) || takenIn(link->derivedAttributes) ||
                takenIn(link->inverseAttributes)) {
                report(name,
                       "attribute " + quoted(name.text) + " is already declared in supertype " + quoted(link->name));
                return;
            }
        }
    }

    void report(const syntax::Name& name, std::string message) const {
        m_diagnostics.push_back({name.at, std::move(message)});
    }

    const syntax::Entity& m_written;
    Entity& m_entity;
    Diagnostics& m_diagnostics;
};

} // namespace

void linkAttributes(const syntax::Schema& written, Schema& schema, Diagnostics& diagnostics) {
    for (std::size_t i = 0; i < written.entities.size(); ++i) {
        AttributeLinker linker(written.entities[i], schema.entities[i], diagnostics);
        linker.linkRedeclarations();
        linker.checkNames();
        linker.linkInverses();
        linker.linkUniqueRules();
    }
}

} // namespace kpifcgen::facts
