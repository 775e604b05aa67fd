#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcReport.h>

#include "part21/Findings.h"

#include <string_view>
#include <utility>

namespace KP_SDAI {

/// Adds findings about instances to a report.
class Findings {
public:
    explicit Findings(KpIfcReport& report) : m_report(report) {}

    /// `found()` gives what is found, or that and what is expected; it is asked only where the finding is listed.
    template <class Found>
    void add(KpIfcFinding finding, const KpIfcEntityBase& instance, std::string_view attribute, Found&& found) {
        if (!m_report.lists(finding)) return m_report.addUnlisted(finding, KpIfcSeverity::warning, 1);
        KpIfcReportEntry entry;
        entry.severity = KpIfcSeverity::warning;
        entry.finding = finding;
        entry.instanceName = instance.instanceName();
        entry.entity = instance.getInstanceType()->name();
        entry.attribute = attribute;
        Said said = found();
        entry.found = std::move(said.found);
        entry.expected = std::move(said.expected);
        m_report.add(std::move(entry));
    }

private:
    KpIfcReport& m_report;
};

} // namespace KP_SDAI
