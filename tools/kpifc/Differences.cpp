#include "Differences.h"

#include "NodeMatching.h"
#include "ValueForm.h"

#include <array>
#include <map>
#include <string_view>
#include <unordered_map>

using namespace KP_SDAI;

namespace kpifc {

namespace {

using Node = ModelNodes::Node;

class Comparison {
public:
    Comparison(const ModelNodes& a, const ModelNodes& b, const NodeMatching& matching)
        : m_a(a), m_b(b), m_formA(a, matching.keys(0)), m_formB(b, matching.keys(1)) {}

    std::vector<FieldChange> changes(Node a, Node b) {
        std::vector<FieldChange> changes;
        if (m_a.isText(a) || m_b.isText(b)) {
            if (m_a.isText(a) != m_b.isText(b)) {
                changes.push_back({m_a.isText(a) ? std::optional<std::size_t>(0) : std::nullopt,
                                   m_b.isText(b) ? std::optional<std::size_t>(0) : std::nullopt,
                                   {},
                                   {}});
            } else {
                compare(a, 0, b, 0, changes);
            }
            return changes;
        }
        if (m_a.type(a) == m_b.type(b)) {
            for (std::size_t field = 0; field < m_a.fieldCount(a); ++field) {
                compare(a, field, b, field, changes);
            }
            return changes;
        }
        return changesOfOtherEntity(a, b);
    }

private:
    void compare(Node a, std::size_t fieldA, Node b, std::size_t fieldB, std::vector<FieldChange>& changes) {
        if (m_formA.field(a, fieldA) != m_formB.field(b, fieldB)) {
            FieldChange& change = changes.emplace_back(FieldChange{fieldA, fieldB, {}, {}});
            change.onlyA = surplus(m_formA.members(), m_formB.members());
            change.onlyB = surplus(m_formB.members(), m_formA.members());
        }
    }

    /// The members of one aggregate that another one has not, or not as often.
    static std::vector<std::uint32_t> surplus(const std::vector<std::string_view>& members,
                                              const std::vector<std::string_view>& others) {
        std::unordered_map<std::string_view, std::uint32_t> counts;
        for (const std::string_view other : others) {
            ++counts[other];
        }
        std::vector<std::uint32_t> surplus;
        for (std::uint32_t i = 0; i < members.size(); ++i) {
            const auto found = counts.find(members[i]);
            if (found != counts.end() && found->second) {
                --found->second;
            } else {
                surplus.push_back(i);
            }
        }
        return surplus;
    }

    std::vector<FieldChange> changesOfOtherEntity(Node a, Node b) {
        std::map<std::string_view, std::size_t> others;
        for (std::size_t field = 0; field < m_b.fieldCount(b); ++field) {
            others.emplace(m_b.row(b, field)->name, field);
        }
        std::vector<FieldChange> changes;
        for (std::size_t field = 0; field < m_a.fieldCount(a); ++field) {
            const auto other = others.find(m_a.row(a, field)->name);
            if (other == others.end()) {
                if (m_formA.field(a, field) != ValueForm::kNull) {
                    changes.push_back({field, std::nullopt, {}, {}});
                }
                continue;
            }
            compare(a, field, b, other->second, changes);
            others.erase(other);
        }
        for (const auto& [name, field] : others) {
            if (m_formB.field(b, field) != ValueForm::kNull) {
                changes.push_back({std::nullopt, field, {}, {}});
            }
        }
        return changes;
    }

    const ModelNodes& m_a;
    const ModelNodes& m_b;
    ValueForm m_formA;
    ValueForm m_formB;
};

} // namespace

ModelDifferences::ModelDifferences(const ModelNodes& a, const ModelNodes& b) {
    const NodeMatching matching(a, b);
    Comparison comparison(a, b, matching);
    for (Node node = 0; node < a.size(); ++node) {
        const Node other = matching.counterpart(0, node);
        if (other == ModelNodes::kNone) {
            removed.push_back(node);
            continue;
        }
        // GlobalIds have no say in contents.
        if (matching.haveSameContent(node, other) && a.globalId(node) == b.globalId(other)) {
            continue;
        }
        InstanceChange change{node, other, comparison.changes(node, other)};
        const bool isOther = !areOfOneEntity(a, b, change);
        if (isOther || !change.fields.empty()) {
            changedFields += change.fields.size() + isOther;
            changed.push_back(std::move(change));
        }
    }
    for (Node node = 0; node < b.size(); ++node) {
        if (matching.counterpart(1, node) == ModelNodes::kNone) {
            added.push_back(node);
        }
    }
}

bool areOfOneEntity(const ModelNodes& a, const ModelNodes& b, const InstanceChange& change) {
    return a.type(change.a) == b.type(change.b);
}

std::vector<HeaderChange> headerDifferences(const KpIfcHeader& a, const KpIfcHeader& b) {
    std::vector<HeaderChange> changes;
    const auto compare = [&changes](std::string name, std::vector<std::string> first, std::vector<std::string> second) {
        if (first != second) {
            changes.push_back({std::move(name), std::move(first), std::move(second)});
        }
    };
    for (const HeaderField& field : kHeaderFields) {
        compare(field.name, field.texts(a), field.texts(b));
    }
    std::map<std::string, std::array<std::vector<std::string>, 2>> others;
    for (const auto& [keyword, text] : otherHeaderRecords(a)) {
        others[keyword][0].push_back(text);
    }
    for (const auto& [keyword, text] : otherHeaderRecords(b)) {
        others[keyword][1].push_back(text);
    }
    for (auto& [keyword, texts] : others) {
        compare(keyword, std::move(texts[0]), std::move(texts[1]));
    }
    return changes;
}

} // namespace kpifc
