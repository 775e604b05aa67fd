#include "Diff.h"
#include "Files.h"
#include "Labels.h"
#include "Output.h"
#include "Terminal.h"
#include "Utf8.h"
#include "ValueText.h"

#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcAttributeAccess.h>

#include <fmt/format.h>

#include <algorithm>

using namespace KP_SDAI;

namespace kpifc {

namespace {

/// Of sets, and of lists with more members, only those are shown that the other one has not.
constexpr std::size_t kMostMembers = 4;
/// And no more of them than these.
constexpr std::size_t kMostShown = 10;

/// Writes nodes and values of one of the two models.
class SideText {
public:
    SideText(std::string& out, const ModelNodes& nodes)
        : m_out(out), m_nodes(nodes), m_labels(nodes.model()),
          m_values(out, m_labels, nodes.model().textIsUtf8(), kMostShown) {}

    void node(ModelNodes::Node node) {
        if (const KpIfcEntityBase* instance = m_nodes.instance(node)) {
            m_out += m_labels.reference(instance->objectId());
        } else if (const std::uint64_t name = m_nodes.name(node)) {
            m_out += fmt::format("#{} (kept as text)", name);
        } else {
            m_out += "text between records";
        }
    }

    void field(ModelNodes::Node node, std::optional<std::size_t> field) {
        if (!field) {
            m_out += '-';
        } else if (const std::string_view text = m_nodes.keptText(node, *field); !text.empty()) {
            m_out += printable(text);
        } else {
            m_values.attribute(value(node, *field));
        }
    }

    /// Number of members; 0 where the value is no aggregate.
    std::size_t memberCount(ModelNodes::Node node, std::optional<std::size_t> field) const {
        if (!field || !m_nodes.keptText(node, *field).empty()) {
            return 0;
        }
        const KpIfcVariant held = value(node, *field);
        const KpIfcAggr* aggregate = held.type() ? held.type()->aggregate(held.data()) : nullptr;
        return aggregate ? aggregate->size() : 0;
    }

    bool isSet(ModelNodes::Node node, std::size_t field) const {
        const KpIfcAttributeFacts* row = m_nodes.row(node, field);
        return row->kind == KpIfcFieldKind::aggregate && row->aggregate->isSet;
    }

    void members(ModelNodes::Node node, std::size_t field, const std::vector<std::uint32_t>& places) {
        const KpIfcVariant held = value(node, field);
        const KpIfcAggr* aggregate = held.type()->aggregate(held.data());
        for (std::size_t i = 0; i < std::min(places.size(), kMostShown); ++i) {
            KpIfcVariant member;
            aggregate->getElement(places[i], member);
            m_out += i ? ", " : "";
            m_values.attribute(member);
        }
        if (places.size() > kMostShown) {
            m_out += fmt::format(", ... {} in all", grouped(places.size()));
        }
    }

private:
    KpIfcVariant value(ModelNodes::Node node, std::size_t field) const {
        KpIfcVariant value;
        readAttribute(*m_nodes.instance(node), *m_nodes.row(node, field), value);
        return value;
    }

    std::string& m_out;
    const ModelNodes& m_nodes;
    const Labels m_labels;
    ValueText m_values;
};

class DiffText {
public:
    DiffText(const FileDifferences& differences, Output& output)
        : m_all(differences), m_output(output), m_out(output.text()), m_a(m_out, differences.a),
          m_b(m_out, differences.b) {}

    void write() {
        for (const HeaderChange& change : m_all.header) {
            m_out += styled(Style::yellow, "~") + " header " + change.name + ": ";
            headerTexts(change.a);
            m_out += " -> ";
            headerTexts(change.b);
            m_out += '\n';
        }
        nodes(styled(Style::red, "-"), m_a, m_all.models.removed);
        nodes(styled(Style::green, "+"), m_b, m_all.models.added);
        for (const InstanceChange& change : m_all.models.changed) {
            instance(change);
            m_output.passOn();
        }
        summary();
    }

private:
    void headerTexts(const std::vector<std::string>& texts) {
        m_out += texts.empty() ? "-" : "";
        for (std::size_t i = 0; i < texts.size(); ++i) {
            m_out += (i ? ", " : "") + quotedName(texts[i]);
        }
    }

    void nodes(const std::string& sign, SideText& side, const std::vector<ModelNodes::Node>& nodes) {
        for (const ModelNodes::Node node : nodes) {
            m_out += sign + ' ';
            side.node(node);
            m_out += '\n';
            m_output.passOn();
        }
    }

    void beginLine(const InstanceChange& change) {
        m_out += styled(Style::yellow, "~") + ' ';
        m_a.node(change.a);
        const std::uint64_t name = m_all.b.name(change.b);
        if (name != m_all.a.name(change.a)) {
            m_out += fmt::format(" (now #{})", name);
        }
        m_out += ' ';
    }

    void instance(const InstanceChange& change) {
        if (!areOfOneEntity(m_all.a, m_all.b, change)) {
            beginLine(change);
            m_out += "is now ";
            m_b.node(change.b);
            m_out += '\n';
        }
        for (const FieldChange& field : change.fields) {
            beginLine(change);
            m_out += fieldName(m_all, change, field) + ": ";
            values(change, field);
            m_out += '\n';
        }
    }

    void values(const InstanceChange& change, const FieldChange& field) {
        const std::size_t before = m_a.memberCount(change.a, field.a);
        const std::size_t after = m_b.memberCount(change.b, field.b);
        if (!before || !after || (!m_a.isSet(change.a, *field.a) && std::max(before, after) <= kMostMembers)) {
            m_a.field(change.a, field.a);
            m_out += " -> ";
            m_b.field(change.b, field.b);
            return;
        }
        if (!field.onlyA.empty()) {
            m_out += "no longer ";
            m_a.members(change.a, *field.a, field.onlyA);
        }
        if (!field.onlyB.empty()) {
            m_out += field.onlyA.empty() ? "now also " : "; now ";
            m_b.members(change.b, *field.b, field.onlyB);
        }
        if (field.onlyA.empty() && field.onlyB.empty()) {
            m_out += "in another order";
        }
        m_out += before == after ? fmt::format("; {} members", grouped(after))
                                 : fmt::format("; {} -> {} members", grouped(before), grouped(after));
    }

    void summary() {
        if (m_all.areNone()) {
            m_out += "no differences\n";
            return;
        }
        std::string line;
        const auto add = [&line](std::size_t count, const std::string& text) {
            line += count ? (line.empty() ? "" : ", ") + text : "";
        };
        const ModelDifferences& models = m_all.models;
        add(models.removed.size(), grouped(models.removed.size()) + " removed");
        add(models.added.size(), grouped(models.added.size()) + " added");
        add(models.changed.size(), fmt::format("{} of {} changed", counted(models.changedFields, "attribute"),
                                               counted(models.changed.size(), "instance")));
        add(m_all.header.size(), counted(m_all.header.size(), "header field") + " changed");
        m_out += line + '\n';
    }

    const FileDifferences& m_all;
    Output& m_output;
    std::string& m_out;
    SideText m_a;
    SideText m_b;
};

} // namespace

std::string fieldName(const FileDifferences& differences, const InstanceChange& change, const FieldChange& field) {
    const KpIfcAttributeFacts* row =
        field.a ? differences.a.row(change.a, *field.a) : differences.b.row(change.b, *field.b);
    return row ? row->name : "record";
}

void writeText(const FileDifferences& differences, Output& output) {
    DiffText(differences, output).write();
}

} // namespace kpifc
