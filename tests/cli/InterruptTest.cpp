#include "Child.h"
#include "Runner.h"

#include <gmock/gmock.h>
#include <kpifc/Progress.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <tuple>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;
using KP_SDAI::KpIfcProgress;
using KP_SDAI::KpIfcStage;
using testing::Combine;
using testing::HasSubstr;
using testing::Not;
using testing::TestWithParam;
using testing::Values;
using testing::ValuesIn;

namespace {

/// A folder with a model and a pipe, of which the test has the other end.
class PipeTest : public testing::Test {
protected:
    PipeTest() {
        m_folder.write("points.ifc", m_content);
        EXPECT_EQ(mkfifo(m_folder.path("pipe").c_str(), 0600), 0);
    }
    ~PipeTest() override {
        if (m_end >= 0) {
            close(m_end);
        }
    }
    /// Waits until the child opens the other end.
    void open(int flags) {
        m_end = ::open(m_folder.path("pipe").c_str(), flags);
        ASSERT_GE(m_end, 0);
    }
    void write(std::string_view text) const {
        while (!text.empty()) {
            const ssize_t written = ::write(m_end, text.data(), text.size());
            ASSERT_GT(written, 0);
            text.remove_prefix(static_cast<std::size_t>(written));
        }
    }
    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const fs::directory_entry& entry : fs::directory_iterator(m_folder.path(""))) {
            found.insert(entry.path().filename().string());
        }
        return found;
    }

    const std::string m_content = manyPoints();
    WorkFolder m_folder;
    int m_end = -1;
};

struct Wait {
    const char* name;
    std::vector<std::string> arguments;
    bool isReading; ///< else it waits for somebody to read from the pipe
    const char* output;
};

const Wait kWaits[] = {
    {"Info", {"info", "pipe"}, true, "results"},
    {"Check", {"check", "--json", "pipe"}, true, "results"},
    {"Convert", {"convert", "pipe", "-o", "new.ifc"}, true, "results"},
    {"Diff", {"diff", "points.ifc", "pipe"}, true, "results"},
    {"ConvertIntoPipe", {"convert", "points.ifc", "-o", "pipe"}, false, "results"},
    {"NormaliseIntoPipe", {"convert", "points.ifc", "--normalise", "-o", "pipe"}, false, "results"},
    {"DumpIntoPipe", {"dump", "points.ifc"}, false, "pipe"},
};

class InterruptTest : public PipeTest, public testing::WithParamInterface<std::tuple<Wait, int>> {};

/// Wherever it waits, it ends soon and leaves nothing behind.
TEST_P(InterruptTest, StopsWhatWaits) {
    const auto& [wait, signal] = GetParam();
    Child child(m_folder.path(""), wait.arguments, Child::Messages::toFile, wait.output);
    open(wait.isReading ? O_WRONLY : O_RDONLY);
    if (wait.isReading) {
        write(m_content.substr(0, m_content.size() / 2));
    } else {
        char first;
        ASSERT_EQ(read(m_end, &first, 1), 1);
    }
    child.send(signal);
    const int status = child.wait();
    EXPECT_TRUE(WIFEXITED(status)) << status;
    EXPECT_EQ(WEXITSTATUS(status), 128 + signal);
    EXPECT_EQ(child.messages(), "kpifc: interrupted\n");
    std::set<std::string> left = names();
    left.erase("results");
    EXPECT_EQ(left, (std::set<std::string>{"messages", "pipe", "points.ifc"}));
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptTest, Combine(ValuesIn(kWaits), Values(SIGINT, SIGTERM)),
                         [](const auto& test) {
                             return std::get<0>(test.param).name +
                                    std::string(std::get<1>(test.param) == SIGINT ? "Int" : "Term");
                         });

/// A signal while a file is written: either it comes too late or nothing is left.
TEST_F(PipeTest, StoppedSavingLeavesNoPart) {
    for (const std::string target : {"new.ifc.gz", "new.ifczip"}) {
        Child child(m_folder.path(""), {"convert", "points.ifc", "--normalise", "-o", target}, Child::Messages::toFile);
        const std::set<std::string> before{"messages", "pipe", "points.ifc", "results"};
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (names().size() <= before.size() && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
        child.send(SIGINT);
        const int status = child.wait();
        ASSERT_TRUE(WIFEXITED(status)) << status;
        std::set<std::string> expected = before;
        if (WEXITSTATUS(status) == 0) {
            expected.insert(target);
        } else {
            EXPECT_EQ(WEXITSTATUS(status), 128 + SIGINT);
        }
        EXPECT_EQ(names(), expected);
        fs::remove(m_folder.path(target));
    }
}

TEST_F(PipeTest, SecondSignalKills) {
    Child child(m_folder.path(""), {"info", "pipe"}, Child::Messages::toFile);
    open(O_WRONLY);
    write(m_content.substr(0, m_content.size() / 2));
    child.send(SIGSTOP); // so that both come before it can do anything
    child.send(SIGINT);
    child.send(SIGTERM);
    child.send(SIGCONT);
    const int status = child.wait();
    EXPECT_TRUE(WIFSIGNALED(status)) << status;
    EXPECT_EQ(child.messages(), "");
}

TEST_F(PipeTest, TerminalShowsProgressOfLongWork) {
    for (const auto messages : {Child::Messages::toFile, Child::Messages::toTerminal}) {
        Child child(m_folder.path(""), {"info", "pipe"}, messages);
        open(O_WRONLY);
        write(m_content.substr(0, m_content.size() / 2));
        std::this_thread::sleep_for(std::chrono::milliseconds(1200));
        write(m_content.substr(m_content.size() / 2));
        close(m_end);
        m_end = -1;
        EXPECT_EQ(child.wait(), 0) << child.messages();
        if (messages == Child::Messages::toFile) {
            EXPECT_EQ(child.messages(), "");
        } else {
            EXPECT_THAT(child.messages(), testing::StartsWith("\r\x1b[Kreading "));
            EXPECT_THAT(child.messages(), testing::EndsWith("\r\x1b[K"));
        }
        EXPECT_THAT(contentOf(m_folder.path("results")), HasSubstr("30,000"));
    }
}

struct Line {
    KpIfcProgress progress;
    double seconds;
    std::size_t columns;
    const char* text;
};

TEST(ProgressLineTest, FitsTheTerminal) {
    const KpIfcProgress half{KpIfcStage::reading, true, 50'000'000, 100'000'000};
    const Line lines[] = {
        {half, 2, 60, "reading  50 % [#################                 ]   25 MB/s"},
        {half, 2, 34, "reading  50 % [####    ]   25 MB/s"},
        {half, 2, 33, "reading  50 %   25 MB/s"},
        {half, 2, 20, "reading  50 %"},
        {half, 2, 5, "readi"},
        {{KpIfcStage::reading, true, 134'000'000, 0}, 2, 60, "reading 134 MB   67 MB/s"},
        {{KpIfcStage::inverses, false, 3, 4}, 2, 36, "inverse attributes  75 % [######   ]"},
        {{KpIfcStage::writing, true, 11, 10}, 0, 30, "writing 100 % [##############]"},
        {{KpIfcStage::flushing, false, 0, 1}, 2, 60, "flushing"},
    };
    for (const Line& line : lines) {
        const std::string text = kpifc::progressLine(line.progress, line.seconds, line.columns);
        EXPECT_EQ(text, line.text);
        EXPECT_LE(text.size(), line.columns);
    }
}

} // namespace
