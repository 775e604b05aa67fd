#include "BuildingTree.h"

#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcReferences.h>

#include <map>
#include <unordered_map>
#include <unordered_set>

using namespace KP_SDAI;

namespace kpifc {

namespace {

using Node = BuildingTree::Node;

/// The entities that make up the structure.
struct Entities {
    explicit Entities(const KpIfcSchema& schema)
        : project(schema.findEntity("IfcProject")), product(schema.findEntity("IfcProduct")),
          element(schema.findEntity("IfcElement")), feature(schema.findEntity("IfcFeatureElement")),
          spatial(schema.findEntity("IfcSpatialStructureElement")),
          decomposition(schema.findEntity("IfcRelDecomposes")),
          containment(schema.findEntity("IfcRelContainedInSpatialStructure")) {}

    const KpIfcEntityType* project;
    const KpIfcEntityType* product;
    const KpIfcEntityType* element;
    const KpIfcEntityType* feature; ///< openings and the like: parts of the shape of an element
    const KpIfcEntityType* spatial;
    const KpIfcEntityType* decomposition;
    const KpIfcEntityType* containment;
};

/// What lies directly below an instance.
struct Below {
    std::vector<const KpIfcEntityBase*> parts;
    std::vector<const KpIfcEntityBase*> contained;

    std::size_t size() const { return parts.size() + contained.size(); }
};

class Builder {
public:
    Builder(BuildingTree& tree, const KpIfcModel& model) : m_tree(tree), m_entities(model.schema()) {
        for (const KpDbObjectId& handle : model.fileOrder()) {
            m_inOrder.push_back(handle.openObject());
        }
        for (KpIfcEntityBase* instance : m_inOrder) {
            if (instance->isKindOf(m_entities.decomposition)) {
                relate(*instance, "RelatingObject", "RelatedObjects", &Below::parts);
            } else if (instance->isKindOf(m_entities.containment)) {
                relate(*instance, "RelatingStructure", "RelatedElements", &Below::contained);
            }
        }
    }

    void build() {
        for (const KpIfcEntityBase* instance : m_inOrder) {
            if (instance->isKindOf(m_entities.project) && !isReached(instance)) {
                m_tree.projects.push_back(addAll(instance));
            }
        }
        for (const KpIfcEntityBase* instance : m_inOrder) {
            if (isPartOfStructure(instance) && !isReached(instance) && !m_above.count(instance)) {
                m_tree.others.push_back(addAll(instance));
            }
        }
        // What is left has something above it but no root: it lies in a cycle or below one.
        for (const KpIfcEntityBase* instance : m_inOrder) {
            if (isPartOfStructure(instance) && !isReached(instance)) {
                m_tree.others.push_back(addAll(cycleAbove(instance)));
            }
        }
        countUncontained();
    }

private:
    void relate(KpIfcEntityBase& relation, const char* one, const char* many,
                std::vector<const KpIfcEntityBase*> Below::*list) {
        KpIfcVariant value;
        peekAttribute(relation, one, value);
        const KpDbObjectId* handle = value.getIf<KpDbObjectId>();
        const KpIfcEntityBase* above = handle ? handle->openObject() : nullptr;
        const KpIfcAttributeFacts* row = findAttributeFacts(relation, many);
        if (!above || !row) {
            return;
        }
        visitReferences(relation, *row, [&](const KpDbObjectId& related) {
            if (const KpIfcEntityBase* instance = related.openObject()) {
                (m_below[above].*list).push_back(instance);
                m_above.emplace(instance, above);
            }
        });
    }

    bool isReached(const KpIfcEntityBase* instance) const { return m_reached.count(instance) != 0; }
    bool isPartOfStructure(const KpIfcEntityBase* instance) const {
        return m_below.count(instance) || instance->isKindOf(m_entities.spatial);
    }

    const KpIfcEntityBase* cycleAbove(const KpIfcEntityBase* instance) const {
        std::unordered_set<const KpIfcEntityBase*> passed;
        while (passed.insert(instance).second) {
            instance = m_above.at(instance);
        }
        return instance;
    }

    /// Adds an instance and all below it; chains may be longer than the stack of calls is deep.
    std::size_t addAll(const KpIfcEntityBase* root) {
        struct Place {
            std::size_t node;
            const Below* below;
            std::size_t next;
        };
        std::vector<Place> path;
        const auto add = [&](const KpIfcEntityBase* instance, bool isContained) {
            const bool isRepeated = !m_reached.insert(instance).second;
            const std::size_t node = m_tree.nodes.size();
            m_tree.nodes.push_back({.instance = instance,
                                    .end = node + 1,
                                    .isContained = isContained,
                                    .isElement = isElement(*instance),
                                    .isRepeated = isRepeated});
            const auto found = m_below.find(instance);
            if (!isRepeated && found != m_below.end()) {
                path.push_back({node, &found->second, 0});
            }
            return node;
        };
        const std::size_t first = add(root, false);
        while (!path.empty()) {
            Place& place = path.back();
            const Below& below = *place.below;
            const std::size_t next = place.next++;
            if (next < below.parts.size()) {
                add(below.parts[next], false);
            } else if (next < below.size()) {
                add(below.contained[next - below.parts.size()], true);
            } else {
                m_tree.nodes[place.node].end = m_tree.nodes.size();
                path.pop_back();
            }
        }
        return first;
    }

    bool isElement(const KpIfcEntityBase& instance) const {
        return instance.isKindOf(m_entities.product) && !instance.isKindOf(m_entities.spatial);
    }

    void countUncontained() {
        std::map<std::string, std::uint64_t> counts;
        for (const KpIfcEntityBase* instance : m_inOrder) {
            const bool isPlaced = instance->isKindOf(m_entities.element) && !instance->isKindOf(m_entities.feature);
            if (isPlaced && !isReached(instance)) {
                ++counts[instance->getInstanceType()->displayName()];
            }
        }
        m_tree.uncontained.assign(counts.begin(), counts.end());
    }

    BuildingTree& m_tree;
    const Entities m_entities;
    std::vector<KpIfcEntityBase*> m_inOrder;
    std::unordered_map<const KpIfcEntityBase*, Below> m_below;
    std::unordered_map<const KpIfcEntityBase*, const KpIfcEntityBase*> m_above; ///< by the first relation
    std::unordered_set<const KpIfcEntityBase*> m_reached;
};

} // namespace

BuildingTree::BuildingTree(const KpIfcModel& model) {
    Builder(*this, model).build();
}

} // namespace kpifc
