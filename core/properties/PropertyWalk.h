#pragma once

#include "properties/PropertyEntities.h"

#include <string>
#include <unordered_set>
#include <vector>

/// Where the properties of an object stand: what it is defined by, down to the single entries.
namespace KP_SDAI {

/// A set and what attaches it to an object.
struct AttachedSet {
    KpIfcEntityBase* set;
    KpIfcEntityBase* holder; ///< the relation or the type object
    bool fromType;
};

/// The sets of an object, its own first, each once; those of its types, for occurrences. None for other instances.
std::vector<AttachedSet> attachedSets(const KpIfcEntityBase& object, const PropertyEntities& entities);

/// One entry of a set that holds no entries itself.
struct PropertyEntry {
    std::string path;
    KpIfcEntityBase* instance;
    /// What holds it, outermost first: the set, or the relation that overrides entries; then complex ones.
    std::vector<KpIfcEntityBase*> holders;
};

/// Walks the entries of one set. Complex ones are entered once, so that cycles end.
class PropertyWalk {
public:
    explicit PropertyWalk(const PropertyEntities& entities) : m_entities(entities) {}

    /// Calls `visit(const PropertyEntry&)` for the entries of a set in their order; entries that the relation overrides
    /// come first and hide those of the same path.
    template <class Visit>
    void walk(const AttachedSet& attached, Visit&& visit) {
        m_entered.clear();
        std::unordered_set<std::string> overridden;
        if (isKind(*attached.holder, m_entities.overridesProperties))
            descend(*attached.holder, m_entities.overriding, "", [&](const PropertyEntry& entry) {
                overridden.insert(entry.path);
                visit(entry);
            });
        m_entered.clear(); // both may hold the same complex one
        descend(*attached.set, m_entities.members(*attached.set), "", [&](const PropertyEntry& entry) {
            if (!overridden.contains(entry.path)) visit(entry);
        });
    }

private:
    static constexpr std::size_t kDeepest = 64;

    template <class Visit>
    void descend(KpIfcEntityBase& holder, const PropertyAttribute& members, const std::string& prefix, Visit&& visit) {
        if (m_entry.holders.size() > kDeepest) return;
        m_entry.holders.push_back(&holder);
        members.visitTargets(holder, [&](KpIfcEntityBase& entry) {
            std::string path = prefix + m_entities.nameOf(entry);
            if (m_entities.isComplex(entry)) {
                if (m_entered.insert(&entry).second) descend(entry, m_entities.members(entry), path + '/', visit);
                return;
            }
            m_entry.path = std::move(path);
            m_entry.instance = &entry;
            visit(m_entry);
        });
        m_entry.holders.pop_back();
    }

    const PropertyEntities& m_entities;
    PropertyEntry m_entry;
    std::unordered_set<const KpIfcEntityBase*> m_entered;
};

} // namespace KP_SDAI
