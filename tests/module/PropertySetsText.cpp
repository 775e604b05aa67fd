#include "PropertySetsText.h"

#include <KpIfcCore/KpIfcArray.h>
#include <KpRx/KcString.h>

using namespace KP_SDAI;

static std::string text(const KpIfcVariant& value) {
    if (value.isEmpty()) return "-";
    if (const auto* array = value.getIf<KpIfcArray<KpIfcVariant>>()) {
        std::string all = "(";
        for (const KpIfcVariant& element : *array) all += (all.size() > 1 ? " " : "") + text(element);
        return all + ')';
    }
    KcString shown;
    return value.toString(shown, kFormatStep) ? shown.utf8Ptr() : "no text";
}

std::string lineOf(const KpIfcPropertyValue& value) {
    const auto measure = [](const KpIfcMeasure& of) { return '|' + of.type + '|' + of.symbol; };
    std::string line = value.set + '|' + value.name + '|' + kindName(value.kind) + '|' + text(value.value);
    line += measure(value.measure);
    if (value.kind == KpIfcPropertyValueKind::table) line += measure(value.definingMeasure);
    return line + (value.fromType ? "|type" : "");
}

std::vector<std::string> linesOf(const KpIfcModel& model, std::uint64_t object) {
    std::vector<std::string> lines;
    for (const KpIfcPropertyValue& value : propertiesOf(*model.find(object).openObject())) {
        lines.push_back(lineOf(value));
    }
    return lines;
}
