#include <KpIfcCore/KpIfcReport.h>

#include <numeric>
#include <utility>

namespace KP_SDAI {

const char* findingName(KpIfcFinding finding) {
    static constexpr const char* kNames[] = {
        "unreadable-record",  "unknown-entity",  "complex-record",    "duplicate-name",
        "attribute-count",    "wrong-value",     "unknown-literal",   "wrong-alternative",
        "dangling-reference", "wrong-reference", "not-kept",          "abstract-entity",
        "text-encoding",      "instance-name",   "section-structure", "truncated",
        "trailing-text",      "header",          "not-finite",        "spelling",
        "global-id",          "not-unique",      "missing-value",     "aggregate-size",
        "repeated-member",    "too-long",        "inverse-count"};
    static_assert(std::size(kNames) == static_cast<std::size_t>(KpIfcFinding::count_));
    return kNames[static_cast<std::size_t>(finding)];
}

const char* severityName(KpIfcSeverity severity) {
    static constexpr const char* kNames[] = {"note", "warning", "error"};
    return kNames[static_cast<std::size_t>(severity)];
}

std::string KpIfcReportEntry::message() const {
    std::string out = "found " + found;
    if (!expected.empty()) out += ", expected " + expected;
    if (!done.empty()) out += "; " + done;
    return out;
}

std::string KpIfcReportEntry::text() const {
    std::string out;
    if (line) out += std::to_string(line) + ':' + std::to_string(column) + ": ";
    out += severityName(severity);
    out += ": ";
    std::string who;
    if (instanceName) who = '#' + std::to_string(instanceName);
    if (!entity.empty()) who += (who.empty() ? "" : " ") + entity;
    if (!attribute.empty()) who += (entity.empty() ? "" : ".") + attribute;
    if (!who.empty()) out += who + ": ";
    return out + message();
}

void KpIfcReport::add(KpIfcReportEntry entry) {
    const bool isListed = lists(entry.finding);
    addUnlisted(entry.finding, entry.severity, 1);
    if (entry.isAllowed) --m_departures;
    if (isListed) m_entries.push_back(std::move(entry));
}

void KpIfcReport::addUnlisted(KpIfcFinding finding, KpIfcSeverity severity, std::size_t count) {
    m_counts[static_cast<std::size_t>(finding)][static_cast<std::size_t>(severity)] += count;
    m_departures += count;
}

void KpIfcReport::append(KpIfcReport&& later) {
    std::array<std::size_t, static_cast<std::size_t>(KpIfcFinding::count_)> room{};
    for (std::size_t kind = 0; kind < m_counts.size(); ++kind) {
        const std::size_t here = count(static_cast<KpIfcFinding>(kind));
        room[kind] = here < m_listedPerKind ? m_listedPerKind - here : 0;
    }
    for (KpIfcReportEntry& entry : later.m_entries) {
        std::size_t& left = room[static_cast<std::size_t>(entry.finding)];
        if (left == 0) continue;
        --left;
        m_entries.push_back(std::move(entry));
    }
    for (std::size_t kind = 0; kind < m_counts.size(); ++kind)
        for (std::size_t severity = 0; severity < m_counts[kind].size(); ++severity)
            m_counts[kind][severity] += later.m_counts[kind][severity];
    m_departures += later.m_departures;
    later.clear();
}

std::size_t KpIfcReport::count(KpIfcSeverity severity) const {
    std::size_t count = 0;
    for (const auto& bySeverity : m_counts) count += bySeverity[static_cast<std::size_t>(severity)];
    return count;
}

std::size_t KpIfcReport::count(KpIfcFinding finding) const {
    const auto& bySeverity = m_counts[static_cast<std::size_t>(finding)];
    return std::accumulate(bySeverity.begin(), bySeverity.end(), std::size_t{0});
}

void KpIfcReport::clear() {
    *this = KpIfcReport(m_listedPerKind);
}

} // namespace KP_SDAI
