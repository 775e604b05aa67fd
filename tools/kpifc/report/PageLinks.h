#pragma once

#include "report/PageNodes.h"

#include <KpIfcCore/KpIfcModel.h>

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace kpifc::page {

/// How the instances of a page are tied together, told at both ends: by relations, whose other members are linked, and
/// by attributes of instances that refer to one.
class PageLinks {
public:
    /// Why an instance is linked: it is the `attribute` of an `entity`.
    struct Label {
        std::string inverse; ///< the inverse attribute that says so; empty where the schema declares none
        std::string entity;
        std::string attribute;
        bool isRelation; ///< linked are the other members of the relation, else the instances that refer to this one
        auto operator<=>(const Label&) const = default;
    };
    struct Link {
        std::uint32_t label; ///< which of labels()
        std::vector<std::uint32_t> places;
    };

    PageLinks(const KP_SDAI::KpIfcModel& model, const PageNodes& nodes);

    const std::vector<Label>& labels() const { return m_labels; }
    /// In the order in which the file ties them; each label once.
    const std::vector<Link>& of(std::uint32_t place) const { return m_links[place]; }

private:
    void enterRelation(KP_SDAI::KpIfcEntityBase& relation);
    void enterReferences(KP_SDAI::KpIfcEntityBase& referrer);
    std::uint32_t labelOf(const KP_SDAI::KpIfcEntityBase& member, const KP_SDAI::KpIfcEntityBase& referrer,
                          const KP_SDAI::KpIfcAttributeFacts& row, bool isRelation);
    std::vector<std::uint32_t>& places(std::uint32_t place, std::uint32_t label);

    using Key = std::tuple<const KP_SDAI::KpIfcEntityType*, const KP_SDAI::KpIfcEntityType*,
                           const KP_SDAI::KpIfcAttributeFacts*>;

    const PageNodes& m_nodes;
    std::vector<Label> m_labels;
    std::map<Label, std::uint32_t> m_indexes;
    std::map<Key, std::uint32_t> m_known; ///< labels by the entities of both ends
    std::vector<std::vector<Link>> m_links;
};

} // namespace kpifc::page
