#include "Workloads.h"

#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModule.h>

#include <memory>
#include <stdexcept>

#if __has_include(<sys/resource.h>)
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

using namespace KP_SDAI;

#if __has_include(<sys/resource.h>)

namespace {

struct Measured {
    std::uint64_t instances;
    std::uint64_t before; ///< peak once the module is loaded
    std::uint64_t peak;
};

std::uint64_t peakOfThisProcess() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
#ifdef __APPLE__
    constexpr std::uint64_t unit = 1;
#else
    constexpr std::uint64_t unit = 1024;
#endif
    return static_cast<std::uint64_t>(usage.ru_maxrss) * unit;
}

/// The child's work; false where the file cannot be opened.
bool openAndMeasure(const std::string& path, Measured& measured) {
    std::string error;
    const std::shared_ptr<KpIfcModule> module = KpIfcModule::load("IFC2X3", error);
    measured.before = peakOfThisProcess();
    KpIfcFile file;
    if (!module || file.open(path) != KP::eOk) {
        return false;
    }
    measured.peak = peakOfThisProcess();
    measured.instances = file.model()->count();
    return true;
}

} // namespace

void measureMemory(const std::string& path, FileFigures& figures) {
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe to a child process");
    }
    const pid_t child = fork();
    if (child == 0) {
        Measured measured{};
        const bool done =
            openAndMeasure(path, measured) && write(ends[1], &measured, sizeof measured) == sizeof measured;
        _exit(done ? 0 : 1);
    }
    close(ends[1]);
    Measured measured{};
    const bool done = child > 0 && read(ends[0], &measured, sizeof measured) == sizeof measured;
    close(ends[0]);
    if (child > 0) {
        waitpid(child, nullptr, 0);
    }
    if (!done) {
        throw std::runtime_error("cannot measure the memory of " + path);
    }
    figures.instances = measured.instances;
    figures.peakMemory = measured.peak;
    figures.memoryGrowth = measured.peak - measured.before;
}

#else

void measureMemory(const std::string&, FileFigures&) {
    // Left empty: this system does not tell the peak memory of a process.
}

#endif
