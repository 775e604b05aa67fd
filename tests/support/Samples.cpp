#include "Samples.h"

#include <algorithm>
#include <cctype>

namespace fs = std::filesystem;

namespace {

const fs::path kSamples = fs::path(KP_SHARED_DIR) / "samples";

} // namespace

std::vector<fs::path> samples() {
    std::vector<fs::path> paths = findSamples(kSamples);
    if (paths.empty()) {
        paths.emplace_back();
    }
    return paths;
}

std::string nameOf(const testing::TestParamInfo<fs::path>& info) {
    std::string name = info.param.empty() ? "absent" : info.param.filename().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
}

void OfSamples::SetUp() {
    if (GetParam().empty()) {
        GTEST_SKIP() << "no sample files in " << kSamples;
    }
}
