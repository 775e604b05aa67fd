#include "CpuTime.h"
#include "Erasing.h"
#include "SampleFiles.h"

#include <IFC2X3/IfcCartesianPoint.h>
#include <IFC2X3/IfcWall.h>
#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

// What it costs to read and change attributes: of all instances of a file by name, and single operations.

using namespace KP_SDAI;
namespace fs = std::filesystem;

namespace {

/// Makes the compiler believe that a value is used.
template <class T>
void keep(const T& value) {
    asm volatile("" : : "r,m"(&value) : "memory");
}

/// Median seconds of one call of `work`, which is repeated `repeats` times in each run; `prepare` comes before a run
/// and is not measured.
template <class Work, class Prepare>
double secondsOf(std::size_t repeats, Work work, Prepare prepare) {
    std::vector<double> runs;
    for (int run = 0; run < 5; ++run) {
        prepare();
        const double start = cpuSeconds();
        for (std::size_t i = 0; i < repeats; ++i) {
            work();
        }
        runs.push_back((cpuSeconds() - start) / static_cast<double>(repeats));
    }
    return median(std::move(runs));
}

template <class Work>
double secondsOf(std::size_t repeats, Work work) {
    return secondsOf(repeats, work, [] {});
}

using Json = nlohmann::ordered_json;

/// Nanoseconds by operation.
Json measureOperations(const std::shared_ptr<KpIfcModule>& module) {
    Json rows;
    const auto row = [&rows](const char* operation, double seconds) { rows[operation] = seconds * 1e9; };
    KpIfcModel model(module);
    constexpr std::size_t many = 5'000'000;
    auto* wall = model.create<IFC2X3::IfcWall>();
    auto* point = model.create<IFC2X3::IfcCartesianPoint>();
    wall->setName("Wall 1");
    point->setCoordinates({1.0, 2.0, 3.0});
    const KpAnsiString name("name"), coordinates("coordinates");
    const KpIfcEntityBase* instance = wall; // calls are virtual, as in programs that do not know the class
    const KpIfcEntityBase* pointInstance = point;
    KpIfcEntityBase* changed = wall;
    KpIfcVariant value;
    row("typed getter, text", secondsOf(many, [&] { keep(wall->getName()); }));
    row("typed getter, aggregate",
        secondsOf(many, [&] { keep(static_cast<const IFC2X3::IfcCartesianPoint*>(point)->getCoordinates()); }));
    row("getAttr, text, 6 levels up", secondsOf(many, [&] { keep(instance->getAttr(name, value)); }));
    row("getAttr, aggregate, own", secondsOf(many, [&] { keep(pointInstance->getAttr(coordinates, value)); }));
    row("testAttr, text, 6 levels up", secondsOf(many, [&] { keep(instance->testAttr(name)); }));
    const KpIfcVariant text("Another wall");
    row("typed setter, text", secondsOf(many, [&] { wall->setName("Another wall"); }));
    row("putAttr, text", secondsOf(many, [&] { keep(changed->putAttr(name, text)); }));
    const KpIfcVariant reals(KpIfcArray<double>{4.0, 5.0, 6.0});
    row("putAttr, aggregate of reals", secondsOf(many / 5, [&] { keep(point->putAttr(coordinates, reals)); }));
    std::optional<KpIfcModel> points; // a new one each run
    row("create a point with coordinates",
        secondsOf(
            many / 10,
            [&] {
                points->create<IFC2X3::IfcCartesianPoint>()->setCoordinates({1.0, 2.0, 3.0});
            },
            [&] { points.emplace(module); }));
    return rows;
}

/// The names under which each entity's instances are asked.
using Names = std::unordered_map<const KpIfcEntityType*, std::vector<KpAnsiString>>;

/// Reads every explicit attribute of every instance.
Json measureFile(const fs::path& path) {
    const UnpackedFile unpacked(path);
    KpIfcFile file;
    if (file.open(unpacked.path().string()) != KP::eOk) {
        throw std::runtime_error(path.string() + ": " + file.error());
    }
    KpIfcModel& model = *file.model();
    Names names;
    struct Asked {
        const KpIfcEntityBase* instance;
        const std::vector<KpAnsiString>* names;
    };
    std::vector<Asked> asked;
    std::size_t count = 0;
    for (const KpIfcEntityBase* instance : model.instances()) {
        const KpIfcEntityType* type = instance->getInstanceType();
        const auto [entry, isNew] = names.try_emplace(type);
        if (isNew) {
            for (const KpIfcAttributeDefinition* attribute : type->allAttributes()) {
                if (attribute->kind() == KpIfcAttributeKind::explicitAttribute) {
                    entry->second.emplace_back(attribute->name());
                }
            }
        }
        asked.push_back({instance, &entry->second});
        count += entry->second.size();
    }
    model.mode(kReadOnly);
    std::size_t found = 0;
    const double seconds = secondsOf(1 + 2'000'000 / std::max<std::size_t>(count, 1), [&] {
        KpIfcVariant value;
        for (const Asked& one : asked) {
            for (const KpAnsiString& name : *one.names) {
                found += one.instance->getAttr(name, value);
            }
        }
        keep(value);
    });
    if (found % count != 0) {
        throw std::runtime_error(path.string() + ": not every attribute was found");
    }
    return {
        {"file", path.filename().string()}, {"attributes", count}, {"perSecond", static_cast<double>(count) / seconds}};
}

struct Arguments {
    std::vector<std::string> files;
    bool json = false;
};

void run(const Arguments& arguments) {
    std::string error;
    const std::shared_ptr<KpIfcModule> module = KpIfcModule::load("IFC2X3", error);
    if (!module) {
        throw std::runtime_error(error);
    }
    std::vector<fs::path> files(arguments.files.begin(), arguments.files.end());
    if (files.empty()) {
        files = samplesFor(KP_SOURCE_DIR);
    }
    Json figures = {{"nanoseconds", measureOperations(module)}, {"byName", Json::array()}};
    for (const fs::path& path : files) {
        figures["byName"].push_back(measureFile(path));
    }
    if (arguments.json) {
        fmt::print("{}\n", figures.dump(2));
        return;
    }
    for (const auto& [operation, nanoseconds] : figures["nanoseconds"].items()) {
        fmt::print("{:<52} {:>8.1f} ns\n", operation, nanoseconds.get<double>());
    }
    fmt::print("\nall attributes of all instances by name, read-only\n");
    for (const Json& file : figures["byName"]) {
        fmt::print("{:<40.40} {:>9} attributes {:>7.1f} million/s\n", file["file"].get<std::string>(),
                   file["attributes"].get<std::size_t>(), file["perSecond"].get<double>() / 1e6);
    }
    fmt::print("\nsingle instances erased, once it is known who refers to whom; and found\n");
    for (const fs::path& path : files) {
        measureErasing(path);
    }
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("Measures reading and changing attributes.", "kpifc_bench_access");
    Arguments arguments;
    app.add_option("FILE", arguments.files, "STEP files, also compressed (.gz); else the samples that are found");
    app.add_flag("--json", arguments.json, "Print one JSON object, without erasing and finding");
    CLI11_PARSE(app, argc, argv);
    try {
        run(arguments);
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "kpifc_bench_access: %s\n", failure.what());
    }
    return 1;
}
