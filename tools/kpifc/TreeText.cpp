#include "Files.h"
#include "Labels.h"
#include "Terminal.h"
#include "Tree.h"

#include <fmt/format.h>

using namespace KP_SDAI;

namespace kpifc {

namespace {

/// Deeper levels are told by their number: the indentation of a long chain would outgrow all that it says.
constexpr std::size_t kDeepestIndent = 32;

class TextPrinter {
public:
    TextPrinter(const BuildingTree& tree, const KpIfcModel& model, Output& output)
        : m_tree(tree), m_labels(model), m_output(output) {}

    std::size_t indent = 0; ///< of level 0

    void enter(const TreeItem& item, std::size_t level, std::size_t hidden) {
        std::string& out = m_output.text();
        const std::size_t shown = indent + level;
        out.append(2 * std::min(shown, kDeepestIndent), ' ');
        if (shown > kDeepestIndent) {
            out += fmt::format("(level {}) ", level);
        }
        out += item.type->displayName();
        if (item.isGroup) {
            out += ' ' + grouped(item.nodes.size());
        } else {
            appendInstance(*m_tree.nodes[item.nodes.front()].instance);
        }
        out += item.isRepeated ? " (shown above)" : hidden ? fmt::format(" ({} below)", grouped(hidden)) : "";
        out += '\n';
        m_output.passOn();
    }
    void leave(const TreeItem&, std::size_t) {}

private:
    void appendInstance(const KpIfcEntityBase& instance) {
        std::string& out = m_output.text();
        const std::optional<std::string> name = m_labels.name(instance);
        const std::optional<std::string> longName = m_labels.longName(instance);
        if (name) {
            out += ' ' + quotedName(*name);
        }
        if (longName && longName != name) {
            out += (name ? ", " : " ") + quotedName(*longName);
        }
        out += ' ' + styled(Style::dim, fmt::format("#{}", instance.instanceName()));
        if (const std::optional<double> elevation = m_labels.real(instance, "Elevation")) {
            out += fmt::format(", elevation {}", *elevation);
        }
    }

    const BuildingTree& m_tree;
    const Labels m_labels;
    Output& m_output;
};

} // namespace

void printText(const BuildingTree& tree, const KpIfcModel& model, const TreeOptions& options, Output& output) {
    TextPrinter printer(tree, model, output);
    std::string& out = output.text();
    const char* separator = "";
    const auto heading = [&](const std::string& text) {
        out += separator + text + '\n';
        separator = "\n";
    };
    if (tree.projects.empty()) {
        heading("There is no project.");
    } else {
        walkItems(tree, tree.projects, options, printer);
        separator = "\n";
    }
    printer.indent = 1;
    if (!tree.others.empty()) {
        heading("Part of no project:");
        walkItems(tree, tree.others, options, printer);
    }
    std::uint64_t uncontained = 0;
    for (const auto& [type, count] : tree.uncontained) {
        uncontained += count;
    }
    if (uncontained) {
        heading("Contained in nothing and part of nothing: " + counted(uncontained, "element"));
        for (const auto& [type, count] : tree.uncontained) {
            out += fmt::format("  {} {}\n", type, grouped(count));
        }
    }
}

} // namespace kpifc
