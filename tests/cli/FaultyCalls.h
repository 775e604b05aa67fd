#pragma once

#include "Runner.h"

#include <string>

/// What lets calls of the programs under test go wrong (FaultInjection.cpp), for LD_PRELOAD.
inline std::string faultLibrary() {
#ifdef KP_FAULT_LIBRARY
    return KP_FAULT_LIBRARY;
#else
    return {};
#endif
}

inline bool canIntercept() {
    return !faultLibrary().empty() && faultLibrary().find_first_of(" :") == std::string::npos;
}

/// What no container makes small, so that every source takes several reads and every target several writes.
inline std::string manyPoints() {
    std::string records;
    unsigned random = 1;
    const auto number = [&random] { return std::to_string(random = random * 1664525U + 1013904223U) + '.'; };
    for (int i = 1; i <= 30'000; ++i) {
        records += "#" + std::to_string(i) + "=IFCCARTESIANPOINT((" + number() + "," + number() + "));\n";
    }
    return stepFile(records);
}
