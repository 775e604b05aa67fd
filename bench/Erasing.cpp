#include "Erasing.h"

#include "SampleFiles.h"

#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcErase.h>
#include <KpIfcCore/KpIfcFile.h>

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

using namespace KP_SDAI;

namespace {

constexpr std::size_t kMost = 20'000; // are erased

double microseconds(std::chrono::steady_clock::duration time) {
    return std::chrono::duration<double, std::micro>(time).count();
}

/// Erases single instances, those that something refers to or the others, in random order.
void measure(const std::filesystem::path& path, bool isReferenced, KpIfcErasePolicy policy, const char* what) {
    KpIfcFile file;
    if (file.open(path.string()) != KP::eOk) {
        return;
    }
    KpIfcModel& model = *file.model();
    std::vector<KpDbObjectId> handles;
    for (const KpIfcEntityBase* instance : model.instances()) {
        if (model.referrers(instance->objectId()).empty() != isReferenced) {
            handles.push_back(instance->objectId());
        }
    }
    std::shuffle(handles.begin(), handles.end(), std::mt19937(1));
    handles.resize(std::min(handles.size(), kMost));
    std::vector<double> times;
    for (const KpDbObjectId& handle : handles) {
        if (!handle.isDefined()) {
            continue; // went along with another one
        }
        const auto start = std::chrono::steady_clock::now();
        const KpIfcEraseResult result = erase(model, {&handle, 1}, policy);
        times.push_back(microseconds(std::chrono::steady_clock::now() - start));
        if (result.status != KP::eOk) {
            fmt::print("  but #{} was not erased\n", handle.instanceName());
        }
    }
    if (times.empty()) {
        return;
    }
    std::sort(times.begin(), times.end());
    double sum = 0;
    for (const double time : times) {
        sum += time;
    }
    fmt::print("  {:<36} {:>6} of them {:>8.2f} us median {:>8.2f} us mean {:>9.1f} us 99 %\n", what, times.size(),
               times[times.size() / 2], sum / static_cast<double>(times.size()), times[times.size() * 99 / 100]);
}

void measureFinding(const std::filesystem::path& path) {
    KpIfcFile file;
    if (file.open(path.string()) != KP::eOk) {
        return;
    }
    const KpIfcModel& model = *file.model();
    std::vector<std::string> globalIds;
    KpIfcVariant value;
    for (const KpIfcEntityBase* instance : model.instances("IfcRoot")) {
        if (peekAttribute(*instance, "GlobalId", value)) {
            globalIds.emplace_back(value.getIf<KpIfcGUID>()->constStr());
        }
    }
    std::shuffle(globalIds.begin(), globalIds.end(), std::mt19937(1));
    model.findByGlobalId(""); // builds the index
    std::size_t found = 0;
    const auto start = std::chrono::steady_clock::now();
    for (const std::string& globalId : globalIds) {
        found += !model.findByGlobalId(globalId).isNull();
    }
    const double time = microseconds(std::chrono::steady_clock::now() - start);
    fmt::print("  {:<36} {:>6} of them {:>8.3f} us mean\n", "found by GlobalId", found,
               time / static_cast<double>(std::max<std::size_t>(globalIds.size(), 1)));
}

} // namespace

void measureErasing(const std::filesystem::path& path) {
    const UnpackedFile unpacked(path);
    fmt::print("{}\n", path.filename().string());
    measure(unpacked.path(), false, KpIfcErasePolicy::refuse, "unreferenced");
    measure(unpacked.path(), true, KpIfcErasePolicy::dropReferences, "referenced, references dropped");
    measure(unpacked.path(), false, KpIfcErasePolicy::cascade, "unreferenced, with what only it used");
    measureFinding(unpacked.path());
}
