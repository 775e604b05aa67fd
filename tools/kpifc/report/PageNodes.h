#pragma once

#include "BuildingTree.h"

#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcReport.h>

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kpifc::page {

/// An attribute that says who made an instance and when: it ties everything to everything.
bool isOwnerHistory(const KP_SDAI::KpIfcAttributeFacts& row);

/// The instances that a page tells of: objects and types, what relations tie to them, what all these refer to, and
/// whatever has a finding, also where it is kept as text. Relations and properties are told of with the objects that
/// they concern; shapes and placements, which are most of a model, not at all.
class PageNodes {
public:
    PageNodes(const KP_SDAI::KpIfcModel& model, const BuildingTree& tree, const KP_SDAI::KpIfcReport& findings);

    /// Ascending by instance name.
    const std::vector<KP_SDAI::KpDbObjectId>& handles() const { return m_handles; }
    bool contains(const KP_SDAI::KpDbObjectId& handle) const { return m_places.count(handle.slot()) != 0; }
    /// Which of handles() it is; it must be one of them.
    std::uint32_t placeOf(const KP_SDAI::KpDbObjectId& handle) const { return m_places.at(handle.slot()); }

    bool isObject(const KP_SDAI::KpIfcEntityBase& instance) const { return instance.isKindOf(m_object); }
    bool isRelation(const KP_SDAI::KpIfcEntityBase& instance) const { return instance.isKindOf(m_relation); }

private:
    void enter(const KP_SDAI::KpDbObjectId& handle);
    void enterReferences(KP_SDAI::KpIfcEntityBase& instance);
    bool isToldOf(const KP_SDAI::KpIfcEntityBase& instance);

    const KP_SDAI::KpIfcEntityType* m_object;
    const KP_SDAI::KpIfcEntityType* m_relation;
    std::vector<const KP_SDAI::KpIfcEntityType*> m_leftOut;
    std::unordered_map<const KP_SDAI::KpIfcEntityType*, bool> m_isToldOf;
    std::vector<KP_SDAI::KpDbObjectId> m_handles;
    std::unordered_map<const KP_SDAI::KpIfcSlot*, std::uint32_t> m_places;
};

} // namespace kpifc::page
