#include "Runner.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

using Json = nlohmann::json;

namespace {

const std::string kBench = quoted(KPIFC_BENCH);
const std::string kHouse = quoted(KP_SOURCE_DIR "/examples/small_house.ifc");

TEST(BenchTest, MeasuresEveryWorkload) {
    const WorkFolder folder;
    const Outcome outcome = folder.run(kBench + " --runs 1 --json " + kHouse);
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const Json figures = Json::parse(outcome.out);
    ASSERT_EQ(figures["files"].size(), 1u);
    const Json& file = figures["files"][0];
    EXPECT_EQ(file["bytes"], contentOf(KP_SOURCE_DIR "/examples/small_house.ifc").size());
    EXPECT_GT(file["instances"], 100);
    for (const char* workload : {"tokens", "open", "write", "close"}) {
        EXPECT_GT(file[workload]["megabytesPerSecond"], 0.0) << workload;
    }
    EXPECT_GT(file["memory"]["peakBytes"], file["bytes"]);
    EXPECT_GT(file["inverse"]["cpuSecondsPerRead"], 0.0);
    EXPECT_GT(figures["module"]["initialiseSeconds"], 0.0);
}

TEST(BenchTest, MeasuresWhatIsAskedForOfCompressedFiles) {
    const WorkFolder folder;
    const Outcome outcome =
        folder.run("gzip -c " + kHouse + " >house.ifc.gz && " + kBench + " --only open --json house.ifc.gz");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const Json figures = Json::parse(outcome.out);
    const Json& file = figures["files"][0];
    EXPECT_EQ(file["bytes"], contentOf(KP_SOURCE_DIR "/examples/small_house.ifc").size());
    EXPECT_GT(file["open"]["megabytesPerSecond"], 0.0);
    EXPECT_TRUE(file["write"]["megabytesPerSecond"].is_null());
    EXPECT_TRUE(file["memory"]["peakBytes"].is_null());
    EXPECT_TRUE(file["inverse"]["cpuSecondsPerRead"].is_null());
    EXPECT_TRUE(figures["module"].is_null());
}

TEST(BenchTest, FailsOnFilesThatCannotBeRead) {
    const WorkFolder folder;
    folder.write("no.ifc", "no STEP file");
    for (const std::string arguments : {" missing.ifc", " no.ifc", " --only open no.ifc"}) {
        const Outcome outcome = folder.run(kBench + arguments);
        EXPECT_EQ(outcome.exitCode, 1) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_NE(outcome.err, "") << arguments;
    }
}

} // namespace
