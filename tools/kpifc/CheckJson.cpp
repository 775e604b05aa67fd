#include "Check.h"
#include "Labels.h"

#include <nlohmann/json.hpp>

using namespace KP_SDAI;
using Json = nlohmann::ordered_json;

namespace kpifc {

namespace {

Json orNull(std::uint64_t number) {
    return number ? Json(number) : Json();
}

Json orNull(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}

Json findingOf(const KpIfcReportEntry& entry, const KpIfcModel& model) {
    const KpIfcEntityBase* const instance = entry.instanceName ? model.find(entry.instanceName).openObject() : nullptr;
    const std::optional<std::string> name = instance ? Labels(model).name(*instance) : std::nullopt;
    return {{"severity", severityName(entry.severity)},
            {"kind", findingName(entry.finding)},
            {"line", orNull(entry.line)},
            {"column", orNull(entry.column)},
            {"instance", orNull(entry.instanceName)},
            {"entity", instance ? Json(instance->getInstanceType()->displayName()) : orNull(entry.entity)},
            {"name", name ? Json(*name) : Json()},
            {"attribute", orNull(entry.attribute)},
            {"message", entry.message}};
}

// Paths, and the text of records that could not be read, need not be UTF-8.
std::string spelled(const Json& object) {
    return object.dump(2, ' ', false, Json::error_handler_t::replace);
}

} // namespace

std::string jsonOf(const CheckedFile& file) {
    const KpIfcReport& report = file.report;
    Json kinds = Json::object();
    for (int i = 0; i < static_cast<int>(KpIfcFinding::count_); ++i) {
        const auto finding = static_cast<KpIfcFinding>(i);
        if (const std::size_t count = report.count(finding)) {
            kinds[findingName(finding)] = count;
        }
    }
    Json findings = Json::array();
    for (const KpIfcReportEntry& entry : report.entries()) {
        findings.push_back(findingOf(entry, file.model));
    }
    return spelled({{"file", file.path},
                    {"schema", file.model.schema().name()},
                    {"instances", file.model.count()},
                    {"errors", report.count(KpIfcSeverity::error)},
                    {"warnings", report.count(KpIfcSeverity::warning)},
                    {"notes", report.count(KpIfcSeverity::note)},
                    {"kinds", std::move(kinds)},
                    {"findings", std::move(findings)}});
}

std::string jsonOfFailure(const std::string& path, const std::string& message) {
    return spelled({{"file", path}, {"error", message}});
}

} // namespace kpifc
