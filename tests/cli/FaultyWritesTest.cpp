#include "FaultyCalls.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <tuple>

namespace fs = std::filesystem;
using testing::Combine;
using testing::TestWithParam;
using testing::ValuesIn;

namespace {

std::set<std::string> namesIn(const fs::path& folder) {
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

/// A folder with a model and a target with older content, and what becomes of the target when a call goes wrong.
class Faults {
public:
    explicit Faults(const std::string& target) : m_target(m_folder.path("out") / target) {
        m_folder.write("points.ifc", manyPoints());
        fs::create_directory(m_folder.path("out"));
        restore();
        EXPECT_EQ(m_folder.run(command()).exitCode, 0);
        m_new = contentOf(m_target);
        EXPECT_NE(m_new, m_old);
        restore();
    }

    Outcome run(const std::string& environment) const {
        fs::remove(m_folder.path("fired"));
        return m_folder.run("export KP_FAULT_FIRED=" + quoted(m_folder.path("fired")) +
                            " LD_PRELOAD=" + faultLibrary() + " " + environment + "\n" + command());
    }
    /// Whether the last run came as far as the call that was to go wrong.
    bool fired() const { return fs::exists(m_folder.path("fired")); }
    void restore() const {
        m_folder.write("out/" + m_target.filename().string(), m_old);
        fs::permissions(m_target, kPermissions);
    }
    void expectOld() const { expect(m_old, "the older content"); }
    void expectNew() const { expect(m_new, "the new content"); }
    void expectOldOrNew() const {
        const std::string now = contentOf(m_target);
        EXPECT_TRUE(now == m_old || now == m_new) << now.size() << " bytes that are neither the old nor the new";
    }
    void expectNothingBeside() const {
        EXPECT_EQ(namesIn(m_target.parent_path()), std::set<std::string>{m_target.filename().string()});
    }

private:
    std::string command() const {
        return (m_target.extension() == ".html" ? "kpifc report" : "kpifc convert") + std::string(" points.ifc -o ") +
               quoted(m_target);
    }

    static constexpr fs::perms kPermissions = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;

    void expect(const std::string& content, const char* what) const {
        EXPECT_TRUE(contentOf(m_target) == content) << "is not " << what;
        EXPECT_EQ(fs::status(m_target).permissions(), kPermissions);
    }

    WorkFolder m_folder;
    fs::path m_target;
    std::string m_old = "what was there before\n";
    std::string m_new;
};

constexpr int kMostCalls = 200;
const char* const kTargets[] = {"house.ifc", "house.ifc.gz", "house.ifczip", "page.html"};

struct Fault {
    const char* name;
    const char* call;
    int number;
    bool isFatal; ///< for at least one of the calls; otherwise for none
};

const Fault kFaults[] = {
    {"OpenDenied", "open", EACCES, true},      {"DiskFull", "write", ENOSPC, true},
    {"WriteError", "write", EIO, true},        {"SyncError", "fsync", EIO, true},
    {"CloseError", "close", EIO, true},        {"QuotaAtClose", "close", EDQUOT, true},
    {"RenameDenied", "rename", EACCES, true},  {"PermissionsDenied", "fchmod", EPERM, true},
    {"OpenInterrupted", "open", EINTR, false}, {"WriteInterrupted", "write", EINTR, false},
    {"WriteShort", "write", 0, false},         {"SyncInterrupted", "fsync", EINTR, false},
    {"SyncUnknown", "fsync", EINVAL, false},   {"CloseInterrupted", "close", EINTR, false},
};

std::string nameOf(const std::string& target) {
    return target.ends_with(".gz")    ? "Gzip"
           : target.ends_with("zip")  ? "Zip"
           : target.ends_with("html") ? "Page"
                                      : "Plain";
}

class FaultyWriteTest : public TestWithParam<std::tuple<Fault, const char*>> {};

/// Either the new file is complete, or the run fails with a message and leaves everything as it was.
TEST_P(FaultyWriteTest, LeavesTheOldOrTheNew) {
    if (!canIntercept()) {
        GTEST_SKIP() << "calls cannot be intercepted here";
    }
    const auto& [fault, target] = GetParam();
    const Faults faults(target);
    int failures = 0;
    int at = 1;
    for (; at <= kMostCalls; ++at) {
        SCOPED_TRACE(std::string(fault.call) + " number " + std::to_string(at));
        const Outcome outcome =
            faults.run("KP_FAULT_CALL=" + std::string(fault.call) + " KP_FAULT_AT=" + std::to_string(at) +
                       " KP_FAULT_ERRNO=" + std::to_string(fault.number));
        faults.expectNothingBeside();
        if (outcome.exitCode == 0) {
            faults.expectNew();
            faults.restore();
        } else {
            ++failures;
            EXPECT_TRUE(faults.fired());
            EXPECT_EQ(outcome.exitCode, 2);
            const bool isNamed = outcome.err.find(std::string(target) + ": ") != std::string::npos ||
                                 outcome.err.find("points.ifc: ") != std::string::npos; // what is read
            EXPECT_TRUE(isNamed) << outcome.err;
            EXPECT_NE(outcome.err.find(std::strerror(fault.number)), std::string::npos) << outcome.err;
            faults.expectOld();
        }
        if (!faults.fired()) {
            EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
            break;
        }
    }
    EXPECT_LE(at, kMostCalls) << "never succeeds";
    EXPECT_GT(at, 1) << "the call is never made";
    EXPECT_EQ(failures > 0, fault.isFatal) << failures << " runs failed";
}

INSTANTIATE_TEST_SUITE_P(Calls, FaultyWriteTest, Combine(ValuesIn(kFaults), ValuesIn(kTargets)), [](const auto& test) {
    return std::get<0>(test.param).name + nameOf(std::get<1>(test.param));
});

class KilledWriteTest : public TestWithParam<const char*> {};

/// What killed runs leave beside the target is in nobody's way.
TEST_P(KilledWriteTest, LeavesTheOldOrTheNew) {
    if (!canIntercept()) {
        GTEST_SKIP() << "calls cannot be intercepted here";
    }
    const Faults faults(GetParam());
    int at = 1;
    for (; at <= kMostCalls; ++at) {
        SCOPED_TRACE("call number " + std::to_string(at));
        const Outcome outcome = faults.run("KP_FAULT_KILL=1 KP_FAULT_CALL=any KP_FAULT_AT=" + std::to_string(at));
        if (!faults.fired()) {
            EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
            faults.expectNew();
            break;
        }
        EXPECT_EQ(outcome.exitCode, 128 + 9);
        faults.expectOldOrNew();
        faults.restore();
    }
    EXPECT_LE(at, kMostCalls) << "never succeeds";
    EXPECT_GT(at, 8) << "calls were missed";
}

INSTANTIATE_TEST_SUITE_P(Calls, KilledWriteTest, ValuesIn(kTargets),
                         [](const auto& test) { return nameOf(test.param); });

} // namespace
