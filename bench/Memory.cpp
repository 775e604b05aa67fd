#include "ChildProcess.h"
#include "Workloads.h"

#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModule.h>

#include <memory>

#if __has_include(<sys/resource.h>)
#include <sys/resource.h>
#endif

using namespace KP_SDAI;

namespace {

struct Measured {
    std::uint64_t instances;
    std::uint64_t before; ///< peak once the module is loaded
    std::uint64_t peak;
};

/// Bytes of resident memory; 0 where the system does not tell.
std::uint64_t peakOfThisProcess() {
#if __has_include(<sys/resource.h>)
#ifdef __APPLE__
    constexpr std::uint64_t unit = 1;
#else
    constexpr std::uint64_t unit = 1024;
#endif
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::uint64_t>(usage.ru_maxrss) * unit;
#else
    return 0;
#endif
}

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
