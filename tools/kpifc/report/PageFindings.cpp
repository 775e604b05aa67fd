#include "Files.h"
#include "Interrupt.h"
#include "Labels.h"
#include "report/FindingOwner.h"
#include "report/PageSummary.h"
#include "report/PageText.h"

#include <fmt/format.h>

using namespace KP_SDAI;

namespace kpifc::page {

namespace {

constexpr std::size_t kFew = 10; ///< findings of a kind that are shown unasked

std::string linkTo(const KpIfcModel& model, const KpDbObjectId& handle) {
    return fmt::format("<a href=\"{}\"><bdi>{}</bdi></a>", addressOf(handle.instanceName()),
                       html(Labels(model).reference(handle)));
}

/// Whom a finding concerns, with the object that this belongs to.
std::string concerned(const KpIfcModel& model, const PageNodes& nodes, const KpIfcReportEntry& entry) {
    std::string who = html(entry.entity);
    if (entry.instanceName) {
        const KpDbObjectId handle = model.find(entry.instanceName);
        if (handle.isNull()) {
            who = html(fmt::format("#{} {}", entry.instanceName, entry.entity));
        } else {
            who = linkTo(model, handle);
            if (const KpIfcEntityBase* owner = ownerOf(model, nodes, handle)) {
                who += " <span class=\"owner\">of " + linkTo(model, owner->objectId()) + "</span>";
            }
        }
    }
    if (!entry.attribute.empty()) {
        who += fmt::format(" <b>{}</b>", html(entry.attribute));
    }
    return who;
}

} // namespace

std::string findings(const KpIfcModel& model, const PageNodes& nodes, const KpIfcReport& findings) {
    std::string out;
    for (const KpIfcSeverity severity : {KpIfcSeverity::error, KpIfcSeverity::warning, KpIfcSeverity::note}) {
        for (int i = 0; i < static_cast<int>(KpIfcFinding::count_); ++i) {
            const auto kind = static_cast<KpIfcFinding>(i);
            const std::size_t count = findings.count(kind, severity);
            if (!count) {
                continue;
            }
            out += fmt::format("<details{0}><summary><span class=\"badge {1}\">{1}</span> {2} "
                               "<span class=\"number\">{3}</span></summary>\n<ul>\n",
                               count <= kFew ? " open" : "", severityName(severity), findingName(kind), grouped(count));
            std::size_t listed = 0;
            for (const KpIfcReportEntry& entry : findings.entries()) {
                if (entry.finding != kind || entry.severity != severity) {
                    continue;
                }
                stopIfInterrupted();
                ++listed;
                const std::string who = concerned(model, nodes, entry);
                out += fmt::format("<li>{}{}{}", who, who.empty() ? "" : ": ", html(entry.message()));
                if (entry.line) {
                    out += fmt::format(" <span class=\"place\">line {}, column {}</span>", entry.line, entry.column);
                }
                out += "</li>\n";
            }
            out += "</ul>\n";
            if (listed < count) {
                out += fmt::format("<p class=\"none\">{} more, which kpifc check --all lists</p>\n",
                                   grouped(count - listed));
            }
            out += "</details>\n";
        }
    }
    return out.empty() ? "<p class=\"none\">There are none: the file is as the standard and the schema declare.</p>\n"
                       : out;
}

} // namespace kpifc::page
