#include "ChildProcess.h"
#include "PeakMemory.h"
#include "Workloads.h"

#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModule.h>

#include <memory>

using namespace KP_SDAI;

namespace {

struct Measured {
    std::uint64_t instances;
    std::uint64_t before; ///< peak once the module is loaded
    std::uint64_t peak;
};

} // namespace

void measureMemory(const std::string& path, const Workloads& workloads, FileFigures& figures) {
    const auto measured = measuredInChild<Measured>("the memory of " + path, [&](Measured& result) {
        std::string error;
        const std::shared_ptr<KpIfcModule> module = KpIfcModule::load("IFC2X3", error);
        result.before = peakOfThisProcess();
        KpIfcFile file;
        if (!module || file.open(path, {.threads = workloads.threads}) != KP::eOk) {
            return false;
        }
        result.peak = peakOfThisProcess();
        result.instances = file.model()->count();
        return result.peak != 0;
    });
    figures.instances = measured.instances;
    figures.peakMemory = measured.peak;
    figures.memoryGrowth = measured.peak - measured.before;
}
