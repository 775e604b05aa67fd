#include "FaultyCalls.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <tuple>

namespace fs = std::filesystem;
using testing::Combine;
using testing::TestWithParam;
using testing::ValuesIn;

namespace {

struct Way {
    const char* name;
    const char* file;
    const char* command; ///< leaves what was made in "out", if anything
};

constexpr const char* kSet = " '#29999.Coordinates=(1.,2.)' -o out/new.ifc";
const std::string kPipe = "env -u LD_PRELOAD cat ";

const Way kWays[] = {
    {"OpenPlain", "points.ifc", "info"}, {"OpenGzip", "points.ifc.gz", "info"}, {"OpenZip", "points.ifczip", "info"},
    {"PipePlain", "points.ifc", "pipe"}, {"PipeGzip", "points.ifc.gz", "pipe"}, {"PipeZip", "points.ifczip", "pipe"},
    {"SavePlain", "points.ifc", "set"},  {"SaveGzip", "points.ifc.gz", "set"},  {"SaveZip", "points.ifczip", "set"},
};

std::string commandOf(const Way& way) {
    const std::string file = way.file;
    if (std::strcmp(way.command, "pipe") == 0) return kPipe + file + " | kpifc info /dev/stdin";
    return "kpifc " + std::string(way.command) + ' ' + file + (std::strcmp(way.command, "set") == 0 ? kSet : "");
}

struct Fault {
    const char* name;
    const char* call;
    int number;
};

const Fault kFaults[] = {
    {"OpenDenied", "open", EACCES}, {"TooManyFiles", "open", EMFILE},   {"OpenInterrupted", "open", EINTR},
    {"ReadError", "read", EIO},     {"ReadInterrupted", "read", EINTR}, {"ReadShort", "read", 0},
    {"SeekError", "lseek", EIO},    {"StatusDenied", "stat", EACCES},   {"StatusOfOpenFile", "fstat", EIO},
    {"StreamError", "fread", EIO},  {"StreamSeekError", "fseeko", EIO},
};

class FaultyReadTest : public TestWithParam<std::tuple<Way, Fault>> {};

/// Either all is as without the fault, or the run fails with a message and leaves the target as it was.
TEST_P(FaultyReadTest, IsToldOrWithoutEffect) {
    if (!canIntercept()) {
        GTEST_SKIP() << "calls cannot be intercepted here";
    }
    const auto& [way, fault] = GetParam();
    const WorkFolder folder;
    folder.write("points.ifc", manyPoints());
    fs::create_directory(folder.path("out"));
    const std::string convert = "kpifc convert points.ifc -o ";
    ASSERT_EQ(folder.run(convert + "points.ifc.gz && " + convert + "points.ifczip").exitCode, 0);
    const std::string command = commandOf(way);
    const fs::path target = folder.path("out/new.ifc");
    const Outcome undisturbed = folder.run(command);
    ASSERT_EQ(undisturbed.exitCode, 0) << undisturbed.err;
    const bool isSaving = fs::exists(target);
    const std::string written = isSaving ? contentOf(target) : "";

    // Archives on disk are read by a library that neither tries again nor always tells the system's reason.
    const bool isZip = std::string(way.file).ends_with("zip") && std::strcmp(way.command, "pipe") != 0;
    const bool isHarmless = !isZip && (fault.number == EINTR || fault.number == 0);
    const std::string environment = "export KP_FAULT_FIRED=" + quoted(folder.path("fired")) +
                                    " KP_FAULT_CALL=" + fault.call + " KP_FAULT_ERRNO=" + std::to_string(fault.number) +
                                    " LD_PRELOAD=" + faultLibrary() + " KP_FAULT_AT=";
    constexpr int kMostCalls = 1000; // of archives headers are read byte by byte
    int failures = 0;
    int at = 1;
    for (; at <= kMostCalls; ++at) {
        SCOPED_TRACE(std::string(fault.call) + " number " + std::to_string(at));
        fs::remove(folder.path("fired"));
        if (isSaving) folder.write("out/new.ifc", "older content");
        const Outcome outcome = folder.run(environment + std::to_string(at) + '\n' + command);
        const bool isFired = fs::exists(folder.path("fired"));
        if (outcome.exitCode == 0) {
            EXPECT_EQ(outcome.out, undisturbed.out);
            if (isSaving) {
                EXPECT_TRUE(contentOf(target) == written);
            }
        } else {
            ++failures;
            EXPECT_TRUE(isFired);
            EXPECT_EQ(outcome.exitCode, 2);
            EXPECT_EQ(outcome.out, "");
            const bool isNamed = outcome.err.find(std::strcmp(way.command, "pipe") == 0 ? "/dev/stdin" : way.file) !=
                                     std::string::npos ||
                                 outcome.err.find("out/new.ifc") != std::string::npos;
            EXPECT_TRUE(isNamed) << outcome.err;
            const bool isReasonTold = outcome.err.find(std::strerror(fault.number)) != std::string::npos ||
                                      (isZip && outcome.err.find("zip archive cannot be read") != std::string::npos);
            EXPECT_TRUE(isReasonTold) << outcome.err;
            if (isSaving) {
                EXPECT_EQ(contentOf(target), "older content");
            }
        }
        if (!isFired) break;
    }
    EXPECT_LE(at, kMostCalls) << "never succeeds";
    EXPECT_TRUE(failures == 0 || !isHarmless);
    const std::string call = fault.call;
    if (call == "read" || call == "open" || (call == "fread" && isZip)) {
        EXPECT_GT(at, 1) << "the call is never made";
        EXPECT_TRUE(failures > 0 || fault.number == EINTR || fault.number == 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Calls, FaultyReadTest, Combine(ValuesIn(kWays), ValuesIn(kFaults)), [](const auto& test) {
    return std::string(std::get<0>(test.param).name) + std::get<1>(test.param).name;
});

} // namespace
