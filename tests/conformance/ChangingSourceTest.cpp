#include "Archives.h"
#include "SkippedTime.h"
#include "StepFiles.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <tuple>

namespace fs = std::filesystem;
using namespace KP_SDAI;
using testing::Combine;
using testing::HasSubstr;
using testing::TestWithParam;
using testing::ValuesIn;

namespace {

/// Files of several blocks that differ in every record and not in length.
std::string points(const char* coordinate) {
    std::string records;
    for (int i = 1; i <= 20'000; ++i)
        records += "#" + std::to_string(i) + "=IFCCARTESIANPOINT((" + coordinate + ",1.));\n";
    return stepFile(records);
}

using Pack = std::string (*)(const std::string&);

struct Container {
    const char* name;
    Pack pack;
};

const Container kContainers[] = {
    {"Plain", [](const std::string& text) { return text; }},
    {"Gzip", [](const std::string& text) { return gzipped(text); }},
    {"Zip", [](const std::string& text) { return zipped({{.name = "a.ifc", .content = text}}); }},
};

/// What another program does with the file; `other` is a whole other file.
struct Change {
    const char* name;
    void (*make)(const fs::path& path, const std::string& other);
    bool isInPlace;
};

const Change kChanges[] = {
    {"Truncated", [](const fs::path& path, const std::string&) { fs::resize_file(path, fs::file_size(path) / 2); },
     true},
    {"Emptied", [](const fs::path& path, const std::string&) { fs::resize_file(path, 0); }, true},
    {"Rewritten",
     [](const fs::path& path, const std::string& other) { std::ofstream(path, std::ios::binary) << other; }, true},
    {"RewrittenAtItsEnd",
     [](const fs::path& path, const std::string& other) {
         std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
         const auto half = static_cast<std::streamoff>(other.size() / 2);
         file.seekp(half);
         file << other.substr(static_cast<std::size_t>(half));
     },
     true},
    {"Grown",
     [](const fs::path& path, const std::string& other) {
         std::ofstream(path, std::ios::binary | std::ios::app) << other;
     },
     true},
    {"Replaced",
     [](const fs::path& path, const std::string& other) {
         std::ofstream(path.string() + "2", std::ios::binary) << other;
         fs::rename(path.string() + "2", path);
     },
     false},
    {"Deleted", [](const fs::path& path, const std::string&) { fs::remove(path); }, false},
};

class ChangingSourceTest : public TestWithParam<std::tuple<Change, Container>> {
protected:
    ChangingSourceTest() : m_folder(temporaryPath("changing")), m_path(m_folder / "a") {
        fs::create_directory(m_folder);
        restore();
    }
    ~ChangingSourceTest() override { fs::remove_all(m_folder); }

    /// Old enough for every change to have another time.
    void restore() const {
        std::ofstream(m_path, std::ios::binary) << std::get<1>(GetParam()).pack(m_content);
        fs::last_write_time(m_path, fs::file_time_type::clock::now() - std::chrono::hours(1));
    }
    void change() const { std::get<0>(GetParam()).make(m_path, std::get<1>(GetParam()).pack(m_other)); }
    bool is(const std::string& change) const { return std::get<0>(GetParam()).name == change; }
    bool isInPlace() const { return std::get<0>(GetParam()).isInPlace; }

    const std::string m_content = points("0.");
    const std::string m_other = points("2.");
    fs::path m_folder;
    fs::path m_path;
};

/// Either all of what was there is read or nothing.
TEST_P(ChangingSourceTest, IsNoMixWhileItIsRead) {
    const std::function<bool(const KpIfcProgress&)> moments[] = {
        [](const KpIfcProgress&) { return true; },
        [](const KpIfcProgress& progress) { return progress.done > progress.total / 3; },
        [](const KpIfcProgress& progress) { return progress.stage == KpIfcStage::inverses; },
    };
    for (const auto& isMoment : moments) {
        restore();
        bool isDone = false;
        KpIfcFile file;
        file.progress([&](const KpIfcProgress& progress) {
            // Who takes his time is told of every block.
            if (progress.isInBytes) skipTime(std::chrono::milliseconds(21));
            if (!isDone && isMoment(progress)) {
                change();
                isDone = true;
            }
            return true;
        });
        const KP::ErrorStatus status = file.open(m_path.string());
        EXPECT_TRUE(isDone);
        file.progress({});
        if (isInPlace()) {
            EXPECT_EQ(status, KP::eNotAvailable);
            EXPECT_EQ(file.error(), m_path.string() + ": another program has changed it while it was read");
            EXPECT_EQ(file.model(), nullptr);
        } else {
            ASSERT_EQ(status, KP::eOk) << file.error();
            EXPECT_EQ(rewritten(file), m_content);
        }
    }
}

TEST_P(ChangingSourceTest, IsNoMixWhenItIsSaved) {
    KpIfcFile file;
    ASSERT_EQ(file.open(m_path.string()), KP::eOk) << file.error();
    change();
    const fs::path target = m_folder / "b.ifc";
    std::ofstream(target) << "older";
    const KP::ErrorStatus status = file.save(target.string());
    // What is appended to an archive that is open is no part of it.
    const bool isHarmless = !isInPlace() || (is("Grown") && std::get<1>(GetParam()).name == std::string("Zip"));
    if (isHarmless) {
        EXPECT_EQ(status, KP::eOk) << file.error();
        EXPECT_EQ(contentOf(target), m_content);
    } else {
        EXPECT_EQ(status, KP::eNotAvailable);
        EXPECT_THAT(file.error(), HasSubstr("what was read "));
        EXPECT_EQ(contentOf(target), "older");
    }
    EXPECT_EQ(file.save(target.string(), {.normalise = true}), KP::eOk) << file.error();
    EXPECT_EQ(contentOf(target), saved(file));

    const bool isThere = fs::exists(m_path);
    const std::string before = isThere ? contentOf(m_path) : "";
    if (isThere) {
        EXPECT_EQ(file.save(m_path.string(), {.normalise = true}), KP::eNotAvailable);
        EXPECT_THAT(file.error(), HasSubstr("another program has changed it since it was read"));
        EXPECT_EQ(contentOf(m_path), before);
    } else {
        EXPECT_EQ(file.save(m_path.string()), KP::eOk) << file.error();
        EXPECT_EQ(contentOf(m_path), m_content);
    }
}

INSTANTIATE_TEST_SUITE_P(Changes, ChangingSourceTest, Combine(ValuesIn(kChanges), ValuesIn(kContainers)),
                         [](const auto& test) {
                             return std::string(std::get<0>(test.param).name) + std::get<1>(test.param).name;
                         });

} // namespace
