#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What looking at little of a lazily opened file costs, opening included, over a full open by one thread.
struct LazyFigures {
    double timePerOpen = 0;
    double memoryPerOpen = 0; ///< what the peak grew by it, each in a process of its own
};

/// What was measured of one file. Times are seconds of CPU time of all threads but where said otherwise, medians of the
/// runs; what was not asked for is empty.
struct FileFigures {
    std::string name;
    std::uint64_t bytes = 0;
    std::uint64_t instances = 0;
    std::optional<double> tokens; ///< of looking at each, see measureTokens()
    std::optional<double> open;
    std::optional<double> openWall; ///< the same by the clock on the wall
    std::optional<double> write;
    std::optional<double> save;
    std::optional<double> close;
    std::optional<double> inverse;             ///< of reading one inverse attribute of one instance
    std::optional<std::uint64_t> peakMemory;   ///< bytes of a process that opens the file and does nothing else
    std::optional<std::uint64_t> memoryGrowth; ///< what the peak grew by opening it, once the module is loaded
    std::optional<LazyFigures> findGlobalId;   ///< one, of an instance in the middle
    std::optional<LazyFigures> countTypes;     ///< how many instances of which entities there are
};

/// Seconds of CPU time, medians of the runs.
struct ModuleFigures {
    double initialise = 0; ///< load the library and build the schema
    double unload = 0;
};

struct Figures {
    int runs = 0;
    std::vector<FileFigures> files;
    std::optional<ModuleFigures> module;
};

/// For people, one line a file.
std::string tableOf(const Figures& figures);
/// For programs, one JSON object; null where a figure was not asked for.
std::string jsonOf(const Figures& figures);
