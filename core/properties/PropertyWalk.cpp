#include "properties/PropertyWalk.h"

#include <KpIfcCore/KpIfcArray.h>

#include <unordered_map>

namespace KP_SDAI {

namespace {

class Gathering {
public:
    explicit Gathering(const PropertyEntities& entities) : m_entities(entities) {}

    void add(KpIfcEntityBase& set, KpIfcEntityBase& holder, bool fromType) {
        if (!isKind(set, m_entities.setDefinition)) return;
        const auto [known, isNew] = m_places.emplace(&set, m_sets.size());
        if (isNew)
            m_sets.push_back({&set, &holder, fromType});
        else if (isKind(holder, m_entities.overridesProperties))
            m_sets[known->second].holder = &holder; // it says more than another relation to the same set
    }
    void addSetsOf(KpIfcEntityBase& type, bool fromType) {
        m_entities.typeSets.visitTargets(type, [&](KpIfcEntityBase& set) { add(set, type, fromType); });
    }
    std::vector<AttachedSet> take() { return std::move(m_sets); }

private:
    const PropertyEntities& m_entities;
    std::vector<AttachedSet> m_sets;
    std::unordered_map<const KpIfcEntityBase*, std::size_t> m_places;
};

} // namespace

std::vector<AttachedSet> attachedSets(const KpIfcEntityBase& object, const PropertyEntities& entities) {
    Gathering sets(entities);
    if (isKind(object, entities.typeObject)) {
        sets.addSetsOf(const_cast<KpIfcEntityBase&>(object), false);
        return sets.take();
    }
    if (!isKind(object, entities.object)) return {};
    KpIfcArray<KpDbObjectId> relations(8);
    peekInverse(object, kDefinedBy, relations);
    for (const KpDbObjectId& handle : relations) {
        KpIfcEntityBase* relation = handle.openObject();
        KpIfcEntityBase* set = relation ? entities.relatingDefinition.target(*relation) : nullptr;
        if (set) sets.add(*set, *relation, false);
    }
    for (const KpDbObjectId& handle : relations) {
        const KpIfcEntityBase* relation = handle.openObject();
        KpIfcEntityBase* type = relation ? entities.relatingType.target(*relation) : nullptr;
        if (type) sets.addSetsOf(*type, true);
    }
    return sets.take();
}

} // namespace KP_SDAI
