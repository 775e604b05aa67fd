#include "TreeItems.h"

#include <map>
#include <string_view>
#include <tuple>

namespace kpifc {

std::vector<TreeItem> itemsOf(const BuildingTree& tree, const std::vector<std::size_t>& nodes, bool listElements) {
    std::vector<TreeItem> items;
    for (const bool isContained : {false, true}) {
        std::map<std::tuple<std::string_view, bool>, TreeItem> groups; // by type, those shown above last
        for (const std::size_t index : nodes) {
            const BuildingTree::Node& node = tree.nodes[index];
            if (node.isContained != isContained) {
                continue;
            }
            TreeItem item{.type = node.instance->getInstanceType(),
                          .nodes = {index},
                          .isGroup = node.isElement && !listElements,
                          .isContained = isContained,
                          .isRepeated = node.isRepeated};
            if (!item.isGroup) {
                items.push_back(std::move(item));
                continue;
            }
            const auto [group, isNew] = groups.try_emplace({item.type->displayName(), item.isRepeated}, item);
            if (!isNew) {
                group->second.nodes.push_back(index);
            }
        }
        for (auto& [key, group] : groups) {
            items.push_back(std::move(group));
        }
    }
    return items;
}

std::vector<TreeItem> itemsBelow(const BuildingTree& tree, const TreeItem& item, bool listElements) {
    std::vector<std::size_t> below;
    for (const std::size_t node : item.nodes) {
        for (std::size_t next = node + 1; next < tree.nodes[node].end; next = tree.nodes[next].end) {
            below.push_back(next);
        }
    }
    return itemsOf(tree, below, listElements);
}

std::size_t countBelow(const BuildingTree& tree, const TreeItem& item) {
    std::size_t count = 0;
    for (const std::size_t node : item.nodes) {
        count += tree.nodes[node].end - node - 1;
    }
    return count;
}

} // namespace kpifc
