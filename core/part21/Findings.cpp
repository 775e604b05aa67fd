#include "part21/Findings.h"

#include <KpIfcCore/KpIfcEntityType.h>

namespace KP_SDAI {

KpIfcReportEntry findingAt(KpIfcFinding finding, KpIfcSeverity severity, std::uint64_t offset, std::string message) {
    KpIfcReportEntry entry;
    entry.finding = finding;
    entry.severity = severity;
    entry.offset = offset;
    entry.line = 1; // counted when everything is read
    entry.message = std::move(message);
    return entry;
}

KpIfcReportEntry findingOn(const KpIfcEntityBase& instance, std::uint32_t field, KpIfcFinding finding,
                           KpIfcSeverity severity, std::uint64_t offset, std::string message) {
    KpIfcReportEntry entry = findingAt(finding, severity, offset, std::move(message));
    entry.instanceName = instance.instanceName();
    const KpIfcEntityType* type = instance.getInstanceType();
    entry.entity = type->name();
    if (field < type->recordFields().size()) entry.attribute = type->recordFields()[field]->name;
    return entry;
}

std::string excerpt(std::string_view text) {
    constexpr std::size_t kLongest = 40;
    std::string out;
    for (const char c : text.substr(0, kLongest)) out += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    if (text.size() > kLongest) out += "...";
    return out;
}

} // namespace KP_SDAI
