#include <KpIfcCore/KpIfcReport.h>

namespace KP_SDAI {

const char* findingName(KpIfcFinding finding) {
    static constexpr const char* kNames[] = {
        "unreadable-record",  "unknown-entity",  "complex-record",    "duplicate-name",
        "attribute-count",    "wrong-value",     "unknown-literal",   "wrong-alternative",
        "dangling-reference", "wrong-reference", "not-kept",          "abstract-entity",
        "text-encoding",      "instance-name",   "section-structure", "truncated",
        "trailing-text",      "header",          "not-finite"};
    static_assert(std::size(kNames) == static_cast<std::size_t>(KpIfcFinding::count_));
    return kNames[static_cast<std::size_t>(finding)];
}

const char* severityName(KpIfcSeverity severity) {
    static constexpr const char* kNames[] = {"note", "warning", "error"};
    return kNames[static_cast<std::size_t>(severity)];
}

std::string KpIfcReportEntry::text() const {
    std::string out;
    if (line) out += std::to_string(line) + ':' + std::to_string(column) + ": ";
    out += severityName(severity);
    out += ": ";
    if (instanceName) {
        out += '#' + std::to_string(instanceName);
        if (!entity.empty()) out += ' ' + entity;
        if (!attribute.empty()) out += '.' + attribute;
        out += ": ";
    }
    return out + message;
}

void KpIfcReport::add(KpIfcReportEntry entry) {
    ++m_bySeverity[static_cast<std::size_t>(entry.severity)];
    if (m_byFinding[static_cast<std::size_t>(entry.finding)]++ < kListedPerKind) m_entries.push_back(std::move(entry));
}

void KpIfcReport::clear() {
    *this = KpIfcReport();
}

} // namespace KP_SDAI
