#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcReport.h>

#include <string>
#include <string_view>
#include <utility>

namespace KP_SDAI {

/// Adds findings about instances to a report.
class Findings {
public:
    explicit Findings(KpIfcReport& report) : m_report(report) {}

    /// `message()` gives the text, which is made only where the finding is listed.
    template <class Message>
    void add(KpIfcFinding finding, const KpIfcEntityBase& instance, std::string_view attribute, Message&& message) {
        if (!m_report.lists(finding)) return m_report.addUnlisted(finding, KpIfcSeverity::warning, 1);
        KpIfcReportEntry entry;
        entry.severity = KpIfcSeverity::warning;
        entry.finding = finding;
        entry.instanceName = instance.instanceName();
        entry.entity = instance.getInstanceType()->name();
        entry.attribute = attribute;
        entry.message = message();
        m_report.add(std::move(entry));
    }

private:
    KpIfcReport& m_report;
};

/// "#5 IfcDoor"
inline std::string labelOf(const KpDbObjectId& handle) {
    const KpIfcEntityBase* const instance = handle.openObject();
    return '#' + std::to_string(handle.instanceName()) +
           (instance ? ' ' + std::string(instance->getInstanceType()->displayName()) : std::string());
}

/// "no element", "1 element", "7 elements"
inline std::string countOf(std::size_t count, const std::string& noun) {
    return (count == 0 ? "no " : std::to_string(count) + ' ') + noun + (count > 1 ? "s" : "");
}

} // namespace KP_SDAI
