#include "NodeMatching.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

using namespace KP_SDAI;

namespace kpifc {

namespace {

using Node = ModelNodes::Node;
constexpr Node kNone = ModelNodes::kNone;

/// The nodes whose GlobalId no other node of the model has.
std::unordered_map<std::string_view, Node> uniqueGlobalIds(const ModelNodes& nodes) {
    std::unordered_map<std::string_view, Node> found;
    for (Node node = 0; node < nodes.size(); ++node) {
        if (const std::string_view id = nodes.globalId(node); !id.empty()) {
            const auto [entry, isNew] = found.emplace(id, node);
            entry->second = isNew ? node : kNone;
        }
    }
    std::erase_if(found, [](const auto& entry) { return entry.second == kNone; });
    return found;
}

/// For each node of the first model: a key where both models have its GlobalId once, else 0.
std::vector<std::uint64_t> identities(const ModelNodes& nodes, const ModelNodes& others) {
    std::vector<std::uint64_t> keys(nodes.size());
    const auto known = uniqueGlobalIds(others);
    for (const auto& [id, node] : uniqueGlobalIds(nodes)) {
        keys[node] = known.count(id) ? hashOf(id) | 1 : 0;
    }
    return keys;
}

} // namespace

NodeMatching::Side::Side(const ModelNodes& all, std::vector<std::uint64_t> known)
    : nodes(all), identities(std::move(known)), content(all, identities), keys(content.keys),
      counterparts(all.size(), kNone) {}

NodeMatching::NodeMatching(const ModelNodes& a, const ModelNodes& b)
    : m_sides{Side(a, identities(a, b)), Side(b, identities(b, a))} {
    // All that is equal goes before anything that changed, so that nothing is taken for a change of something else.
    matchIdentities();
    descendToEqual();
    matchContents(true);
    descendToChanged();
    // Each round may find what another one needs; few are needed.
    constexpr int kMostRounds = 4;
    std::size_t known = SIZE_MAX;
    for (int round = 0; round < kMostRounds && known != m_changedQueue.size(); ++round) {
        known = m_changedQueue.size();
        refreshKeys();
        matchContents(true);
        matchContentsByName();
        descendToChanged();
        matchUnowned();
        descendToChanged();
    }
    matchContents(false);
    descendToChanged();
}

void NodeMatching::match(Node a, Node b) {
    m_sides[0].counterparts[a] = b;
    m_sides[1].counterparts[b] = a;
    m_sides[0].keys[a] = key(1, b);
    m_equalQueue.push_back({a, b});
    if (!haveSameContent(a, b)) {
        m_changedQueue.push_back({a, b});
    }
}

void NodeMatching::matchIdentities() {
    std::unordered_map<std::uint64_t, Node> known;
    for (Node node = 0; node < m_sides[1].nodes.size(); ++node) {
        if (m_sides[1].identities[node]) {
            known.emplace(m_sides[1].identities[node], node);
        }
    }
    for (Node node = 0; node < m_sides[0].nodes.size(); ++node) {
        if (m_sides[0].identities[node]) {
            match(node, known.at(m_sides[0].identities[node]));
        }
    }
}

void NodeMatching::descendToEqual() {
    while (!m_equalQueue.empty()) {
        const Pair pair = m_equalQueue.back();
        m_equalQueue.pop_back();
        forFields(pair, [this](const NodeGroups& targets, bool) { matchEqual(targets); });
    }
}

void NodeMatching::descendToChanged() {
    descendToEqual();
    while (m_changedNext < m_changedQueue.size()) {
        const Pair pair = m_changedQueue[m_changedNext++];
        forFields(pair, [this](const NodeGroups& targets, bool isSet) { matchChanged(targets, isSet); });
        descendToEqual();
    }
}

/// Calls `visit(targets, isSet)` for all attributes that both have and by which both refer to something.
template <class Visit>
void NodeMatching::forFields(const Pair& pair, Visit visit) {
    const ModelNodes& a = m_sides[0].nodes;
    const ModelNodes& b = m_sides[1].nodes;
    if (a.isText(pair.a) != b.isText(pair.b)) {
        return;
    }
    const bool sameFields = a.type(pair.a) == b.type(pair.b) || a.isText(pair.a);
    NodeGroups targets;
    for (std::size_t field = 0; field < a.fieldCount(pair.a); ++field) {
        const KpIfcAttributeFacts* row = a.row(pair.a, field);
        const std::size_t other = sameFields ? field : b.findField(pair.b, row->name);
        targets[0].clear();
        targets[1].clear();
        a.targets(pair.a, field, targets[0]);
        if (!targets[0].empty() && other < b.fieldCount(pair.b)) {
            b.targets(pair.b, other, targets[1]);
            if (!targets[1].empty()) {
                visit(targets, row && row->kind == KpIfcFieldKind::aggregate && row->aggregate->isSet);
            }
        }
    }
}

void NodeMatching::matchEqual(const NodeGroups& targets) {
    const auto [a, b] = std::tie(targets[0].front(), targets[1].front());
    if (targets[0].size() == 1 && targets[1].size() == 1) {
        if (isOpen(0, a) && isOpen(1, b) && key(0, a) == key(1, b)) {
            match(a, b);
        }
        return;
    }
    // Equal ones at the same place go before equal ones elsewhere.
    for (std::size_t i = 0; targets[0].size() == targets[1].size() && i < targets[0].size(); ++i) {
        const Node first = targets[0][i];
        const Node second = targets[1][i];
        if (isOpen(0, first) && isOpen(1, second) && key(0, first) == key(1, second)) {
            match(first, second);
        }
    }
    NodeGroups open = targets;
    dropMatched(open);
    matchInOrder(open, [this](std::size_t side, Node node) { return key(side, node); });
}

void NodeMatching::matchChanged(const NodeGroups& targets, bool isSet) {
    if (isSet && (targets[0].size() > 1 || targets[1].size() > 1)) {
        return matchClosest(targets);
    }
    // What lists begin and end with alike is left out; equal members count as the same, whatever they are matched with.
    const std::vector<Node>& a = targets[0];
    const std::vector<Node>& b = targets[1];
    std::size_t begin = 0;
    std::size_t endA = a.size();
    std::size_t endB = b.size();
    while (begin < endA && begin < endB && key(0, a[begin]) == key(1, b[begin])) {
        ++begin;
    }
    while (begin < endA && begin < endB && key(0, a[endA - 1]) == key(1, b[endB - 1])) {
        --endA;
        --endB;
    }
    const auto part = [begin](const std::vector<Node>& list, std::size_t end) {
        return std::vector<Node>(list.begin() + static_cast<std::ptrdiff_t>(begin),
                                 list.begin() + static_cast<std::ptrdiff_t>(end));
    };
    if (endA != endB) {
        return matchClosest({part(a, endA), part(b, endB)});
    }
    for (std::size_t i = begin; i < endA; ++i) {
        if (isOpen(0, a[i]) && isOpen(1, b[i]) && kindOf(0, a[i]) == kindOf(1, b[i])) {
            match(a[i], b[i]);
        }
    }
}

void NodeMatching::matchUnowned() {
    NodeGroups group;
    for (const std::size_t side : {0u, 1u}) {
        for (Node node = 0; node < m_sides[side].nodes.size(); ++node) {
            if (isOpen(side, node) && !m_sides[side].content.isReferredTo[node]) {
                group[side].push_back(node);
            }
        }
    }
    matchAllButOne(group);
    matchByReferences(group);
    matchByName(group);
}

/// Of those of one content, matches the ones of one instance name.
void NodeMatching::matchContentsByName() {
    const ModelNodes& others = m_sides[1].nodes;
    const std::vector<Node>& nodes = m_sides[0].content.upwards;
    for (auto node = nodes.rbegin(); node != nodes.rend(); ++node) {
        const Node other = isOpen(0, *node) ? others.find(others.model().find(m_sides[0].nodes.name(*node))) : kNone;
        if (other != kNone && isOpen(1, other) && key(0, *node) == key(1, other)) {
            match(*node, other);
            descendToEqual();
        }
    }
}

/// Makes the keys of what has no counterpart those of its content as it is when all that has one is taken for equal.
void NodeMatching::refreshKeys() {
    Side& side = m_sides[0];
    ValueForm form(side.nodes, side.keys);
    for (const Node node : side.content.upwards) {
        if (isOpen(0, node)) {
            side.keys[node] = contentHash(side.nodes, node, form);
        }
    }
}

void NodeMatching::matchContents(bool onlyEqualCounts) {
    struct Bucket {
        std::int64_t surplus = 0; ///< of the first model
        std::vector<Node> waiting;
    };
    std::unordered_map<std::uint64_t, Bucket> buckets;
    const std::vector<Node>& all = m_sides[1].content.upwards;
    for (const Node node : all) {
        if (isOpen(1, node)) {
            Bucket& bucket = buckets[key(1, node)];
            --bucket.surplus;
            bucket.waiting.push_back(node);
        }
    }
    std::vector<Node> open;
    for (const Node node : m_sides[0].content.upwards) {
        const auto found = isOpen(0, node) ? buckets.find(key(0, node)) : buckets.end();
        if (found != buckets.end()) {
            ++found->second.surplus;
            open.push_back(node);
        }
    }
    for (auto& [content, bucket] : buckets) {
        std::sort(bucket.waiting.rbegin(), bucket.waiting.rend());
    }
    // What refers to others goes before them, so that these follow it.
    for (auto node = open.rbegin(); node != open.rend(); ++node) {
        Bucket& bucket = buckets.find(key(0, *node))->second;
        if (!isOpen(0, *node) || (onlyEqualCounts && bucket.surplus != 0)) {
            continue;
        }
        while (!bucket.waiting.empty() && !isOpen(1, bucket.waiting.back())) {
            bucket.waiting.pop_back();
        }
        if (!bucket.waiting.empty()) {
            match(*node, bucket.waiting.back());
            descendToEqual();
        }
    }
}

} // namespace kpifc
