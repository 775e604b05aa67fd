#include "HeaderFields.h"
#include "Info.h"

#include <nlohmann/json.hpp>

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

static Json orNull(std::uint64_t number) {
    return number ? Json(number) : Json();
}

static Json orNull(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}

static Json problemsOf(const FileInfo& info) {
    const KpIfcReport& report = info.report;
    Json listed = Json::array();
    for (const KpIfcReportEntry& entry : report.entries()) {
        listed.push_back({{"severity", severityName(entry.severity)},
                          {"kind", findingName(entry.finding)},
                          {"offset", entry.line ? Json(entry.offset) : Json()},
                          {"line", orNull(entry.line)},
                          {"column", orNull(entry.column)},
                          {"instance", orNull(entry.instanceName)},
                          {"entity", orNull(entry.entity)},
                          {"attribute", orNull(entry.attribute)},
                          {"message", entry.message}});
    }
    return {{"errors", report.count(KpIfcSeverity::error)}, {"warnings", report.count(KpIfcSeverity::warning)},
            {"notes", report.count(KpIfcSeverity::note)},   {"truncated", report.isTruncated()},
            {"kinds", countsOf(info.findings())},           {"listed", std::move(listed)}};
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
    // Paths, and the text of records that could not be read, need not be UTF-8.
    return object.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace kpifc
