#include "report/PageNodes.h"

#include "Interrupt.h"

#include <KpIfcCore/KpIfcReferences.h>

#include <algorithm>
#include <string_view>

using namespace KP_SDAI;

namespace kpifc::page {

namespace {

constexpr const char* kLeftOut[] = {
    "IfcConnectionGeometry", "IfcObjectPlacement",       "IfcPhysicalQuantity",      "IfcPresentationStyle",
    "IfcProperty",           "IfcPropertyDefinition",    "IfcProductRepresentation", "IfcRelationship",
    "IfcRepresentation",     "IfcRepresentationContext", "IfcRepresentationItem",    "IfcRepresentationMap",
    "IfcShapeAspect",
};

} // namespace

bool isOwnerHistory(const KpIfcAttributeFacts& row) {
    return row.name == std::string_view("OwnerHistory");
}

PageNodes::PageNodes(const KpIfcModel& model, const BuildingTree& tree, const KpIfcReport& findings)
    : m_object(model.schema().findEntity("IfcObjectDefinition")),
      m_relation(model.schema().findEntity("IfcRelationship")) {
    for (const char* name : kLeftOut) {
        m_leftOut.push_back(model.schema().findEntity(name));
    }
    for (KpIfcEntityBase* instance : model.instances()) {
        stopIfInterrupted();
        if (isObject(*instance)) {
            enter(instance->objectId());
        } else if (isRelation(*instance)) {
            enterReferences(*instance);
        }
    }
    for (const BuildingTree::Node& node : tree.nodes) {
        enter(node.instance->objectId()); // whatever a wrong reference puts there
    }
    for (std::size_t i = 0; i < m_handles.size(); ++i) {
        stopIfInterrupted();
        if (KpIfcEntityBase* instance = m_handles[i].openObject()) {
            enterReferences(*instance);
        }
    }
    for (const KpIfcReportEntry& entry : findings.entries()) {
        enter(entry.instanceName ? model.find(entry.instanceName) : KpDbObjectId());
    }
    std::sort(m_handles.begin(), m_handles.end());
    for (std::size_t i = 0; i < m_handles.size(); ++i) {
        m_places[m_handles[i].slot()] = static_cast<std::uint32_t>(i);
    }
}

void PageNodes::enter(const KpDbObjectId& handle) {
    if (handle.isDefined() && m_places.try_emplace(handle.slot(), 0).second) {
        m_handles.push_back(handle);
    }
}

void PageNodes::enterReferences(KpIfcEntityBase& instance) {
    for (const KpIfcAttributeFacts* row : instance.getInstanceType()->recordFields()) {
        visitReferences(instance, *row, [this](const KpDbObjectId& handle) {
            const KpIfcEntityBase* target = handle.openObject();
            if (target && isToldOf(*target)) {
                enter(handle);
            }
        });
    }
}

bool PageNodes::isToldOf(const KpIfcEntityBase& instance) {
    const KpIfcEntityType* type = instance.getInstanceType();
    const auto [found, isNew] = m_isToldOf.try_emplace(type, false);
    if (isNew) {
        found->second = std::none_of(m_leftOut.begin(), m_leftOut.end(),
                                     [type](const KpIfcEntityType* each) { return each && type->isKindOf(each); });
    }
    return found->second;
}

} // namespace kpifc::page
