#include "Archives.h"
#include "SkippedTime.h"
#include "StepFiles.h"

#include <KpIfcCore/KpIfcCheck.h>

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <thread>

#include <sys/stat.h>

namespace fs = std::filesystem;
using namespace KP_SDAI;
using testing::TestWithParam;
using testing::ValuesIn;

namespace {

/// A file that goes through all stages, of several blocks.
const std::string& content() {
    static const std::string text = [] {
        std::string records = "#1=IFCPOLYLINE((#2,#3));\n";
        for (int i = 2; i <= 40'000; ++i) records += "#" + std::to_string(i) + "=IFCCARTESIANPOINT((0.,1.));\n";
        return stepFile(records + "#50000=IFCPERSONANDORGANIZATION(#50001,#50002,$);\n"
                                  "#50001=IFCPERSON('a',$,$,$,$,$,$,$);\n#50002=IFCNOSUCHTHING(1);\n");
    }();
    return text;
}

/// Calls of a progress function, one of which may stop the work.
struct Calls {
    enum class End { cancel, exception };
    int stopAt = -1;
    End end = End::cancel;
    std::vector<KpIfcProgress> all = {};

    KpIfcProgressFunction function(bool isSlow = false) {
        return [this, isSlow](const KpIfcProgress& progress) {
            // Who takes his time is told of every block.
            if (isSlow && progress.isInBytes) skipTime(std::chrono::milliseconds(21));
            all.push_back(progress);
            if (static_cast<int>(all.size()) - 1 != stopAt) return true;
            if (end == End::exception) throw std::runtime_error("enough");
            return false;
        };
    }
    std::vector<KpIfcStage> stages() const {
        std::vector<KpIfcStage> found;
        for (const KpIfcProgress& each : all)
            if (found.empty() || found.back() != each.stage) found.push_back(each.stage);
        return found;
    }
    /// Every stage begins at its beginning and goes forwards.
    void expectAscending() const {
        for (std::size_t i = 0; i < all.size(); ++i) {
            const bool isFirst = i == 0 || all[i - 1].stage != all[i].stage;
            EXPECT_GE(all[i].done, isFirst ? 0 : all[i - 1].done);
            EXPECT_TRUE(!isFirst || all[i].done == 0);
            EXPECT_TRUE(all[i].total == 0 || all[i].done <= all[i].total);
        }
    }
};

struct Container {
    const char* name;
    const char* ending;
    std::string (*make)(const std::string&);
};

const Container kContainers[] = {
    {"Plain", ".ifc", [](const std::string& text) { return text; }},
    {"Gzip", ".ifc.gz", [](const std::string& text) { return gzipped(text); }},
    {"Zip", ".ifczip", [](const std::string& text) { return zipped({{.name = "a.ifc", .content = text}}); }},
};

/// A file to read in a folder whose names can be listed.
class ProgressTest : public TestWithParam<Container> {
protected:
    ProgressTest() : m_folder(temporaryPath("progress")), m_path(m_folder / (std::string("a") + GetParam().ending)) {
        fs::create_directory(m_folder);
        std::ofstream(m_path, std::ios::binary) << GetParam().make(content());
    }
    ~ProgressTest() override { fs::remove_all(m_folder); }

    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const fs::directory_entry& entry : fs::directory_iterator(m_folder))
            found.insert(entry.path().filename().string());
        return found;
    }

    fs::path m_folder;
    fs::path m_path;
};

using Stages = std::vector<KpIfcStage>;

TEST_P(ProgressTest, TellsEveryStageOfOpening) {
    Calls calls;
    KpIfcFile file;
    file.progress(calls.function(true));
    ASSERT_EQ(file.open(m_path.string()), KP::eOk) << file.error();
    EXPECT_EQ(calls.stages(),
              (Stages{KpIfcStage::reading, KpIfcStage::linking, KpIfcStage::inverses, KpIfcStage::locating}));
    calls.expectAscending();
    std::uint64_t read = 0;
    std::size_t times = 0;
    for (const KpIfcProgress& each : calls.all) {
        if (each.stage != KpIfcStage::reading) continue;
        read = each.done;
        ++times;
        EXPECT_TRUE(each.isInBytes);
    }
    EXPECT_EQ(read, calls.all[0].total);
    EXPECT_GE(times, content().size() / (256 * 1024));
    const bool isExact = GetParam().name != std::string("Zip");
    EXPECT_EQ(read == fs::file_size(m_path), isExact);
}

TEST_P(ProgressTest, StoppedOpeningLeavesNothingOpen) {
    KpIfcFile file;
    for (int at = 0;; ++at) {
        Calls calls{.stopAt = at};
        file.progress(calls.function());
        const KP::ErrorStatus status = file.open(m_path.string());
        if (static_cast<int>(calls.all.size()) <= at) {
            EXPECT_EQ(status, KP::eOk) << file.error();
            EXPECT_GE(at, 4);
            break;
        }
        EXPECT_EQ(status, KP::eCancelled);
        EXPECT_EQ(file.error(), m_path.string() + ": cancelled");
        EXPECT_EQ(file.model(), nullptr);

        Calls throwing{.stopAt = std::min(at, 3), .end = Calls::End::exception};
        file.progress(throwing.function());
        EXPECT_THROW(file.open(m_path.string()), std::runtime_error);
        EXPECT_EQ(file.model(), nullptr);
    }
}

TEST_P(ProgressTest, StoppedSavingLeavesTheTarget) {
    KpIfcFile file;
    ASSERT_EQ(file.open(m_path.string()), KP::eOk) << file.error();
    const std::string expected[] = {rewritten(file), saved(file)};
    const std::set<std::string> before = names();
    const std::string old = contentOf(m_path);
    for (const bool normalise : {true, false}) {
        for (int at = 0;; ++at) {
            Calls calls{.stopAt = at};
            file.progress(calls.function());
            const KP::ErrorStatus status = file.save(m_path.string(), {.normalise = normalise});
            EXPECT_EQ(names(), before);
            if (static_cast<int>(calls.all.size()) <= at) {
                EXPECT_EQ(status, KP::eOk) << file.error();
                EXPECT_EQ(calls.stages(), (Stages{KpIfcStage::writing, KpIfcStage::flushing}));
                EXPECT_EQ(calls.all.back().done, 1u);
                calls.expectAscending();
                break;
            }
            EXPECT_EQ(status, KP::eCancelled);
            EXPECT_EQ(file.error(), m_path.string() + ": cancelled");
            EXPECT_EQ(contentOf(m_path), old);

            Calls throwing{.stopAt = std::min(at, 2), .end = Calls::End::exception};
            file.progress(throwing.function());
            EXPECT_THROW(file.save(m_path.string(), {.normalise = normalise}), std::runtime_error);
            EXPECT_EQ(names(), before);
            EXPECT_EQ(contentOf(m_path), old);
        }
        file.progress({});
        KpIfcFile again;
        ASSERT_EQ(again.open(m_path.string()), KP::eOk) << again.error();
        EXPECT_EQ(rewritten(again), expected[normalise ? 1 : 0]);
        std::ofstream(m_path, std::ios::binary) << old;
        ASSERT_EQ(file.open(m_path.string()), KP::eOk) << file.error();
    }
}

INSTANTIATE_TEST_SUITE_P(Files, ProgressTest, ValuesIn(kContainers), [](const auto& test) { return test.param.name; });

TEST(MemoryProgressTest, StoppedSavingGivesNothing) {
    KpIfcFile file = opened(content());
    Calls calls{.stopAt = 0};
    file.progress(calls.function());
    std::string out = "older";
    EXPECT_EQ(file.saveToMemory(out), KP::eCancelled);
    EXPECT_EQ(out, "");
    EXPECT_EQ(rewritten(file), content());
}

TEST(CheckProgressTest, TellsAndStops) {
    KpIfcFile file = opened(content());
    Calls calls;
    KpIfcReport report;
    EXPECT_EQ(checkFile(file, report, calls.function()), KP::eOk);
    EXPECT_EQ(calls.stages(), (Stages{KpIfcStage::checking}));
    EXPECT_EQ(calls.all[0].total, file.model()->count());
    EXPECT_EQ(findings(report), findings(checkFile(file)));
    Calls stopped{.stopAt = 0};
    EXPECT_EQ(checkModel(*file.model(), report, stopped.function()), KP::eCancelled);
}

TEST(PipeProgressTest, HasNoTotal) {
    const fs::path path = temporaryPath("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(path, std::ios::binary) << content(); });
    Calls calls;
    KpIfcFile file;
    file.progress(calls.function(true));
    EXPECT_EQ(file.open(path.string()), KP::eOk) << file.error();
    writer.join();
    fs::remove(path);
    calls.expectAscending();
    EXPECT_EQ(calls.all[0].total, 0u);
    std::uint64_t read = 0;
    for (const KpIfcProgress& each : calls.all)
        if (each.stage == KpIfcStage::reading) read = each.done;
    EXPECT_EQ(read, content().size());
}

} // namespace
