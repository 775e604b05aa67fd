#pragma once

#include "ContentKeys.h"
#include "ModelNodes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace kpifc {

/// Nodes of the first and the second model.
using NodeGroups = std::array<std::vector<ModelNodes::Node>, 2>;

/// Which node of one model is which of another. In this order, two are the same where
///
/// 1. both have a GlobalId that no other of their model has;
/// 2. what refers to them by the same attribute is the same, and their content is;
/// 3. their content is the same, and as many nodes of the one model have it as of the other;
/// 4. what refers to them by the same attribute is the same, and of all that it refers to they are closest;
/// 5. their content is the same when all is taken for equal that was found to be the same so far;
/// 6. nothing refers to them, and they are closest.
///
/// Closest are those that stand at the same place of a list; differ in one attribute; refer to the most that others do
/// not; have the same instance name. Instances whose GlobalIds differ are the same only where all else is. Everything
/// takes time in proportion to the number of references.
class NodeMatching {
public:
    using Node = ModelNodes::Node;

    /// Both must outlive this.
    NodeMatching(const ModelNodes& a, const ModelNodes& b);

    /// The counterpart of a node of the first or second model (0, 1); kNone where it has none.
    Node counterpart(std::size_t side, Node node) const { return m_sides[side].counterparts[node]; }
    /// True where neither matched nodes nor what they refer to need comparing.
    bool haveSameContent(Node a, Node b) const {
        return !m_sides[0].identities[a] && m_sides[0].content.keys[a] == m_sides[1].content.keys[b];
    }
    /// Keys of the nodes of a side, equal across sides where nodes are the same: matched, or without counterpart but of
    /// one content.
    const std::vector<std::uint64_t>& keys(std::size_t side) const { return m_sides[side].keys; }

private:
    struct Side {
        Side(const ModelNodes& all, std::vector<std::uint64_t> known);
        const ModelNodes& nodes;
        std::vector<std::uint64_t> identities; ///< of those that have a counterpart by GlobalId, else 0
        ContentKeys content;
        std::vector<std::uint64_t> keys; ///< those of the counterparts, where there are
        std::vector<Node> counterparts;
    };
    struct Pair {
        Node a;
        Node b;
    };

    std::uint64_t key(std::size_t side, Node node) const { return m_sides[side].keys[node]; }
    bool isOpen(std::size_t side, Node node) const { return m_sides[side].counterparts[node] == ModelNodes::kNone; }
    void match(Node a, Node b);

    void matchIdentities();
    void descendToEqual();
    void descendToChanged();
    template <class Visit>
    void forFields(const Pair& pair, Visit visit);
    void matchEqual(const NodeGroups& targets);
    void matchChanged(const NodeGroups& targets, bool isSet);
    void matchClosest(NodeGroups group);
    void matchContents(bool onlyEqualCounts);
    void matchContentsByName();
    void matchUnowned();
    void refreshKeys();

    template <class KeyOf>
    void matchUnique(NodeGroups& group, KeyOf keyOf);
    template <class KeyOf>
    void matchInOrder(NodeGroups& group, KeyOf keyOf);
    void matchAllButOne(NodeGroups& group);
    void matchByReferences(NodeGroups& group);
    void matchByName(NodeGroups& group);
    std::vector<std::uint64_t> referencesBelow(std::size_t side, Node node) const;
    bool areEqual(std::size_t side, const std::vector<Node>& nodes) const;
    void dropMatched(NodeGroups& group) const;
    std::uint64_t kindOf(std::size_t side, Node node) const;
    std::uint64_t labelOf(std::size_t side, Node node) const;

    std::array<Side, 2> m_sides;
    std::vector<Pair> m_equalQueue;   ///< matched ones: what of their references is equal is to be matched
    std::vector<Pair> m_changedQueue; ///< and then what is not
    std::size_t m_changedNext = 0;
};

/// Matches those whose key no other of their side has, but for equal ones.
template <class KeyOf>
void NodeMatching::matchUnique(NodeGroups& group, KeyOf keyOf) {
    std::unordered_map<std::uint64_t, NodeGroups> buckets;
    for (const std::size_t side : {0u, 1u}) {
        for (const Node node : group[side]) {
            buckets[keyOf(side, node)][side].push_back(node);
        }
    }
    for (const Node node : group[0]) {
        NodeGroups& bucket = buckets[keyOf(0, node)];
        // It does not matter which of several is taken where they are equal.
        const bool isClear = (bucket[0].size() >= bucket[1].size() && areEqual(0, bucket[0])) ||
                             (bucket[1].size() >= bucket[0].size() && areEqual(1, bucket[1]));
        if (isClear && bucket[0].size() + bucket[1].size() > 2) {
            matchInOrder(bucket, [this](std::size_t side, Node one) { return m_sides[side].nodes.name(one); });
        }
        for (std::size_t i = 0; isClear && i < std::min(bucket[0].size(), bucket[1].size()); ++i) {
            match(bucket[0][i], bucket[1][i]);
        }
        bucket[0].clear();
        bucket[1].clear();
    }
    dropMatched(group);
}

/// Matches those of one key, the first with the first.
template <class KeyOf>
void NodeMatching::matchInOrder(NodeGroups& group, KeyOf keyOf) {
    std::unordered_map<std::uint64_t, std::vector<Node>> waiting;
    for (auto node = group[1].rbegin(); node != group[1].rend(); ++node) {
        waiting[keyOf(1, *node)].push_back(*node);
    }
    for (const Node node : group[0]) {
        const auto found = waiting.find(keyOf(0, node));
        if (found != waiting.end() && !found->second.empty()) {
            match(node, found->second.back());
            found->second.pop_back();
        }
    }
    dropMatched(group);
}

} // namespace kpifc
