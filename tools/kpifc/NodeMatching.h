#pragma once

#include "ContentKeys.h"
#include "ModelNodes.h"

#include <array>
#include <cstdint>
#include <vector>

namespace kpifc {

/// Nodes of the first and the second model.
using NodeGroups = std::array<std::vector<ModelNodes::Node>, 2>;

/// Which node of one model is which of another. In this order, two are the same where
///
/// 1. both have a GlobalId that no other of their model has;
/// 2. what refers to them by the same attribute is the same, and their content is;
/// 3. their content is the same, and as many nodes of the one model have it as of the other;
/// 4. what refers to them by the same attribute is the same, and of those that it refers to they are nearest;
/// 5. nothing refers to them, and all attributes but one are the same, or entity and name are;
/// 6. their content is the same.
///
/// Instances whose GlobalIds differ are the same only where all else is. Everything takes time in proportion to the
/// number of references.
class NodeMatching {
public:
    using Node = ModelNodes::Node;

    /// Both must outlive this.
    NodeMatching(const ModelNodes& a, const ModelNodes& b);

    /// The counterpart of a node of the first or second model (0, 1); kNone where it has none.
    Node counterpart(int side, Node node) const { return m_sides[side].counterparts[node]; }
    /// True where neither matched nodes nor what they refer to need comparing.
    bool haveSameContent(Node a, Node b) const { return !m_sides[0].identities[a] && key(0, a) == key(1, b); }
    /// Keys of the nodes of a side, equal across sides where nodes are the same: matched, or without counterpart but of
    /// one content.
    std::vector<std::uint64_t> keys(int side) const;

private:
    struct Side {
        Side(const ModelNodes& all, std::vector<std::uint64_t> known);
        const ModelNodes& nodes;
        std::vector<std::uint64_t> identities; ///< of those that have a counterpart by GlobalId, else 0
        ContentKeys content;
        std::vector<Node> counterparts;
    };
    struct Pair {
        Node a;
        Node b;
    };

    std::uint64_t key(int side, Node node) const { return m_sides[side].content.keys[node]; }
    bool isOpen(int side, Node node) const { return m_sides[side].counterparts[node] == ModelNodes::kNone; }
    void match(Node a, Node b);

    void matchIdentities();
    void descendToEqual();
    void descendToChanged();
    template <class Visit>
    void forFields(const Pair& pair, Visit visit);
    void matchEqual(const NodeGroups& targets);
    void matchChanged(const NodeGroups& targets, bool isSet);
    void matchClosest(NodeGroups group, bool byPlace);
    void matchContents(bool onlyEqualCounts);
    void matchUnowned();

    template <class KeyOf>
    void matchUnique(NodeGroups& group, KeyOf keyOf);
    template <class KeyOf>
    void matchInOrder(NodeGroups& group, KeyOf keyOf);
    void matchAllButOne(NodeGroups& group);
    void dropMatched(NodeGroups& group) const;
    std::uint64_t kindOf(int side, Node node) const;
    std::uint64_t labelOf(int side, Node node) const;

    std::array<Side, 2> m_sides;
    std::vector<Pair> m_equalQueue;   ///< matched ones: what of their references is equal is to be matched
    std::vector<Pair> m_changedQueue; ///< and then what is not
    std::size_t m_changedNext = 0;
};

} // namespace kpifc
