#include "Csv.h"
#include "Interrupt.h"
#include "PropertyText.h"
#include "Props.h"

#include <unordered_map>

using namespace KP_SDAI;

namespace kpifc::props {

namespace {

/// Rows of few of many columns, so that memory follows what there is.
class Columns {
public:
    std::size_t place(const std::string& name) {
        const auto [found, isNew] = m_places.emplace(name, m_names.size());
        if (isNew) {
            m_names.push_back(name);
        }
        return found->second;
    }
    const std::vector<std::string>& names() const { return m_names; }

private:
    std::unordered_map<std::string, std::size_t> m_places;
    std::vector<std::string> m_names;
};

using Cells = std::unordered_map<std::size_t, std::string>;

void appendLine(std::string& out, const std::vector<std::string>& fields) {
    for (const std::string& field : fields) {
        out += &field == fields.data() ? "" : ",";
        csv::appendField(out, field);
    }
    out += '\n';
}

} // namespace

void printCsv(Output& output, const KpIfcModel& model, const Objects& objects, bool withEmpty) {
    KpIfcPropertySets sets(model);
    Columns columns;
    std::vector<std::pair<const KpIfcEntityBase*, Cells>> rows;
    for (const KpIfcEntityBase* object : objects) {
        stopIfInterrupted();
        const Values values = sets.of(*object);
        if (values.empty() && !withEmpty) {
            continue;
        }
        Cells& cells = rows.emplace_back(object, Cells()).second;
        for (const KpIfcPropertyValue& value : values) {
            std::string& cell = cells[columns.place(value.set + '.' + value.name)];
            const std::string text = valueText(value);
            cell += (cell.empty() || text.empty() ? "" : "; ") + text; // a set may have two properties of one name
        }
    }
    std::vector<std::string> fields{"id", "GlobalId", "type", "name"};
    const std::size_t first = fields.size();
    fields.insert(fields.end(), columns.names().begin(), columns.names().end());
    appendLine(output.text(), fields);
    for (const auto& [instance, cells] : rows) {
        const ObjectIdentity object(*instance);
        fields.assign({std::to_string(object.id), object.globalId, object.type, object.name});
        fields.resize(first + columns.names().size());
        for (const auto& [column, text] : cells) {
            fields[first + column] = text;
        }
        appendLine(output.text(), fields);
        output.passOn();
    }
}

} // namespace kpifc::props
