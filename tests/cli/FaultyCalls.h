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
