#include "InstanceJson.h"
#include "JsonText.h"
#include "Referrers.h"
#include "Show.h"

using namespace KP_SDAI;

namespace kpifc {

std::string jsonOf(const KpIfcModel& model, const KpDbObjectId& handle, const std::string& opening) {
    std::string out;
    const char* separator = "";
    if (const KpIfcEntityBase* instance = handle.openObject()) {
        InstanceJson(out, model.textIsUtf8(), true, opening).appendOpen(*instance);
        out += ",\"supertypes\":[";
        for (const std::string& name : supertypesOf(*instance->getInstanceType())) {
            out += separator;
            json::appendText(out, name);
            separator = ",";
        }
        out += ']';
    } else {
        out += opening + "\"id\":";
        json::appendNumber(out, handle.instanceName());
        out += ",\"keptText\":";
        json::appendText(out, model.keptRecord(handle));
    }
    out += ",\"referrers\":{";
    separator = "";
    for (const auto& [attribute, referrers] : referrersOf(model, handle)) {
        out += separator;
        json::appendText(out, attribute);
        out += ":[";
        separator = "";
        for (const KpDbObjectId& referrer : referrers) {
            out += separator;
            out += "{\"ref\":";
            json::appendNumber(out, referrer.instanceName());
            out += '}';
            separator = ",";
        }
        out += ']';
    }
    out += "}}\n";
    return out;
}

} // namespace kpifc
