#include "Info.h"

#include "Commands.h"
#include "Files.h"
#include "Output.h"
#include "ReportJson.h"

#include <KpIfcCore/KpIfcEntityType.h>

#include <algorithm>
#include <memory>
#include <tuple>

using namespace KP_SDAI;

namespace kpifc {

using Counts = std::vector<std::pair<std::string, std::uint64_t>>;

static void sortMostFrequentFirst(Counts& counts) {
    std::sort(counts.begin(), counts.end(),
              [](const auto& a, const auto& b) { return std::tie(b.second, a.first) < std::tie(a.second, b.first); });
}

Counts FileInfo::findings() const {
    Counts counts;
    for (int i = 0; i < static_cast<int>(KpIfcFinding::count_); ++i) {
        const auto finding = static_cast<KpIfcFinding>(i);
        if (const std::size_t count = report.count(finding)) {
            counts.emplace_back(findingName(finding), count);
        }
    }
    sortMostFrequentFirst(counts);
    return counts;
}

static Counts countTypes(const KpIfcModel& model) {
    Counts counts;
    for (const KpIfcEntityCount& count : model.entityCounts()) {
        counts.emplace_back(count.entity->displayName(), count.instances);
    }
    sortMostFrequentFirst(counts);
    return counts;
}

namespace {

struct InfoArguments {
    std::vector<std::string> paths;
    bool asJson = false;
};

ExitCode infoOfOne(const std::string& path, bool asJson, std::string& text) {
    KpIfcFile file;
    if (!open(file, path)) {
        tellFailure(file.error());
        if (asJson) {
            text += spelled(failureOf(path, file.error()));
        }
        return kFailed;
    }
    const KpIfcModel& model = *file.model();
    const FileInfo about{.path = fileLabel(path),
                         .size = file.size(),
                         .moduleSchema = model.schema().name(),
                         .header = file.header(),
                         .instances = model.count(),
                         .types = countTypes(model),
                         .keptRecords = model.keptRecordCount(),
                         .report = file.report()};
    text += asJson ? jsonOf(about) : textOf(about);
    return exitCode(file.report());
}

ExitCode info(const InfoArguments& arguments) {
    const bool isList = arguments.asJson && arguments.paths.size() > 1;
    Output output;
    ExitCode code = kFine;
    std::string_view separator = isList ? "{\"files\":[\n" : "";
    for (const std::string& path : arguments.paths) {
        std::string text;
        code = std::max(code, infoOfOne(path, arguments.asJson, text));
        if (!text.empty()) {
            output.text() += separator;
            separator = isList ? ",\n" : "\n";
        }
        output.text() += text;
        output.passOn();
    }
    output.text() += isList ? "\n]}\n" : arguments.asJson ? "\n" : "";
    output.finish();
    return code;
}

} // namespace

Command infoCommand() {
    const auto arguments = std::make_shared<InfoArguments>();
    return {.name = "info",
            .summary = "Tell what is in a file and what is wrong with it",
            .operands = {inputFile(&arguments->paths)},
            .options = {{.name = "--json", .place = &arguments->asJson, .help = "One JSON object, for programs"}},
            .text = "Problems are listed as\n"
                    "  LINE:COLUMN: SEVERITY: #INSTANCE ENTITY.ATTRIBUTE: what was found\n"
                    "where columns count bytes. Of each kind the first hundred are listed, and all\n"
                    "are counted.\n"
                    "\n"
                    "With several files the JSON object has one key, files[], with an object for each.\n\n"
                    "Keys of the JSON object:\n"
                    "  file, size              path as given, bytes\n"
                    "  schema                  name of the schema that the file was read with\n"
                    "  header                  description[], implementationLevel, name, timeStamp,\n"
                    "                          author[], organization[], preprocessorVersion,\n"
                    "                          originatingSystem, authorization, schemaIdentifiers[]\n"
                    "  header.otherRecords[]   keyword, text as the file writes it\n"
                    "  instances               number of instances\n"
                    "  types                   entity name: number of its instances, most first\n"
                    "  keptRecords             number of records that are kept as text\n"
                    "  problems                errors, warnings, notes: numbers\n"
                    "  problems.truncated      whether the file ends before its end mark\n"
                    "  problems.departures     findings that the standard forbids, however harmless\n"
                    "  problems.codes          code: number, most first\n"
                    "  problems.listed[]       severity, code, offset in bytes, line, column,\n"
                    "                          instance, entity, attribute, found, expected, done\n"
                    "                          (what became of it); null where there is none;\n"
                    "                          allowed: whether the standard allows it\n"
                    "  error                   instead of all but file where it cannot be read",
            .examples = {"kpifc info house.ifc", "kpifc info --json house.ifc | python3 -m json.tool"},
            .run = [arguments] { return info(*arguments); }};
}

} // namespace kpifc
