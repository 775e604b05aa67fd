#include "Runner.h"
#include "SampleFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

const fs::path kShared = KP_SHARED_DIR;

/// The checkers read files and schema facts on their own, in Python, and know nothing of this code.
class SamplesTest : public testing::TestWithParam<fs::path> {
protected:
    void SetUp() override {
        if (GetParam().empty()) {
            GTEST_SKIP() << "no sample files in " << kShared / "samples";
        }
        if (!fs::exists(kShared / "check")) {
            GTEST_SKIP() << "no checkers in " << kShared / "check";
        }
        if (m_folder.run("python3 --version").exitCode != 0) {
            GTEST_SKIP() << "no python3";
        }
    }

    void expectNoDifferences(const std::string& checker, const std::string& arguments) const {
        const Outcome checked = m_folder.run("python3 -B " + quoted(kShared / "check" / checker) + ' ' + arguments);
        EXPECT_EQ(checked.exitCode, 0) << checked.out << checked.err;
        EXPECT_NE(checked.out.find(" 0 differences"), std::string::npos) << checked.out;
    }

    const WorkFolder m_folder;
    const std::string m_facts = quoted(kShared / "schema" / "ifc2x3.schema");
};

TEST_P(SamplesTest, AreWrittenBackWithoutLoss) {
    const UnpackedFile sample(GetParam());
    const std::string file = quoted(sample.path());
    const Outcome converted = m_folder.run("kpifc convert " + file + " -o new.ifc");
    ASSERT_LE(converted.exitCode, 1) << converted.err;
    expectNoDifferences("roundtrip.py", file + " new.ifc " + m_facts);
}

TEST_P(SamplesTest, AreDumpedAsTheFileSays) {
    const UnpackedFile sample(GetParam());
    const std::string file = quoted(sample.path());
    const Outcome dumped = m_folder.run("kpifc dump " + file + " >dump.jsonl");
    ASSERT_LE(dumped.exitCode, 1) << dumped.err;
    expectNoDifferences("check_dump.py", file + ' ' + m_facts + " dump.jsonl");
}

/// One case a file; an empty path, which is skipped, where there are none.
std::vector<fs::path> samples() {
    std::vector<fs::path> paths = findSamples(kShared / "samples");
    if (paths.empty()) {
        paths.emplace_back();
    }
    return paths;
}

std::string nameOf(const testing::TestParamInfo<fs::path>& info) {
    std::string name = info.param.empty() ? "absent" : info.param.filename().string();
    for (char& c : name) {
        const bool fits = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        c = fits ? c : '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Files, SamplesTest, testing::ValuesIn(samples()), nameOf);

} // namespace
