#include "NodeMatching.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

// Which of some nodes of one model come closest to which of another.

using namespace KP_SDAI;

namespace kpifc {

using Node = ModelNodes::Node;

void NodeMatching::matchClosest(NodeGroups group) {
    dropMatched(group);
    if (group[0].empty() || group[1].empty()) {
        return;
    }
    matchAllButOne(group);
    matchByReferences(group);
    matchByName(group);
    matchInOrder(group, [this](std::size_t side, Node node) { return labelOf(side, node); });
}

bool NodeMatching::areEqual(std::size_t side, const std::vector<Node>& nodes) const {
    return std::all_of(nodes.begin(), nodes.end(),
                       [&](Node node) { return key(side, node) == key(side, nodes.front()); });
}

/// Matches those that differ in one attribute, where no others have the rest.
void NodeMatching::matchAllButOne(NodeGroups& group) {
    using Keys = std::vector<std::uint64_t>;
    std::unordered_map<Node, Keys> keys[2];
    std::size_t mostFields = 0;
    for (const std::size_t side : {0u, 1u}) {
        const ModelNodes& nodes = m_sides[side].nodes;
        ValueForm form(nodes, m_sides[side].keys);
        for (const Node node : group[side]) {
            Keys& own = keys[side][node];
            std::size_t filled = 0;
            std::uint64_t sum = kindOf(side, node);
            for (std::size_t field = 0; field < nodes.fieldCount(node); ++field) {
                const KpIfcAttributeFacts* row = nodes.row(node, field);
                const bool counts = row && row->kind != KpIfcFieldKind::guid;
                const std::string_view value = counts ? form.field(node, field) : ValueForm::kNull;
                filled += value != ValueForm::kNull;
                own.push_back(value == ValueForm::kNull ? 0 : hashOf(value, field + 1));
                sum += own.back();
            }
            for (std::uint64_t& rest : own) {
                rest = filled > (rest ? 1u : 0u) ? sum - rest : 0;
            }
            mostFields = std::max(mostFields, own.size());
        }
    }
    for (std::size_t field = 0; field < mostFields && !group[0].empty() && !group[1].empty(); ++field) {
        matchUnique(group, [&](std::size_t side, Node node) {
            const Keys& own = keys[side].at(node);
            // One of its own where there is nothing to go by.
            return field < own.size() && own[field] ? own[field] : mixed(2 * std::uint64_t{node} + (side ? 1 : 0));
        });
    }
}

/// Keys of what a node refers to, and of what this refers to where it has no counterpart either; not all of a large
/// subtree.
std::vector<std::uint64_t> NodeMatching::referencesBelow(std::size_t side, Node node) const {
    constexpr std::size_t kMost = 64;
    const ModelNodes& nodes = m_sides[side].nodes;
    std::vector<Node> found{node};
    std::vector<Node> targets;
    std::vector<std::uint64_t> keys;
    for (std::size_t i = 0; i < found.size() && keys.size() < kMost; ++i) {
        targets.clear();
        for (std::size_t field = 0; field < nodes.fieldCount(found[i]); ++field) {
            nodes.targets(found[i], field, targets);
        }
        for (std::size_t t = 0; t < std::min(targets.size(), kMost); ++t) {
            keys.push_back(key(side, targets[t]));
            if (isOpen(side, targets[t])) {
                found.push_back(targets[t]);
            }
        }
    }
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    return keys;
}

/// Matches those that have most in common below them. What few have counts most.
void NodeMatching::matchByReferences(NodeGroups& group) {
    constexpr std::size_t kMostWithOne = 8;
    if (group[0].empty() || group[1].empty()) {
        return;
    }
    std::unordered_map<std::uint64_t, NodeGroups> having; // by places in the groups
    std::array<std::vector<std::uint64_t>, 2> labels;
    for (const std::size_t side : {0u, 1u}) {
        for (Node place = 0; place < group[side].size(); ++place) {
            labels[side].push_back(labelOf(side, group[side][place]));
            for (const std::uint64_t below : referencesBelow(side, group[side][place])) {
                having[below][side].push_back(place);
            }
        }
    }
    std::map<std::pair<Node, Node>, std::size_t> votes;
    for (const auto& [below, places] : having) {
        if (std::max(places[0].size(), places[1].size()) > kMostWithOne) {
            continue;
        }
        for (const Node a : places[0]) {
            for (const Node b : places[1]) {
                if (labels[0][a] == labels[1][b]) {
                    votes[{a, b}] += kMostWithOne * kMostWithOne / (places[0].size() * places[1].size());
                }
            }
        }
    }
    std::vector<std::pair<std::size_t, std::pair<Node, Node>>> ranking;
    for (const auto& [pair, count] : votes) {
        const bool sameName =
            m_sides[0].nodes.name(group[0][pair.first]) == m_sides[1].nodes.name(group[1][pair.second]);
        ranking.emplace_back(2 * count + (sameName ? 1 : 0), pair);
    }
    std::stable_sort(ranking.begin(), ranking.end(), [](const auto& x, const auto& y) { return x.first > y.first; });
    for (const auto& [count, pair] : ranking) {
        const Node a = group[0][pair.first];
        const Node b = group[1][pair.second];
        if (isOpen(0, a) && isOpen(1, b)) {
            match(a, b);
        }
    }
    dropMatched(group);
}

void NodeMatching::matchByName(NodeGroups& group) {
    matchUnique(group, [this](std::size_t side, Node node) {
        return hashOf(std::to_string(m_sides[side].nodes.name(node)), kindOf(side, node));
    });
}

/// Each once, matched ones left out.
void NodeMatching::dropMatched(NodeGroups& group) const {
    for (const std::size_t side : {0u, 1u}) {
        std::vector<Node>& nodes = group[side];
        std::erase_if(nodes, [this, side](Node node) { return !isOpen(side, node); });
        std::unordered_set<Node> seen;
        if (nodes.size() > 1) {
            std::erase_if(nodes, [&seen](Node node) { return !seen.insert(node).second; });
        }
    }
}

/// Equal for nodes that may be versions of each other: of one entity, and with one GlobalId or none.
std::uint64_t NodeMatching::kindOf(std::size_t side, Node node) const {
    const ModelNodes& nodes = m_sides[side].nodes;
    const KpIfcEntityType* type = nodes.type(node);
    return hashOf(nodes.globalId(node), hashOf(type ? type->name() : "", nodes.isText(node)));
}

/// The same, and their attribute Name, if there is one, says the same.
std::uint64_t NodeMatching::labelOf(std::size_t side, Node node) const {
    const ModelNodes& nodes = m_sides[side].nodes;
    const std::size_t field = nodes.findField(node, "Name");
    if (field == nodes.fieldCount(node)) {
        return kindOf(side, node);
    }
    ValueForm form(nodes, m_sides[side].keys);
    return hashOf(form.field(node, field), kindOf(side, node));
}

} // namespace kpifc
