#include "Figures.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

namespace {

constexpr double kMillion = 1e6;

using Figure = std::optional<double>;

/// How much of a quantity goes into each unit of another; empty where that was not measured.
template <class T>
Figure ratio(double quantity, std::optional<T> per) {
    return per && *per > 0 ? Figure(quantity / static_cast<double>(*per)) : Figure();
}

double megabytes(const FileFigures& file) {
    return static_cast<double>(file.bytes) / kMillion;
}

Figure bytesPerInstance(const FileFigures& file) {
    return file.memoryGrowth && file.instances
               ? Figure(static_cast<double>(*file.memoryGrowth) / static_cast<double>(file.instances))
               : Figure();
}

Figure peakPerFile(const FileFigures& file) {
    return file.peakMemory && file.bytes
               ? Figure(static_cast<double>(*file.peakMemory) / static_cast<double>(file.bytes))
               : Figure();
}

std::string cell(Figure figure, int decimals) {
    return figure ? fmt::format("{:.{}f}", *figure, decimals) : "-";
}

Figure inNanoseconds(Figure seconds) {
    return seconds ? Figure(*seconds * 1e9) : Figure();
}

Json orNull(Figure figure) {
    return figure ? Json(*figure) : Json();
}

Json speedOf(const FileFigures& file, Figure seconds) {
    return {{"cpuSeconds", orNull(seconds)},
            {"megabytesPerSecond", orNull(ratio(megabytes(file), seconds))},
            {"instancesPerSecond", orNull(ratio(static_cast<double>(file.instances), seconds))}};
}

Json memoryOf(const FileFigures& file) {
    return {{"peakBytes", file.peakMemory ? Json(*file.peakMemory) : Json()},
            {"peakPerFile", orNull(peakPerFile(file))},
            {"bytesPerInstance", orNull(bytesPerInstance(file))}};
}

Json lazyOf(const std::optional<LazyFigures>& figures) {
    if (!figures) return {};
    return {{"timePerOpen", figures->timePerOpen}, {"memoryPerOpen", figures->memoryPerOpen}};
}

} // namespace

std::string tableOf(const Figures& figures) {
    constexpr const char* columns = "{:<34.34} {:>7} {:>9} {:>7} {:>7} {:>7} {:>7} {:>7} {:>7} {:>7} {:>7} {:>7}\n";
    std::string table = fmt::format(columns, "", "size", "instances", "tokens", "open", "open", "write", "save",
                                    "close", "inverse", "memory", "peak") +
                        fmt::format(columns, "file", "MB", "", "MB/s", "MB/s", "Minst/s", "MB/s", "MB/s", "MB/s",
                                    "ns/read", "B/inst", "/file");
    for (const FileFigures& file : figures.files) {
        const double size = megabytes(file);
        table += fmt::format(
            columns, file.name, cell(size, 2), file.instances, cell(ratio(size, file.tokens), 0),
            cell(ratio(size, file.open), 0), cell(ratio(static_cast<double>(file.instances) / kMillion, file.open), 2),
            cell(ratio(size, file.write), 0), cell(ratio(size, file.save), 0), cell(ratio(size, file.close), 0),
            cell(inNanoseconds(file.inverse), 1), cell(bytesPerInstance(file), 0), cell(peakPerFile(file), 2));
    }
    for (const FileFigures& file : figures.files) {
        if (!file.findGlobalId || !file.countTypes) continue;
        const auto percent = [](double share) { return cell(100 * share, 0) + " %"; };
        table +=
            fmt::format("{}, lazily: one GlobalId {} of the time and {} of the memory of opening; instances by "
                        "type {} and {}\n",
                        file.name, percent(file.findGlobalId->timePerOpen), percent(file.findGlobalId->memoryPerOpen),
                        percent(file.countTypes->timePerOpen), percent(file.countTypes->memoryPerOpen));
    }
    if (figures.module) {
        table += fmt::format("module: load and initialise {:.2f} ms, unload {:.2f} ms\n",
                             figures.module->initialise * 1e3, figures.module->unload * 1e3);
    }
    return table +
           fmt::format("per second of CPU time, medians of {} runs; sizes are those of the files\n", figures.runs);
}

std::string jsonOf(const Figures& figures) {
    Json files = Json::array();
    for (const FileFigures& file : figures.files) {
        files.push_back(
            {{"file", file.name},
             {"bytes", file.bytes},
             {"instances", file.instances},
             {"tokens", speedOf(file, file.tokens)},
             {"open", speedOf(file, file.open)},
             {"openWallSeconds", orNull(file.openWall)},
             {"write", speedOf(file, file.write)},
             {"save", speedOf(file, file.save)},
             {"close", speedOf(file, file.close)},
             {"inverse", {{"cpuSecondsPerRead", orNull(file.inverse)}}},
             {"memory", memoryOf(file)},
             {"lazy", {{"findGlobalId", lazyOf(file.findGlobalId)}, {"countTypes", lazyOf(file.countTypes)}}}});
    }
    Json module;
    if (figures.module) {
        module = {{"initialiseSeconds", figures.module->initialise}, {"unloadSeconds", figures.module->unload}};
    }
    const Json object = {{"runs", figures.runs}, {"files", std::move(files)}, {"module", std::move(module)}};
    return object.dump(2) + '\n';
}
