#pragma once

#include "SampleFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

/// The sample files, as cases of tests; an empty path where there are none.
inline std::vector<std::filesystem::path> sampleFiles() {
    std::vector<std::filesystem::path> paths = findSamples(std::filesystem::path(KP_SHARED_DIR) / "samples");
    if (paths.empty()) {
        paths.emplace_back();
    }
    return paths;
}

inline std::string sampleName(const testing::TestParamInfo<std::filesystem::path>& info) {
    std::string name = info.param.empty() ? "absent" : info.param.filename().string();
    for (char& c : name) {
        const bool fits = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        c = fits ? c : '_';
    }
    return name;
}
