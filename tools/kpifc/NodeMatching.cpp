#include "NodeMatching.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

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

std::size_t fieldOfName(const ModelNodes& nodes, Node node, std::string_view name) {
    std::size_t field = 0;
    while (field < nodes.fieldCount(node) && nodes.row(node, field)->name != name) {
        ++field;
    }
    return field;
}

} // namespace

NodeMatching::Side::Side(const ModelNodes& all, std::vector<std::uint64_t> known)
    : nodes(all), identities(std::move(known)), content(all, identities), counterparts(all.size(), kNone) {}

NodeMatching::NodeMatching(const ModelNodes& a, const ModelNodes& b)
    : m_sides{Side(a, identities(a, b)), Side(b, identities(b, a))} {
    // All that is equal goes before anything that changed, so that nothing is taken for a change of something else.
    matchIdentities();
    descendToEqual();
    matchContents(true);
    descendToChanged();
    matchUnowned();
    descendToChanged();
    matchContents(false);
    descendToChanged();
}

std::vector<std::uint64_t> NodeMatching::keys(int side) const {
    std::vector<std::uint64_t> keys = m_sides[side].content.keys;
    for (Node node = 0; side == 0 && node < keys.size(); ++node) {
        if (!isOpen(0, node)) {
            keys[node] = key(1, counterpart(0, node));
        }
    }
    return keys;
}

void NodeMatching::match(Node a, Node b) {
    m_sides[0].counterparts[a] = b;
    m_sides[1].counterparts[b] = a;
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
        const std::size_t other = sameFields ? field : fieldOfName(b, pair.b, row->name);
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
    NodeGroups open = targets;
    dropMatched(open);
    matchInOrder(open, [this](int side, Node node) { return key(side, node); });
}

void NodeMatching::matchChanged(const NodeGroups& targets, bool isSet) {
    if (isSet) {
        return matchClosest(targets, false);
    }
    // What lies in both lists between nodes that are known to be the same.
    std::unordered_map<Node, std::size_t> places;
    for (std::size_t i = 0; i < targets[1].size(); ++i) {
        places.emplace(targets[1][i], i);
    }
    NodeGroups between;
    std::size_t next = 0;
    const auto close = [&](std::size_t end) {
        between[1].assign(targets[1].begin() + static_cast<std::ptrdiff_t>(next),
                          targets[1].begin() + static_cast<std::ptrdiff_t>(end));
        matchClosest(between, true);
        between[0].clear();
    };
    for (const Node node : targets[0]) {
        const auto found = isOpen(0, node) ? places.end() : places.find(counterpart(0, node));
        if (found != places.end() && found->second >= next) {
            close(found->second);
            next = found->second + 1;
        } else {
            between[0].push_back(node);
        }
    }
    close(targets[1].size());
}

void NodeMatching::matchClosest(NodeGroups group, bool byPlace) {
    dropMatched(group);
    if (group[0].empty() || group[1].empty()) {
        return;
    }
    const bool isSingle = group[0].size() == 1 && group[1].size() == 1;
    if (!isSingle) {
        matchAllButOne(group);
        matchUnique(group, [this](int side, Node node) {
            return hashOf(std::to_string(m_sides[side].nodes.name(node)), kindOf(side, node));
        });
    }
    if (byPlace && group[0].size() == group[1].size()) {
        const NodeGroups both = group;
        for (std::size_t i = 0; i < both[0].size(); ++i) {
            if (kindOf(0, both[0][i]) == kindOf(1, both[1][i]) && isOpen(0, both[0][i]) && isOpen(1, both[1][i])) {
                match(both[0][i], both[1][i]);
            }
        }
        return;
    }
    matchInOrder(group, [this](int side, Node node) { return labelOf(side, node); });
}

void NodeMatching::matchUnowned() {
    NodeGroups group;
    for (const int side : {0, 1}) {
        for (Node node = 0; node < m_sides[side].nodes.size(); ++node) {
            if (isOpen(side, node) && !m_sides[side].content.isReferredTo[node]) {
                group[side].push_back(node);
            }
        }
    }
    matchAllButOne(group);
    matchUnique(group, [this](int side, Node node) {
        return hashOf(std::to_string(m_sides[side].nodes.name(node)), kindOf(side, node));
    });
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

/// Matches those whose key no other of their side has.
template <class KeyOf>
void NodeMatching::matchUnique(NodeGroups& group, KeyOf keyOf) {
    std::unordered_map<std::uint64_t, NodeGroups> buckets;
    for (const int side : {0, 1}) {
        for (const Node node : group[side]) {
            buckets[keyOf(side, node)][side].push_back(node);
        }
    }
    for (const Node node : group[0]) {
        const NodeGroups& bucket = buckets[keyOf(0, node)];
        if (bucket[0].size() == 1 && bucket[1].size() == 1) {
            match(node, bucket[1].front());
        }
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

/// Matches those that differ in one attribute, where no others have the rest.
void NodeMatching::matchAllButOne(NodeGroups& group) {
    using Keys = std::vector<std::uint64_t>;
    std::unordered_map<Node, Keys> keys[2];
    std::size_t mostFields = 0;
    for (const int side : {0, 1}) {
        const ModelNodes& nodes = m_sides[side].nodes;
        ValueForm form(nodes, m_sides[side].content.keys);
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
        matchUnique(group, [&](int side, Node node) {
            const Keys& own = keys[side].at(node);
            // One of its own where there is nothing to go by.
            return field < own.size() && own[field] ? own[field] : mixed(2 * std::uint64_t{node} + (side ? 1 : 0));
        });
    }
}

/// Each once, matched ones left out.
void NodeMatching::dropMatched(NodeGroups& group) const {
    for (const int side : {0, 1}) {
        std::vector<Node>& nodes = group[side];
        std::erase_if(nodes, [this, side](Node node) { return !isOpen(side, node); });
        std::unordered_set<Node> seen;
        if (nodes.size() > 1) {
            std::erase_if(nodes, [&seen](Node node) { return !seen.insert(node).second; });
        }
    }
}

/// Equal for nodes that may be versions of each other: of one entity, and with one GlobalId or none.
std::uint64_t NodeMatching::kindOf(int side, Node node) const {
    const ModelNodes& nodes = m_sides[side].nodes;
    const KpIfcEntityType* type = nodes.type(node);
    return hashOf(nodes.globalId(node), hashOf(type ? type->name() : "", nodes.isText(node)));
}

/// The same, and their attribute Name, if there is one, says the same.
std::uint64_t NodeMatching::labelOf(int side, Node node) const {
    const ModelNodes& nodes = m_sides[side].nodes;
    const std::size_t field = nodes.isText(node) ? 0 : fieldOfName(nodes, node, "Name");
    if (nodes.isText(node) || field == nodes.fieldCount(node)) {
        return kindOf(side, node);
    }
    ValueForm form(nodes, m_sides[side].content.keys);
    return hashOf(form.field(node, field), kindOf(side, node));
}

} // namespace kpifc
