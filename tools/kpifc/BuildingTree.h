#pragma once

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcModel.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace kpifc {

/// The structure of a building: what is decomposed into what, and which elements a spatial element contains.
///
/// Nodes stand in the order in which they are shown, each before those below it: first the parts of a decomposition,
/// then what is contained, both in the order of the relations in the file. Every instance has its parts below its first
/// node only, so neither cycles nor shared parts repeat anything.
struct BuildingTree {
    struct Node {
        const KP_SDAI::KpIfcEntityBase* instance;
        std::size_t end = 0; ///< index behind the last node below this one
        bool isContained;    ///< in a spatial element, rather than part of a decomposition or a root
        bool isElement;      ///< a product that is no spatial element
        bool isRepeated;     ///< has a node before this one
    };

    explicit BuildingTree(const KP_SDAI::KpIfcModel& model);

    std::vector<Node> nodes;
    std::vector<std::size_t> projects; ///< roots: all projects, but those that are part of one before
    /// Roots that no project leads to: spatial elements and what has parts, where these are not part of something.
    std::vector<std::size_t> others;
    /// Elements that have no node, counted by type in the order of its name.
    std::vector<std::pair<std::string, std::uint64_t>> uncontained;
};

} // namespace kpifc
