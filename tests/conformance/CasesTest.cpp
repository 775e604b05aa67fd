#include "Expectation.h"
#include "StepFiles.h"

#include <KpIfcCore/KpIfcSettings.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <map>

namespace fs = std::filesystem;
using namespace KP_SDAI;

namespace {

const fs::path kCases = KP_SOURCE_DIR "/tests/conformance/cases";

/// Every NAME.ifc below the folder of cases, with what reading it gives in NAME.expect and what writing it gives in
/// NAME.out.ifc; without that, it is written as it is.
std::vector<fs::path> cases() {
    std::vector<fs::path> found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(kCases)) {
        const std::string name = entry.path().filename().string();
        if (entry.path().extension() == ".ifc" && name.find(".out.ifc") == std::string::npos) {
            found.push_back(entry.path());
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

/// Cases whose expectations say what should be, but is not yet, with the reasons: lines "GROUP/NAME REASON".
std::map<std::string, std::string> knownFailures() {
    std::map<std::string, std::string> found;
    std::ifstream file(kCases.parent_path() / "known_failures.txt");
    EXPECT_TRUE(file.is_open());
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line[0] != '#') {
            const std::size_t space = line.find(' ');
            EXPECT_NE(space, std::string::npos) << line << ": has no reason";
            EXPECT_TRUE(found.emplace(line.substr(0, space), line.substr(space)).second) << line << ": stands twice";
        }
    }
    return found;
}

std::string relativeName(const fs::path& path) {
    return fs::relative(path, kCases).replace_extension().generic_string();
}

std::string caseName(const testing::TestParamInfo<fs::path>& info) {
    std::string name = relativeName(info.param);
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
}

/// Opens with a form of texts that only this file has: a model remembers its own.
bool open(KpIfcFile& file, const std::string& content, bool textsEncoded) {
    settings().set_useUTF8(!textsEncoded);
    const bool isOpen = file.openMemory(content.data(), content.size()) == KP::eOk;
    settings().set_useUTF8(true);
    return isOpen;
}

class CasesTest : public testing::TestWithParam<fs::path> {
protected:
    fs::path beside(const char* extension) const { return fs::path(GetParam()).replace_extension(extension); }
    std::string expectedOutput() const {
        const fs::path path = beside(".out.ifc");
        return contentOf(fs::exists(path) ? path : GetParam());
    }
    /// Writes down what is, to be reviewed: for new cases and deliberate changes.
    void record(const Expectation& expected, const std::vector<std::string>& lines, const std::string& error,
                const std::string& output) const {
        std::ofstream expect(beside(".expect"));
        expect << expected.comments << (expected.textsEncoded ? "texts encoded\n" : "");
        for (const std::string& line : lines) {
            expect << line << '\n';
        }
        if (!error.empty()) {
            expect << "refused " << error.substr(error.find(": ") + 2) << '\n';
        }
        fs::remove(beside(".out.ifc"));
        if (error.empty() && output != contentOf(GetParam())) {
            std::ofstream(beside(".out.ifc"), std::ios::binary) << output;
        }
    }
};

TEST_P(CasesTest, ReadsAndWrites) {
    const Expectation expected = Expectation::read(beside(".expect"));
    const std::string content = contentOf(GetParam());
    KpIfcFile file;
    const bool isOpen = open(file, content, expected.textsEncoded);
    const std::vector<std::string> lines = Expectation::linesOf(file, isOpen);
    const std::string output = isOpen ? saved(file) : std::string();
    static const std::map<std::string, std::string> failures = knownFailures();
    if (failures.count(relativeName(GetParam()))) {
        const bool refusedAlike =
            file.error().empty() == expected.error.empty() && file.error().find(expected.error) != std::string::npos;
        EXPECT_FALSE(refusedAlike && lines == expected.lines && (!isOpen || output == expectedOutput()))
            << "is as it should be: take it off known_failures.txt";
        return;
    }
    if (std::getenv("KP_RECORD_CASES")) {
        record(expected, lines, file.error(), output);
        return;
    }
    EXPECT_THAT(lines, testing::ElementsAreArray(expected.lines)) << file.error() << findings(file.report());
    EXPECT_THAT(file.error(), testing::HasSubstr(expected.error));
    EXPECT_EQ(file.error().empty(), expected.error.empty()) << file.error();
    if (!isOpen) {
        EXPECT_EQ(file.model(), nullptr);
        return;
    }
    EXPECT_EQ(output, expectedOutput());

    // What was written reads as the same model, and once more gives the same bytes.
    KpIfcFile again;
    ASSERT_TRUE(open(again, output, expected.textsEncoded)) << again.error();
    EXPECT_EQ(again.model()->count(), file.model()->count()) << findings(again.report());
    EXPECT_EQ(again.model()->keptRecordCount(), file.model()->keptRecordCount()) << findings(again.report());
    const bool cutOff = output.find("/* cut off: ") != std::string::npos; // comments are not part of the data
    if (!cutOff) {
        EXPECT_EQ(saved(again), output);
    }
}

/// Whatever a file has, saving keeps it while nothing changes, whether or not something could have changed.
TEST_P(CasesTest, StaysAsItIs) {
    const std::string content = contentOf(GetParam());
    KpIfcFile file;
    if (!open(file, content, Expectation::read(beside(".expect")).textsEncoded)) {
        return; // refused, which the other test asserts
    }
    EXPECT_EQ(rewritten(file), content);
    touchAll(file);
    EXPECT_EQ(rewritten(file), content);
}

INSTANTIATE_TEST_SUITE_P(Files, CasesTest, testing::ValuesIn(cases()), caseName);

TEST(Cases, KnownFailuresAreCases) {
    for (const auto& [name, reason] : knownFailures()) {
        EXPECT_TRUE(fs::exists(kCases / (name + ".ifc"))) << name << " is no case";
    }
}

TEST(Cases, HaveNoLeftovers) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(kCases)) {
        std::string path = entry.path().string();
        for (const char* suffix : {".out.ifc", ".expect"}) {
            if (path.size() > std::string(suffix).size() &&
                path.compare(path.size() - std::string(suffix).size(), std::string::npos, suffix) == 0) {
                path.resize(path.size() - std::string(suffix).size());
                EXPECT_TRUE(fs::exists(path + ".ifc")) << entry.path() << " belongs to no case";
                break;
            }
        }
    }
}

} // namespace
