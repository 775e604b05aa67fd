#include "Check.h"
#include "Files.h"
#include "Labels.h"
#include "Terminal.h"
#include "Utf8.h"

#include <fmt/format.h>

#include <array>

using namespace KP_SDAI;

namespace kpifc {

namespace {

/// Whom a finding concerns: `#34 IfcWall "Wall 1" GlobalId`, `FILE_NAME time_stamp`; empty for the file as a whole.
std::string concerned(const KpIfcReportEntry& entry, const KpIfcModel& model) {
    std::string who = entry.entity;
    if (entry.instanceName) {
        const KpDbObjectId handle = model.find(entry.instanceName);
        who =
            handle.isNull() ? fmt::format("#{} {}", entry.instanceName, entry.entity) : Labels(model).reference(handle);
    }
    if (!entry.attribute.empty()) {
        who += ' ' + entry.attribute;
    }
    return who;
}

/// Printable.
std::string lineOf(const KpIfcReportEntry& entry, const CheckedFile& file) {
    std::string line = file.path + ':';
    if (entry.line) {
        line += fmt::format("{}:{}:", entry.line, entry.column);
    }
    const Style style = entry.severity == KpIfcSeverity::error     ? Style::red
                        : entry.severity == KpIfcSeverity::warning ? Style::yellow
                                                                   : Style::cyan;
    const std::string who = concerned(entry, file.model);
    return printable(line) + ' ' + styled(style, fmt::format("{}:", severityName(entry.severity))) + ' ' +
           printable((who.empty() ? "" : who + ": ") +
                     fmt::format("{} [{}]", entry.message(), findingName(entry.finding)));
}

} // namespace

std::string textOf(const CheckedFile& file) {
    const KpIfcReport& report = file.report;
    std::string out;
    std::array<std::size_t, static_cast<std::size_t>(KpIfcFinding::count_)> listed{};
    for (const KpIfcReportEntry& entry : report.entries()) {
        out += lineOf(entry, file) + '\n';
        ++listed[static_cast<std::size_t>(entry.finding)];
    }
    std::string kinds;
    for (std::size_t i = 0; i < listed.size(); ++i) {
        const auto finding = static_cast<KpIfcFinding>(i);
        const std::size_t count = report.count(finding);
        if (count > listed[i]) {
            out += printable(fmt::format("{}: {} more {}; --all lists them", file.path, grouped(count - listed[i]),
                                         findingName(finding))) +
                   '\n';
        }
        if (count) {
            kinds += fmt::format("{} {} {}", kinds.empty() ? ":" : ",", grouped(count), findingName(finding));
        }
    }
    const std::string found = summary(report);
    out += printable(fmt::format("{}: {} in {}{}", file.path, found.empty() ? "no findings" : found,
                                 counted(file.model.count(), "instance"), kinds)) +
           '\n';
    return out;
}

} // namespace kpifc
