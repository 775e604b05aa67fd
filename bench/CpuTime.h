#pragma once

#include <algorithm>
#include <ctime>
#include <vector>

/// Seconds of CPU time that the threads of this process have used.
inline double cpuSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// A run repeats the work on small files until the clock's steps do not matter.
constexpr double kShortestRun = 0.02;

/// Of one value at least.
inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}
