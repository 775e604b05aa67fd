#include "Harness.h"
#include "Models.h"
#include "SmallModel.h"

#include <kpifc/Assignments.h>
#include <kpifc/Failure.h>
#include <kpifc/HeaderFields.h>

#include <string>

using namespace KP_SDAI;

/// Lines such as users give to `kpifc set`, over a small model: each is refused or stored, and what was stored is what
/// is read back.
void fuzzTarget(std::string_view bytes) {
    keepModule();
    KpIfcFile file = reopened(framed(kSmallModel));
    KpIfcModel& model = *file.model();
    while (!bytes.empty()) {
        const std::string line(bytes.substr(0, bytes.find('\n')));
        bytes.remove_prefix(std::min(bytes.size(), line.size() + 1));
        try {
            kpifc::headerField(line);
        } catch (const kpifc::Failure& failure) {
            require(*failure.what() != '\0', "a refusal has a reason");
        }
        try {
            kpifc::Targets targets(model);
            const kpifc::Assignment assignment = kpifc::parseAssignment(line, targets);
            kpifc::applyAll({assignment}, model);
        } catch (const kpifc::Failure& failure) {
            require(*failure.what() != '\0', "a refusal has a reason");
        }
    }
    requireTrueIndexes(model);
    const std::string normalised = writtenRecords(file);
    KpIfcFile again = reopened(written(file, false));
    requireSame(writtenRecords(again), normalised, "what was stored is read back");
}
