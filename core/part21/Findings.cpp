#include "part21/Findings.h"

#include "model/ModelData.h"

#include <KpIfcCore/KpIfcEntityType.h>

namespace KP_SDAI {

KpIfcReportEntry findingAt(KpIfcFinding finding, KpIfcSeverity severity, std::uint64_t offset, Said said) {
    KpIfcReportEntry entry;
    entry.finding = finding;
    entry.severity = severity;
    entry.offset = offset;
    entry.line = 1; // counted when everything is read
    entry.found = std::move(said.found);
    entry.expected = std::move(said.expected);
    entry.done = std::move(said.done);
    return entry;
}

KpIfcReportEntry findingOn(const KpIfcEntityBase& instance, std::uint32_t field, KpIfcFinding finding,
                           KpIfcSeverity severity, std::uint64_t offset, Said said) {
    KpIfcReportEntry entry = findingAt(finding, severity, offset, std::move(said));
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

std::string quoted(std::string_view text) {
    return '\'' + excerpt(text) + '\'';
}

std::string labelOf(const KpDbObjectId& handle) {
    const std::string name = '#' + std::to_string(handle.instanceName());
    const KpIfcModel* const model = handle.model();
    if (const KpIfcEntityType* const entity = model ? model->data().entityOf(handle) : nullptr)
        return name + ' ' + entity->displayName();
    return handle.isDefined() ? name + ", which is kept as text" : name + ", which is no instance";
}

std::string countOf(std::size_t count, const std::string& noun) {
    return (count == 0 ? "no " : std::to_string(count) + ' ') + noun + (count > 1 ? "s" : "");
}

} // namespace KP_SDAI
