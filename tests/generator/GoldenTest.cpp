#include "SchemaFiles.h"
#include "emit/Emitters.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <set>

namespace fs = std::filesystem;

namespace {

using namespace kpifcgen;

/// Expected files carry a suffix, so that no tool takes them for sources of the project.
const std::string suffix = ".golden";

const fs::path goldenFolder = fs::path(KP_SOURCE_DIR) / "tests/generator/golden";

std::vector<emit::File> emitMini() {
    facts::Diagnostics diagnostics;
    const auto plan =
        plan::planModule(loadSound(readSource("generator/schemas/mini.schema")), "mini.schema", diagnostics);
    if (!plan) {
        throw std::runtime_error(facts::format("mini.schema", diagnostics));
    }
    return emit::emitModule(*plan);
}

std::string readGolden(const std::string& path) {
    return readSource("tests/generator/golden/" + path + suffix);
}

/// KPIFCGEN_UPDATE_GOLDEN=1 writes the expected files instead of comparing.
bool isUpdating() {
    return std::getenv("KPIFCGEN_UPDATE_GOLDEN") != nullptr;
}

void update(const std::vector<emit::File>& files) {
    fs::remove_all(goldenFolder);
    for (const auto& [path, text] : files) {
        const fs::path golden = goldenFolder / (path + suffix);
        fs::create_directories(golden.parent_path());
        std::ofstream(golden, std::ios::binary) << text;
    }
}

std::set<std::string> goldenPaths() {
    std::set<std::string> paths;
    for (const auto& entry : fs::recursive_directory_iterator(goldenFolder)) {
        if (entry.is_regular_file()) {
            paths.insert(fs::relative(entry.path(), goldenFolder).generic_string());
        }
    }
    return paths;
}

TEST(Golden, MiniSchemaIsEmittedAsReviewed) {
    const auto files = emitMini();
    if (isUpdating()) {
        update(files);
        GTEST_SKIP() << "expected files written";
    }
    std::set<std::string> emitted;
    for (const auto& [path, text] : files) {
        emitted.insert(path + suffix);
        EXPECT_EQ(text, readGolden(path)) << path;
    }
    EXPECT_EQ(emitted, goldenPaths());
}

} // namespace
