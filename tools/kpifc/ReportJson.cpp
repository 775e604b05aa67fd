#include "ReportJson.h"

using namespace KP_SDAI;
using Json = nlohmann::ordered_json;

namespace kpifc {

Json orNull(std::uint64_t number) {
    return number ? Json(number) : Json();
}

Json orNull(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}

Json findingOf(const KpIfcReportEntry& entry) {
    return {{"severity", severityName(entry.severity)},
            {"code", findingName(entry.finding)},
            {"offset", entry.line ? Json(entry.offset) : Json()},
            {"line", orNull(entry.line)},
            {"column", orNull(entry.column)},
            {"instance", orNull(entry.instanceName)},
            {"entity", orNull(entry.entity)},
            {"attribute", orNull(entry.attribute)},
            {"found", entry.found},
            {"expected", orNull(entry.expected)},
            {"done", orNull(entry.done)},
            {"allowed", entry.isAllowed}};
}

std::string spelled(const Json& object) {
    return object.dump(2, ' ', false, Json::error_handler_t::replace);
}

Json failureOf(const std::string& path, const std::string& error) {
    return {{"file", path}, {"error", error}};
}

} // namespace kpifc
