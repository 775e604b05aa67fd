#include "Outcome.h"

#include "StepFiles.h"

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcFacts.h>
#include <KpIfcCore/KpIfcInverseMembers.h>
#include <part21/SmallParts.h>

using namespace KP_SDAI;

namespace {

void putNames(const KpIfcArray<KpDbObjectId>& handles, std::string& out) {
    for (const KpDbObjectId& handle : handles) out += ' ' + std::to_string(handle.instanceName());
    out += '\n';
}

void putInverses(const KpIfcEntityBase& instance, std::string& out) {
    KpIfcArray<KpDbObjectId> referrers;
    for (const KpIfcEntityType* type = instance.getInstanceType(); type; type = type->superType()) {
        const KpIfcEntityFacts& facts = *type->facts();
        for (std::uint32_t i = 0; i < facts.inverseCount; ++i) {
            const KpIfcInverseFacts& inverse = facts.inverses[i];
            inverse.members(const_cast<KpIfcEntityBase&>(instance)).copyTo(instance, i, referrers);
            if (referrers.length() == 0) continue;
            out += '#' + std::to_string(instance.instanceName()) + ' ' + std::to_string(i) + " of " + type->name();
            putNames(referrers, out);
        }
    }
}

} // namespace

std::string outcomeOf(std::string_view content, const KpIfcOpenOptions& options, std::size_t partSize) {
    const SmallParts parts(partSize);
    KpIfcFile file;
    if (file.openMemory(content.data(), content.size(), "memory", options) != KP::eOk) return file.error();
    const KpIfcModel& model = *file.model();
    const KpIfcReport& report = file.report();
    std::string out = findings(report) + std::to_string(report.departures()) + " departures\n";
    for (const KpIfcSeverity severity : {KpIfcSeverity::note, KpIfcSeverity::warning, KpIfcSeverity::error})
        out += std::to_string(report.count(severity)) + ' ' + severityName(severity) + '\n';
    out += std::to_string(model.count()) + " instances, " + std::to_string(model.keptRecordCount()) + " kept\n";
    putNames(model.fileOrder(), out);
    for (const KpIfcEntityBase* instance : model.instances()) putInverses(*instance, out);
    return out + saved(file) + rewritten(file);
}
