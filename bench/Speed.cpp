#include "ChildProcess.h"
#include "CpuTime.h"
#include "Workloads.h"

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcInverseMembers.h>
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <unistd.h>

using namespace KP_SDAI;

namespace {

std::shared_ptr<KpIfcModule> loadModule() {
    std::string error;
    std::shared_ptr<KpIfcModule> module = KpIfcModule::load("IFC2X3", error);
    if (!module) {
        throw std::runtime_error(error);
    }
    return module;
}

void require(KP::ErrorStatus status, const KpIfcFile& file) {
    if (status != KP::eOk) {
        throw std::runtime_error(file.error());
    }
}

/// Seconds that it takes to copy an inverse attribute of an instance, on average over all that a model has; 0 where it
/// has none.
double secondsPerInverse(const KpIfcModel& model) {
    KpIfcArray<KpDbObjectId> referrers;
    std::size_t reads = 0;
    double seconds = 0;
    while (seconds < kShortestRun) {
        const std::size_t before = reads;
        const double start = cpuSeconds();
        for (KpIfcEntityBase* instance : model.instances()) {
            for (const KpIfcEntityType* type = instance->getInstanceType(); type; type = type->superType()) {
                const KpIfcEntityFacts& facts = *type->facts();
                for (std::uint32_t i = 0; i < facts.inverseCount; ++i) {
                    facts.inverses[i].members(*instance).copyTo(*instance, i, referrers);
                    ++reads;
                }
            }
        }
        seconds += cpuSeconds() - start;
        if (reads == before) {
            return 0;
        }
    }
    return seconds / static_cast<double>(reads);
}

/// Gives an instance in the middle another name.
void edit(const KpIfcModel& model) {
    std::vector<KpIfcEntityBase*> rooted;
    for (KpIfcEntityBase* instance : model.instances("IfcRoot")) rooted.push_back(instance);
    if (rooted.empty() || !rooted[rooted.size() / 2]->putAttr("Name", KpIfcVariant("edited"))) {
        throw std::runtime_error("there is nothing to edit");
    }
}

} // namespace

void measureSpeed(const std::string& path, int runs, const Workloads& workloads, FileFigures& figures) {
    const std::shared_ptr<KpIfcModule> module = loadModule(); // so that opening does not load it each time
    const std::filesystem::path target =
        std::filesystem::temp_directory_path() / ("kpifc_bench_" + std::to_string(::getpid()) + ".ifc");
    std::vector<double> opens;
    std::vector<double> openWalls;
    std::vector<double> writes;
    std::vector<double> saves;
    std::vector<double> closes;
    std::vector<double> inverses;
    for (int run = 0; run < runs; ++run) {
        double open = 0;
        double openWall = 0;
        double write = 0;
        double save = 0;
        double close = 0;
        double inverse = 0;
        int rounds = 0;
        for (; rounds == 0 || open < kShortestRun; ++rounds) {
            KpIfcFile file;
            std::string written;
            const auto wallStart = std::chrono::steady_clock::now();
            const double start = cpuSeconds();
            require(file.open(path, {.threads = workloads.threads}), file);
            const double opened = cpuSeconds();
            openWall += std::chrono::duration<double>(std::chrono::steady_clock::now() - wallStart).count();
            if (workloads.write) {
                require(file.saveToMemory(written, {.normalise = true}), file);
            }
            const double saved = cpuSeconds();
            figures.instances = file.model()->count();
            if (workloads.inverse && rounds == 0) {
                inverse = secondsPerInverse(*file.model());
            }
            if (workloads.save) {
                edit(*file.model());
                const double edited = cpuSeconds();
                require(file.save(target.string()), file);
                save += cpuSeconds() - edited;
            }
            const double before = cpuSeconds();
            file.close();
            close += cpuSeconds() - before;
            open += opened - start;
            write += saved - opened;
        }
        opens.push_back(open / rounds);
        openWalls.push_back(openWall / rounds);
        writes.push_back(write / rounds);
        saves.push_back(save / rounds);
        closes.push_back(close / rounds);
        inverses.push_back(inverse);
    }
    if (workloads.open) {
        figures.open = median(opens);
        figures.openWall = median(openWalls);
    }
    if (workloads.write) {
        figures.write = median(writes);
    }
    if (workloads.save) {
        figures.save = median(saves);
    }
    std::filesystem::remove(target);
    if (workloads.close) {
        figures.close = median(closes);
    }
    if (workloads.inverse) {
        figures.inverse = median(inverses);
    }
}

ModuleFigures measureModule(int runs) {
    std::vector<double> initialise;
    std::vector<double> unload;
    for (int run = 0; run < runs; ++run) {
        const auto times = measuredInChild<ModuleFigures>("the module", [](ModuleFigures& result) {
            const double start = cpuSeconds();
            std::shared_ptr<KpIfcModule> module = loadModule();
            const double loaded = cpuSeconds();
            module.reset();
            result.unload = cpuSeconds() - loaded;
            result.initialise = loaded - start;
            return true;
        });
        initialise.push_back(times.initialise);
        unload.push_back(times.unload);
    }
    return {median(initialise), median(unload)};
}
