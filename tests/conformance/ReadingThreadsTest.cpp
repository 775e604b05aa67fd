#include "Outcome.h"
#include "SkippedTime.h"
#include "StepFiles.h"

#include <gtest/gtest.h>
#include <part21/SmallParts.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <iterator>
#include <new>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace fs = std::filesystem;
using namespace KP_SDAI;

namespace {

/// A file is read alike with any number of threads, wherever it is cut between them.
void expectAlike(const std::string& content, const std::vector<std::size_t>& partSizes) {
    constexpr unsigned kThreads[] = {2, 3, 8};
    const std::string expected = outcomeOf(content, {.threads = 1});
    for (std::size_t i = 0; i < partSizes.size(); ++i) {
        const unsigned threads = kThreads[i % std::size(kThreads)];
        ASSERT_EQ(outcomeOf(content, {.threads = threads}, partSizes[i]), expected)
            << threads << " threads, parts of " << partSizes[i];
    }
}

/// So many that cuts fall before many records of a small file.
std::vector<std::size_t> sizesFor(const std::string& content) {
    std::vector<std::size_t> sizes;
    for (std::size_t size = 16; size < content.size() && size < 2000; size += 1 + size) sizes.push_back(size);
    return sizes;
}

TEST(ReadingThreads, CasesAreReadAlike) {
    for (const fs::directory_entry& entry :
         fs::recursive_directory_iterator(KP_SOURCE_DIR "/tests/conformance/cases")) {
        if (entry.path().extension() != ".ifc") continue;
        SCOPED_TRACE(entry.path());
        const std::string content = contentOf(entry.path());
        expectAlike(content, sizesFor(content));
        if (testing::Test::HasFatalFailure()) return;
    }
}

std::string many(std::size_t count, const std::function<std::string(std::size_t)>& record) {
    std::string records;
    for (std::size_t i = 1; i <= count; ++i) records += record(i);
    return records;
}
std::string nameOf(std::size_t name) {
    return '#' + std::to_string(name);
}
std::string point(std::size_t name) {
    return nameOf(name) + "=IFCCARTESIANPOINT((" + std::to_string(name) + ".,0.));\n";
}
/// A wall that is placed relative to others, in a relation: references both ways, inverse attributes.
std::string related(std::size_t i) {
    const std::string wall = nameOf(3 * i);
    const std::string next = nameOf(3 * i + 3);
    return wall + "=IFCWALL('" + std::to_string(1000000000 + i % 50) + "',$,'wall',$,$," + nameOf(3 * i + 1) +
           ",$,$);\n" + nameOf(3 * i + 1) + "=IFCLOCALPLACEMENT(" + (i % 4 ? nameOf(3 * i - 2) : "$") + ',' + next +
           ");\n" + nameOf(3 * i + 2) + "=IFCRELAGGREGATES('" + std::to_string(i) + "',$,$,$," + wall + ",(" + next +
           ',' + wall + ',' + nameOf(i) + "));\n";
}

struct Made {
    const char* name;
    std::string records;
};
void PrintTo(const Made& made, std::ostream* out) {
    *out << made.name;
}
class MadeFiles : public testing::TestWithParam<Made> {};

TEST_P(MadeFiles, AreReadAlike) {
    expectAlike(stepFile(GetParam().records), {40, 1000, 1024 * 16, 1024 * 256});
}

const std::string kLong(300'000, 'x');

INSTANTIATE_TEST_SUITE_P(
    , MadeFiles,
    testing::Values(
        Made{"InOrder", many(3000, point)},
        Made{"Backwards", many(3000, [](std::size_t i) { return point(9000 - i); })},
        Made{"References", many(1500, related)},
        Made{"OutOfOrderOnce", many(2000, [](std::size_t i) { return point(i == 1500 ? 9999 : i); })},
        Made{"Interleaved", many(3000, [](std::size_t i) { return point(i % 2 ? i : 9000 - i); })},
        Made{"Scattered", many(3000, [](std::size_t i) { return point(i * 2'654'435'761 % 4'000'000'007); })},
        Made{"KeptRecords",
             many(2000, [](std::size_t i) { return i % 3 ? point(i) : nameOf(i) + "=IFCNOTHING('a;b');\n"; })},
        Made{"KeptFields",
             many(2000, [](std::size_t i) { return nameOf(i) + "=IFCPOLYLINE((" + nameOf(i + 5) + ",7));\n"; })},
        Made{"Damaged", many(1500, [](std::size_t i) { return i % 7 ? point(i) : nameOf(i) + "=IFCWALL('\n"; })},
        Made{"NoSemicolons", many(1500, [](std::size_t i) { return nameOf(i) + "=IFCCARTESIANPOINT((0.))\n"; })},
        Made{"OneLine", many(3000, [](std::size_t i) { return nameOf(i) + "=IFCCARTESIANPOINT((0.));"; })},
        Made{"OneName", many(2000, [](std::size_t) { return point(7); })},
        Made{"OneNameFarApart", point(1) + many(2000, [](std::size_t i) { return point(i + 9); }) + point(1)},
        Made{"RecordsInTexts",
             many(800, [](std::size_t i) { return nameOf(i) + "=IFCPERSON('a;\n#7=IFCWALL();\n',$,$,$,$,$,$,$);\n"; })},
        Made{"RecordsInComments", many(800, [](std::size_t i) { return "/*;\n" + point(i) + "*/" + point(2000 + i); })},
        Made{"ReferencesToCommentedRecords",
             "#1=IFCPOLYLINE((#5,#900));\n" +
                 many(800, [](std::size_t i) { return "/*;\n" + point(i) + "*/" + point(2000 + i); })},
        Made{"OpenComment",
             many(500, point) + "#900=IFCWALL(/*\n" + many(500, [](std::size_t i) { return point(i + 1000); })},
        Made{"OpenText",
             many(500, point) + "#900=IFCWALL('\n" + many(500, [](std::size_t i) { return point(i + 1000); })},
        Made{"FarEnds", many(3000, point) + "#9001=IFCPERSON('" + kLong + "\n#9002=IFCWALL();\n" + kLong +
                            "',$,$,$,$,$,$,$);\n/*" + kLong + kLong + "*/" +
                            many(3000, [](std::size_t i) { return point(i + 10'000); }) + "#9003=IFCNOTHING('" + kLong +
                            "');\n"},
        Made{"Sections", many(1000, point) + "ENDSEC;\nDATA;\n" +
                             many(1000, [](std::size_t i) { return point(i + 2000); }) + "ENDSEC;\n" +
                             many(1000, [](std::size_t i) { return point(i + 4000); })},
        Made{"BehindTheEnd", many(1000, point) + "ENDSEC;\nEND-ISO-10303-21;\n" +
                                 many(1000, [](std::size_t i) { return point(i + 2000); })}),
    [](const testing::TestParamInfo<Made>& made) { return std::string(made.param.name); });

/// The caller's thread alone hears of progress; what its function throws comes to it; no thread is left to read on.
TEST(ReadingThreads, ProgressIsToldToTheCaller) {
    const std::string content = stepFile(many(20'000, point));
    const std::thread::id caller = std::this_thread::get_id();
    for (const std::uint64_t stopAt : {std::uint64_t{0}, std::uint64_t{300'000}, content.size() * 2}) {
        KpIfcFile file;
        bool isCaller = true;
        std::uint64_t last = 0;
        file.progress([&](const KpIfcProgress& progress) {
            isCaller = isCaller && std::this_thread::get_id() == caller;
            if (progress.stage == KpIfcStage::reading) last = progress.done;
            if (last >= stopAt) throw std::length_error("stop");
            skipTime(std::chrono::milliseconds(21)); // so that the next step is told, however fast this machine is
            return true;
        });
        const SmallParts parts(1000);
        const auto open = [&] { return file.openMemory(content.data(), content.size(), "x", {.threads = 3}); };
        if (stopAt > content.size())
            EXPECT_EQ(open(), KP::eOk);
        else
            EXPECT_THROW(open(), std::length_error);
        EXPECT_TRUE(isCaller);
        EXPECT_EQ(file.model() != nullptr, stopAt > content.size());
    }
}

} // namespace
