#include "HeaderFields.h"
#include "Info.h"
#include "ReportJson.h"

using namespace KP_SDAI;
using Json = nlohmann::ordered_json;

namespace kpifc {

static Json headerOf(const FileInfo& info) {
    const KpIfcHeader& header = info.header;
    Json others = Json::array();
    for (const auto& [keyword, text] : otherHeaderRecords(info.header)) {
        others.push_back({{"keyword", keyword}, {"text", text}});
    }
    return {{"description", header.description()},
            {"implementationLevel", header.implementationLevel()},
            {"name", header.fileName()},
            {"timeStamp", header.timeStamp()},
            {"author", header.author()},
            {"organization", header.organization()},
            {"preprocessorVersion", header.preprocessorVersion()},
            {"originatingSystem", header.originatingSystem()},
            {"authorization", header.authorization()},
            {"schemaIdentifiers", header.schemaIdentifiers()},
            {"otherRecords", std::move(others)}};
}

static Json countsOf(const std::vector<std::pair<std::string, std::uint64_t>>& counts) {
    Json object = Json::object();
    for (const auto& [name, count] : counts) {
        object[name] = count;
    }
    return object;
}

static Json problemsOf(const FileInfo& info) {
    const KpIfcReport& report = info.report;
    Json listed = Json::array();
    for (const KpIfcReportEntry& entry : report.entries()) {
        listed.push_back(findingOf(entry));
    }
    return {{"errors", report.count(KpIfcSeverity::error)},
            {"warnings", report.count(KpIfcSeverity::warning)},
            {"notes", report.count(KpIfcSeverity::note)},
            {"departures", report.departures()},
            {"truncated", report.isTruncated()},
            {"codes", countsOf(info.findings())},
            {"listed", std::move(listed)}};
}

std::string jsonOf(const FileInfo& info) {
    const Json object = {{"file", info.path},
                         {"size", info.size},
                         {"schema", info.moduleSchema},
                         {"header", headerOf(info)},
                         {"instances", info.instances},
                         {"types", countsOf(info.types)},
                         {"keptRecords", info.keptRecords},
                         {"problems", problemsOf(info)}};
    return spelled(object);
}

} // namespace kpifc
