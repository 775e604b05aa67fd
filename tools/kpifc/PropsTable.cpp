#include "PropertyText.h"
#include "Props.h"
#include "Terminal.h"
#include "Utf8.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

using namespace KP_SDAI;

namespace kpifc::props {

namespace {

/// Columns that are wider push what follows aside.
constexpr std::size_t kWidest = 40;

using Row = std::array<std::string, 5>;

Row rowOf(const KpIfcPropertyValue& value) {
    const std::string text = printable(valueText(value));
    return {printable(value.name), text, text.empty() ? "" : printable(value.measure.symbol), value.measure.type,
            value.fromType ? "from type" : ""};
}

} // namespace

void appendTable(std::string& out, const ObjectIdentity& object, const Values& values) {
    out += fmt::format("#{} {} {}", object.id, object.type, printable(object.globalId));
    out += object.name.empty() ? "\n" : fmt::format(" '{}'\n", printable(object.name));
    std::vector<Row> rows;
    std::array<std::size_t, 5> widths{};
    for (const KpIfcPropertyValue& value : values) {
        const Row& row = rows.emplace_back(rowOf(value));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], std::min(displayWidth(row[i]), kWidest));
        }
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i == 0 || !(values[i].setInstance == values[i - 1].setInstance)) {
            out += "  " + styled(Style::bold, printable(values[i].set)) + '\n';
        }
        std::string line = "   ";
        for (std::size_t column = 0; column < widths.size(); ++column) {
            if (widths[column]) {
                line += fmt::format(" {:<{}} ", rows[i][column], widths[column]);
            }
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out += line + '\n';
    }
    out += rows.empty() ? "  no properties\n" : "";
}

} // namespace kpifc::props
