#include "Files.h"
#include "HeaderFields.h"
#include "Info.h"
#include "Terminal.h"
#include "TextLayout.h"
#include "Utf8.h"

#include <fmt/format.h>

#include <string_view>

using namespace KP_SDAI;

namespace kpifc {

namespace {

constexpr std::size_t kIndent = 17; ///< of what stands behind the labels

/// A label and one or more values, each from a line of its own.
void field(std::string& out, std::string_view label, const std::vector<std::string>& values) {
    for (const std::string& value : values) {
        for (const std::string& line : wrapped(printable(value), textColumns() - kIndent)) {
            if (!line.empty()) {
                out += styled(Style::bold, fmt::format("{:<{}}", label, kIndent)) + line + '\n';
                label = "";
            }
        }
    }
}

void field(std::string& out, std::string_view label, const std::string& value) {
    field(out, label, std::vector{value});
}

void header(std::string& out, const FileInfo& info) {
    const KpIfcHeader& header = info.header;
    field(out, "Schema", header.schemaIdentifiers());
    field(out, "Description", header.description());
    field(out, "Level", header.implementationLevel());
    field(out, "Name", header.fileName());
    field(out, "Time stamp", header.timeStamp());
    field(out, "Author", header.author());
    field(out, "Organization", header.organization());
    field(out, "Preprocessor", header.preprocessorVersion());
    field(out, "System", header.originatingSystem());
    field(out, "Authorization", header.authorization());
    for (const auto& [keyword, text] : otherHeaderRecords(info.header)) {
        field(out, "Further record", text);
    }
}

void counts(std::string& out, const std::vector<std::pair<std::string, std::uint64_t>>& counts) {
    for (const auto& [name, count] : counts) {
        out += fmt::format("{:>{}}  {}\n", grouped(count), kIndent - 2, name);
    }
}

void problems(std::string& out, const FileInfo& info) {
    const KpIfcReport& report = info.report;
    const std::string found = summary(report);
    field(out, "Problems", found.empty() ? "none" : found);
    counts(out, info.findings());
    std::size_t total = 0;
    for (const KpIfcSeverity severity : {KpIfcSeverity::note, KpIfcSeverity::warning, KpIfcSeverity::error}) {
        total += report.count(severity);
    }
    if (!report.entries().empty()) {
        out += '\n';
    }
    for (const KpIfcReportEntry& entry : report.entries()) {
        std::string_view indent = "";
        for (const std::string& line : wrapped(printable(entry.text()), textColumns() - 4)) {
            out += fmt::format("{}{}\n", indent, line);
            indent = "    ";
        }
    }
    if (total > report.entries().size()) {
        out += fmt::format("and {} more\n", grouped(total - report.entries().size()));
    }
}

} // namespace

std::string textOf(const FileInfo& info) {
    std::string out;
    field(out, "File", info.path);
    field(out, "Size", grouped(info.size) + " bytes");
    header(out, info);
    out += '\n';
    field(out, "Instances", grouped(info.instances) + " of " + counted(info.types.size(), "type"));
    counts(out, info.types);
    if (info.keptRecords) {
        field(out, "Kept as text", counted(info.keptRecords, "record"));
    }
    out += '\n';
    problems(out, info);
    return out;
}

} // namespace kpifc
