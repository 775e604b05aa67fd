#include "ContentKeys.h"

#include <algorithm>

using namespace KP_SDAI;

namespace kpifc {

std::uint64_t contentHash(const ModelNodes& nodes, ModelNodes::Node node, ValueForm& form) {
    const KpIfcEntityType* type = nodes.type(node);
    std::uint64_t hash = hashOf(type ? type->name() : "");
    for (std::size_t field = 0; field < nodes.fieldCount(node); ++field) {
        const KpIfcAttributeFacts* row = nodes.row(node, field);
        if (!row || row->kind != KpIfcFieldKind::guid) {
            hash = hashOf(form.field(node, field), hash);
        }
    }
    return hash;
}

namespace {

using Node = ModelNodes::Node;

/// The strongly connected components of the references, found by an own stack, for chains may be as long as the model.
/// A component ends after all that it refers to.
class Components {
public:
    Components(const ModelNodes& nodes, const std::vector<std::uint64_t>& identities)
        : m_nodes(nodes), m_identities(identities), m_order(nodes.size(), kNew), m_lowest(nodes.size()) {}

    /// Calls `visit(const std::vector<Node>& members, bool isCycle)` for every component of nodes without identity, and
    /// `refer(Node target)` for every reference.
    template <class Visit, class Refer>
    void walk(Visit visit, Refer refer) {
        for (Node node = 0; node < m_nodes.size(); ++node) {
            if (m_order[node] == kNew) {
                enter(node, refer);
                while (!m_frames.empty()) {
                    step(visit, refer);
                }
            }
        }
    }

private:
    static constexpr std::uint32_t kNew = UINT32_MAX;
    static constexpr std::uint32_t kDone = UINT32_MAX - 1;
    struct Frame {
        Node node;
        std::size_t next; ///< of m_targets
        std::size_t first;
        bool refersToItself;
    };

    template <class Refer>
    void enter(Node node, Refer& refer) {
        const std::size_t first = m_targets.size();
        for (std::size_t field = 0; field < m_nodes.fieldCount(node); ++field) {
            m_nodes.targets(node, field, m_targets);
        }
        bool refersToItself = false;
        for (std::size_t i = first; i < m_targets.size(); ++i) {
            refer(m_targets[i]);
            refersToItself = refersToItself || m_targets[i] == node;
        }
        if (m_identities[node]) {
            m_targets.resize(first);
            m_order[node] = kDone;
            return;
        }
        m_order[node] = m_lowest[node] = m_count++;
        m_open.push_back(node);
        m_frames.push_back({node, first, first, refersToItself});
    }

    template <class Visit, class Refer>
    void step(Visit& visit, Refer& refer) {
        Frame& frame = m_frames.back();
        if (frame.next < m_targets.size()) {
            const Node target = m_targets[frame.next++];
            if (m_identities[target]) {
                return;
            }
            if (m_order[target] == kNew) {
                enter(target, refer); // the frame is no longer good
            } else if (m_order[target] != kDone) {
                m_lowest[frame.node] = std::min(m_lowest[frame.node], m_order[target]);
            }
            return;
        }
        const Frame ended = frame;
        m_targets.resize(ended.first);
        m_frames.pop_back();
        if (!m_frames.empty()) {
            std::uint32_t& lowest = m_lowest[m_frames.back().node];
            lowest = std::min(lowest, m_lowest[ended.node]);
        }
        if (m_lowest[ended.node] == m_order[ended.node]) {
            close(ended, visit);
        }
    }

    template <class Visit>
    void close(const Frame& ended, Visit& visit) {
        m_members.clear();
        Node member = ModelNodes::kNone;
        do {
            member = m_open.back();
            m_open.pop_back();
            m_order[member] = kDone;
            m_members.push_back(member);
        } while (member != ended.node);
        visit(m_members, m_members.size() > 1 || ended.refersToItself);
    }

    const ModelNodes& m_nodes;
    const std::vector<std::uint64_t>& m_identities;
    std::vector<std::uint32_t> m_order;
    std::vector<std::uint32_t> m_lowest;
    std::uint32_t m_count = 0;
    std::vector<Node> m_open;
    std::vector<Node> m_targets; ///< of the nodes that have a frame, those of the last one at the end
    std::vector<Frame> m_frames;
    std::vector<Node> m_members;
};

/// How far along a cycle nodes are told apart.
constexpr std::size_t kMostRounds = 16;

} // namespace

ContentKeys::ContentKeys(const ModelNodes& nodes, const std::vector<std::uint64_t>& identities)
    : keys(identities), isReferredTo(nodes.size()) {
    ValueForm form(nodes, keys);
    std::vector<std::uint64_t> next;
    Components(nodes, identities)
        .walk(
            [&](const std::vector<Node>& members, bool isCycle) {
                // Those of a cycle begin alike and learn of each other round by round, so that it does not matter where
                // the walk came to it.
                const std::size_t rounds = isCycle ? std::min(members.size() + 1, kMostRounds) : 1;
                for (std::size_t round = 0; round < rounds; ++round) {
                    next.clear();
                    for (const Node member : members) {
                        next.push_back(contentHash(nodes, member, form));
                    }
                    for (std::size_t i = 0; i < members.size(); ++i) {
                        keys[members[i]] = next[i];
                    }
                }
                upwards.insert(upwards.end(), members.begin(), members.end());
            },
            [this](Node target) { isReferredTo[target] = true; });
}

} // namespace kpifc
