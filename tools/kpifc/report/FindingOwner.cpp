#include "report/FindingOwner.h"

#include <KpIfcCore/KpIfcReferences.h>

#include <algorithm>
#include <vector>

using namespace KP_SDAI;

namespace kpifc::page {

namespace {

constexpr std::size_t kMostReferrers = 20; ///< of what is not shared by everything
constexpr std::size_t kMostVisited = 500;

const KpIfcEntityBase* memberOf(KpIfcEntityBase& relation, const PageNodes& nodes) {
    const KpIfcEntityBase* member = nullptr;
    for (const KpIfcAttributeFacts* row : relation.getInstanceType()->recordFields()) {
        visitReferences(relation, *row, [&](const KpDbObjectId& handle) {
            const KpIfcEntityBase* instance = handle.openObject();
            member = !member && instance && nodes.isObject(*instance) ? instance : member;
        });
    }
    return member;
}

} // namespace

const KpIfcEntityBase* ownerOf(const KpIfcModel& model, const PageNodes& nodes, const KpDbObjectId& handle) {
    KpIfcEntityBase* const start = handle.openObject();
    if (start && nodes.isObject(*start)) {
        return nullptr;
    }
    if (start && nodes.isRelation(*start)) {
        return memberOf(*start, nodes);
    }
    std::vector<KpDbObjectId> visited{handle};
    for (std::size_t i = 0; i < visited.size() && visited.size() < kMostVisited; ++i) {
        const KpIfcArray<KpDbObjectId> referrers = model.referrers(visited[i]);
        if (referrers.size() > kMostReferrers) {
            continue;
        }
        for (const KpDbObjectId& each : referrers) {
            KpIfcEntityBase& referrer = *each.openObject();
            if (nodes.isObject(referrer)) {
                return &referrer;
            }
            if (!nodes.isRelation(referrer)) {
                if (std::find(visited.begin(), visited.end(), each) == visited.end()) {
                    visited.push_back(each);
                }
            } else if (const KpIfcEntityBase* member = memberOf(referrer, nodes)) {
                return member;
            }
        }
    }
    return nullptr;
}

} // namespace kpifc::page
