#include "JsonText.h"
#include "Labels.h"
#include "Tree.h"

using namespace KP_SDAI;

namespace kpifc {

namespace {

/// Which of the arrays of what is below an item are begun.
enum class Begun { neither, children, elements };

class JsonPrinter {
public:
    JsonPrinter(const BuildingTree& tree, const KpIfcModel& model, Output& output)
        : m_tree(tree), m_out(output.text()), m_labels(model), m_output(output) {}

    void roots(const std::vector<std::size_t>& nodes, const TreeOptions& options) {
        m_out += '[';
        m_isFirstRoot = true;
        walkItems(m_tree, nodes, options, *this);
        m_out += ']';
    }

    void enter(const TreeItem& item, std::size_t level, std::size_t hidden) {
        if (level > 0) {
            beginBelow(m_path.back(), item.isContained);
        } else {
            m_out += m_isFirstRoot ? "" : ",";
            m_isFirstRoot = false;
        }
        m_out += '{';
        if (!item.isGroup) {
            m_out += "\"id\":";
            json::appendNumber(m_out, m_tree.nodes[item.nodes.front()].instance->instanceName());
            m_out += ',';
        }
        m_out += "\"type\":";
        json::appendText(m_out, item.type->displayName());
        if (item.isGroup) {
            m_out += ",\"count\":";
            json::appendNumber(m_out, item.nodes.size());
        } else {
            texts(*m_tree.nodes[item.nodes.front()].instance);
        }
        if (item.isRepeated) {
            m_out += ",\"shownAbove\":true";
        }
        if (hidden) {
            m_out += ",\"below\":";
            json::appendNumber(m_out, hidden);
        }
        m_path.push_back({Begun::neither, !item.isGroup && !item.isRepeated && !hidden});
        m_output.passOn();
    }

    void leave(const TreeItem&, std::size_t) {
        const Place place = m_path.back();
        m_path.pop_back();
        switch (place.begun) {
        case Begun::neither: m_out += place.hasArrays ? ",\"children\":[],\"elements\":[]" : ""; break;
        case Begun::children: m_out += "],\"elements\":[]"; break;
        case Begun::elements: m_out += ']'; break;
        }
        m_out += '}';
    }

private:
    struct Place {
        Begun begun;
        bool hasArrays; ///< even if they are empty
    };

    void beginBelow(Place& place, bool isContained) {
        const Begun wanted = isContained ? Begun::elements : Begun::children;
        if (place.begun == wanted) {
            m_out += ',';
        } else if (!isContained) {
            m_out += ",\"children\":[";
        } else {
            m_out += place.begun == Begun::children ? "],\"elements\":[" : ",\"children\":[],\"elements\":[";
        }
        place.begun = wanted;
    }

    void texts(const KpIfcEntityBase& instance) {
        text(",\"name\":", m_labels.name(instance));
        if (const std::optional<std::string> longName = m_labels.longName(instance)) {
            text(",\"longName\":", longName);
        }
        text(",\"globalId\":", m_labels.globalId(instance));
        if (const std::optional<double> elevation = m_labels.real(instance, "Elevation")) {
            m_out += ",\"elevation\":";
            json::appendNumber(m_out, *elevation);
        }
    }

    void text(const char* key, const std::optional<std::string>& value) {
        m_out += key;
        value ? json::appendText(m_out, *value) : void(m_out += "null");
    }

    const BuildingTree& m_tree;
    std::string& m_out;
    const Labels m_labels;
    Output& m_output;
    std::vector<Place> m_path;
    bool m_isFirstRoot = true;
};

} // namespace

void printJson(const BuildingTree& tree, const KpIfcModel& model, const TreeOptions& options,
               const std::string& opening, Output& output) {
    JsonPrinter printer(tree, model, output);
    std::string& out = output.text();
    out += opening + "\"projects\":";
    printer.roots(tree.projects, options);
    out += ",\"others\":";
    printer.roots(tree.others, options);
    out += ",\"uncontained\":[";
    const char* separator = "";
    for (const auto& [type, count] : tree.uncontained) {
        out += separator;
        out += "{\"type\":";
        json::appendText(out, type);
        out += ",\"count\":";
        json::appendNumber(out, count);
        out += '}';
        separator = ",";
    }
    out += "]}\n";
}

} // namespace kpifc
