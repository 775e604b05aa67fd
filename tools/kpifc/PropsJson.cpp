#include "JsonText.h"
#include "PropertyText.h"
#include "Props.h"

using namespace KP_SDAI;

namespace kpifc::props {

namespace {

void appendId(std::string& out, const KpDbObjectId& handle) {
    if (handle.isNull()) {
        out += "null";
    } else {
        json::appendNumber(out, handle.instanceName());
    }
}

void appendTextOrNull(std::string& out, const std::string& text) {
    if (text.empty()) {
        out += "null";
    } else {
        json::appendText(out, text);
    }
}

/// `prefix`: of the keys.
void appendMeasure(std::string& out, const std::string& prefix, const KpIfcMeasure& measure) {
    out += ",\"" + prefix + "measure\":";
    appendTextOrNull(out, measure.type);
    out += ",\"" + prefix + "unit\":";
    appendTextOrNull(out, measure.symbol);
    out += ",\"" + prefix + "unit_id\":";
    appendId(out, measure.unit);
}

void appendValue(std::string& out, const KpIfcPropertyValue& value) {
    out += "{\"set\":";
    json::appendText(out, value.set);
    out += ",\"name\":";
    json::appendText(out, value.name);
    out += std::string(",\"kind\":\"") + kindName(value.kind) + "\",\"value\":";
    appendValueJson(out, value.value);
    appendMeasure(out, "", value.measure);
    if (value.kind == KpIfcPropertyValueKind::table) {
        appendMeasure(out, "defining_", value.definingMeasure);
    }
    out += std::string(",\"from_type\":") + (value.fromType ? "true" : "false") + ",\"set_id\":";
    appendId(out, value.setInstance);
    out += ",\"property_id\":";
    appendId(out, value.propertyInstance);
    out += '}';
}

} // namespace

void appendJson(std::string& out, const ObjectIdentity& object, const Values& values, const std::string& opening) {
    out += opening + "\"id\":";
    json::appendNumber(out, object.id);
    out += ",\"type\":";
    json::appendText(out, object.type);
    out += ",\"global_id\":";
    appendTextOrNull(out, object.globalId);
    out += ",\"name\":";
    appendTextOrNull(out, object.name);
    out += ",\"properties\":[";
    for (const KpIfcPropertyValue& value : values) {
        out += &value == values.data() ? "" : ",";
        appendValue(out, value);
    }
    out += "]}\n";
}

} // namespace kpifc::props
