#include "ChildProcess.h"
#include "CpuTime.h"
#include "PeakMemory.h"
#include "Workloads.h"

#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcGUID.h>
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

using namespace KP_SDAI;

namespace {

struct Cost {
    double seconds = 0; ///< of CPU time
    std::uint64_t memory = 0;
};

/// Empty where a file has none.
struct GlobalId {
    char text[KpIfcGUID::kLength + 1] = {};
};

using Work = std::function<bool(const KpIfcModel&)>;

/// Of opening a file and doing something with it, in a process that has opened nothing before.
Cost costOf(const std::string& path, const KpIfcOpenOptions& options, const Work& work) {
    const auto cost = measuredInChild<Cost>("opening a part of " + path, [&](Cost& result) {
        std::string error;
        const std::shared_ptr<KpIfcModule> module = KpIfcModule::load("IFC2X3", error);
        const std::uint64_t before = peakOfThisProcess();
        const double start = cpuSeconds();
        KpIfcFile file;
        if (!module || file.open(path, options) != KP::eOk || !work(*file.model())) return false;
        result = {cpuSeconds() - start, peakOfThisProcess() - before};
        return before != 0;
    });
    return cost;
}

/// Each run beside a full opening, so that both have the same machine.
LazyFigures besideOpening(const std::string& path, int runs, const Work& work) {
    std::vector<double> times;
    std::vector<double> memory;
    for (int run = 0; run < runs; ++run) {
        const Cost full = costOf(path, {.threads = 1}, [](const KpIfcModel&) { return true; });
        if (full.seconds == 0 || full.memory == 0) throw std::runtime_error("opening " + path + " cannot be measured");
        const Cost part = costOf(path, {.lazy = true}, work);
        times.push_back(part.seconds / full.seconds);
        memory.push_back(static_cast<double>(part.memory) / static_cast<double>(full.memory));
    }
    return {median(times), median(memory)};
}

/// That of an instance in the middle.
GlobalId someGlobalId(const std::string& path) {
    return measuredInChild<GlobalId>("a GlobalId of " + path, [&](GlobalId& result) {
        KpIfcFile file;
        if (file.open(path) != KP::eOk) return false;
        std::vector<const KpIfcEntityBase*> rooted;
        for (const KpIfcEntityBase* instance : file.model()->instances("IfcRoot")) rooted.push_back(instance);
        KpIfcVariant value;
        if (rooted.empty() || !rooted[rooted.size() / 2]->getAttr("GlobalId", value)) return true;
        KpIfcGUID globalId;
        if (value.get(globalId) && !globalId.isUnset()) std::strcpy(result.text, globalId.constStr());
        return true;
    });
}

} // namespace

void measureLazily(const std::string& path, int runs, FileFigures& figures) {
    const GlobalId globalId = someGlobalId(path);
    if (globalId.text[0]) {
        figures.findGlobalId = besideOpening(
            path, runs, [&](const KpIfcModel& model) { return !model.findByGlobalId(globalId.text).isNull(); });
    }
    figures.countTypes = besideOpening(
        path, runs, [](const KpIfcModel& model) { return model.entityCounts().length() <= model.count(); });
}
