#include "report/PageLinks.h"

#include "Interrupt.h"

#include <KpIfcCore/KpIfcReferences.h>

#include <algorithm>
#include <string_view>
#include <utility>

using namespace KP_SDAI;

namespace kpifc::page {

namespace {

/// The inverse attribute of `member` through which an attribute of `referrer` is seen.
std::string inverseOf(const KpIfcEntityBase& member, const KpIfcEntityBase& referrer, const KpIfcAttributeFacts& row) {
    for (const KpIfcCounterpartFacts& counterpart : referrer.getInstanceType()->counterparts()) {
        if (std::string_view(counterpart.attribute->name) == row.name && member.isKindOf(*counterpart.declaring) &&
            (!counterpart.referrer || referrer.isKindOf(*counterpart.referrer))) {
            return (*counterpart.declaring)->facts()->inverses[counterpart.inverse].name;
        }
    }
    return {};
}

} // namespace

PageLinks::PageLinks(const KpIfcModel& model, const PageNodes& nodes)
    : m_nodes(nodes), m_links(nodes.handles().size()) {
    for (KpIfcEntityBase* instance : model.instances("IfcRelationship")) {
        stopIfInterrupted();
        enterRelation(*instance);
    }
    for (const KpDbObjectId& handle : nodes.handles()) {
        stopIfInterrupted();
        KpIfcEntityBase* instance = handle.openObject();
        if (instance && !nodes.isRelation(*instance)) {
            enterReferences(*instance);
        }
    }
}

void PageLinks::enterRelation(KpIfcEntityBase& relation) {
    struct Member {
        const KpIfcAttributeFacts* row;
        std::uint32_t place;
    };
    std::vector<Member> members;
    for (const KpIfcAttributeFacts* row : relation.getInstanceType()->recordFields()) {
        visitReferences(relation, *row, [&](const KpDbObjectId& handle) {
            if (m_nodes.contains(handle) && !isOwnerHistory(*row)) {
                members.push_back({row, m_nodes.placeOf(handle)});
            }
        });
    }
    if (members.empty() || members.front().row == members.back().row) {
        return; // one side only
    }
    for (const Member& member : members) {
        const KpIfcEntityBase* instance = m_nodes.handles()[member.place].openObject();
        if (!instance) {
            continue;
        }
        std::vector<std::uint32_t>& linked = places(member.place, labelOf(*instance, relation, *member.row, true));
        for (const Member& other : members) {
            if (other.row != member.row) {
                linked.push_back(other.place);
            }
        }
    }
}

void PageLinks::enterReferences(KpIfcEntityBase& referrer) {
    const std::uint32_t place = m_nodes.placeOf(referrer.objectId());
    for (const KpIfcAttributeFacts* row : referrer.getInstanceType()->recordFields()) {
        visitReferences(referrer, *row, [&](const KpDbObjectId& handle) {
            const KpIfcEntityBase* instance = handle.openObject();
            if (!instance || isOwnerHistory(*row) || !m_nodes.contains(handle)) {
                return;
            }
            std::vector<std::uint32_t>& linked =
                places(m_nodes.placeOf(handle), labelOf(*instance, referrer, *row, false));
            if (linked.empty() || linked.back() != place) {
                linked.push_back(place);
            }
        });
    }
}

std::uint32_t PageLinks::labelOf(const KpIfcEntityBase& member, const KpIfcEntityBase& referrer,
                                 const KpIfcAttributeFacts& row, bool isRelation) {
    const auto [known, isNew] = m_known.try_emplace({member.getInstanceType(), referrer.getInstanceType(), &row}, 0);
    if (isNew) {
        Label label{.inverse = inverseOf(member, referrer, row),
                    .entity = referrer.getInstanceType()->displayName(),
                    .attribute = row.name,
                    .isRelation = isRelation};
        const auto [found, isFirst] = m_indexes.try_emplace(label, static_cast<std::uint32_t>(m_labels.size()));
        if (isFirst) {
            m_labels.push_back(std::move(label));
        }
        known->second = found->second;
    }
    return known->second;
}

std::vector<std::uint32_t>& PageLinks::places(std::uint32_t place, std::uint32_t label) {
    std::vector<Link>& links = m_links[place];
    const auto found = std::find_if(links.begin(), links.end(), [=](const Link& link) { return link.label == label; });
    return found != links.end() ? found->places : links.emplace_back(Link{label, {}}).places;
}

} // namespace kpifc::page
