#pragma once

#include "BuildingTree.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace kpifc {

/// What of a building's structure is shown.
struct TreeOptions {
    std::optional<std::size_t> depth; ///< levels below the roots; none for all
    bool listElements = false;        ///< each by itself, rather than grouped by type
};

/// What is shown in one place: a node, or elements of one type below one item.
struct TreeItem {
    const KP_SDAI::KpIfcEntityType* type;
    std::vector<std::size_t> nodes;
    bool isGroup;
    bool isContained;
    bool isRepeated;
};

/// Items for these nodes, which have one place in common: parts before what is contained; in each, single nodes in
/// their order before groups in the order of the names of their types.
std::vector<TreeItem> itemsOf(const BuildingTree& tree, const std::vector<std::size_t>& nodes, bool listElements);
/// Items for what lies directly below an item.
std::vector<TreeItem> itemsBelow(const BuildingTree& tree, const TreeItem& item, bool listElements);
/// Number of nodes anywhere below an item.
std::size_t countBelow(const BuildingTree& tree, const TreeItem& item);

/// Walks the items below some roots, which are level 0. Calls `enter(const TreeItem&, level, hidden)`, where `hidden`
/// is the number of nodes below that are too deep to be shown, then the same for what is below, then `leave(const
/// TreeItem&, level)`. Needs no deep stack of calls.
template <class Visitor>
void walkItems(const BuildingTree& tree, const std::vector<std::size_t>& roots, const TreeOptions& options,
               Visitor& visitor) {
    struct Level {
        std::vector<TreeItem> items;
        std::size_t next = 0;
    };
    std::vector<Level> path;
    path.push_back({itemsOf(tree, roots, options.listElements)});
    while (!path.empty()) {
        Level& level = path.back();
        if (level.next == level.items.size()) {
            path.pop_back();
            if (!path.empty()) {
                visitor.leave(path.back().items[path.back().next - 1], path.size() - 1);
            }
            continue;
        }
        const TreeItem& item = level.items[level.next++];
        const std::size_t depth = path.size() - 1;
        const bool isCut = options.depth && depth >= *options.depth;
        visitor.enter(item, depth, isCut ? countBelow(tree, item) : 0);
        path.push_back({isCut ? std::vector<TreeItem>() : itemsBelow(tree, item, options.listElements)});
    }
}

} // namespace kpifc
