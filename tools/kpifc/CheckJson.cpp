#include "Check.h"
#include "Labels.h"
#include "ReportJson.h"

using namespace KP_SDAI;
using Json = nlohmann::ordered_json;

namespace kpifc {

namespace {

Json findingIn(const KpIfcModel& model, const KpIfcReportEntry& entry) {
    const KpIfcEntityBase* const instance = entry.instanceName ? model.find(entry.instanceName).openObject() : nullptr;
    const std::optional<std::string> name = instance ? Labels(model).name(*instance) : std::nullopt;
    Json finding = findingOf(entry);
    if (instance) {
        finding["entity"] = instance->getInstanceType()->displayName();
    }
    finding["name"] = name ? Json(*name) : Json();
    return finding;
}

} // namespace

std::string jsonOf(const CheckedFile& file) {
    const KpIfcReport& report = file.report;
    Json codes = Json::object();
    for (int i = 0; i < static_cast<int>(KpIfcFinding::count_); ++i) {
        const auto finding = static_cast<KpIfcFinding>(i);
        if (const std::size_t count = report.count(finding)) {
            codes[findingName(finding)] = count;
        }
    }
    Json findings = Json::array();
    for (const KpIfcReportEntry& entry : report.entries()) {
        findings.push_back(findingIn(file.model, entry));
    }
    return spelled({{"file", file.path},
                    {"schema", file.model.schema().name()},
                    {"instances", file.model.count()},
                    {"errors", report.count(KpIfcSeverity::error)},
                    {"warnings", report.count(KpIfcSeverity::warning)},
                    {"notes", report.count(KpIfcSeverity::note)},
                    {"codes", std::move(codes)},
                    {"findings", std::move(findings)}});
}

std::string jsonOfFailure(const std::string& path, const std::string& message) {
    return spelled(failureOf(path, message));
}

} // namespace kpifc
