#include "SchemaFiles.h"

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

struct Outcome {
    int code;
    std::string errors;
};

class CommandLine : public testing::Test {
protected:
    void SetUp() override { fs::create_directories(m_folder); }
    void TearDown() override { fs::remove_all(m_folder); }

    Outcome run(const std::string& arguments) const {
        const fs::path errors = m_folder / "errors";
        const std::string command = KPIFCGEN " " + arguments + " 2> \"" + errors.string() + "\"";
        int code = std::system(command.c_str());
#ifdef WEXITSTATUS
        code = WEXITSTATUS(code);
#endif
        return {code, read(errors)};
    }

    std::string schema(const std::string& text) const {
        const fs::path path = m_folder / "some.schema";
        std::ofstream(path) << text;
        return path.string();
    }

    static std::string read(const fs::path& path) {
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator(stream), {}};
    }

    const fs::path m_folder =
        fs::path(testing::TempDir()) /
        (std::string("kpifcgen_") + testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(CommandLine, WritesOnlyWhatChanged) {
    const fs::path out = m_folder / "out";
    const std::string sound = schema("schema S 1\nentity A\nentity B\n");
    EXPECT_EQ(run(sound + " -o " + out.string()).code, 0);
    const fs::path a = out / "entities/A.cpp", b = out / "entities/B.cpp";
    const std::string written = read(a);
    ASSERT_FALSE(written.empty());

    const auto longAgo = fs::file_time_type::clock::now() - std::chrono::hours(1);
    std::ofstream(b) << "changed";
    fs::last_write_time(a, longAgo);
    fs::last_write_time(b, longAgo);
    EXPECT_EQ(run(sound + " -o " + out.string()).code, 0);
    EXPECT_EQ(fs::last_write_time(a), longAgo);
    EXPECT_GT(fs::last_write_time(b), longAgo);
    EXPECT_EQ(read(a), written);
    EXPECT_NE(read(b), "changed");
}

TEST_F(CommandLine, ReportsErrorsAndWritesNothing) {
    const std::string wrong = schema("schema S 1\nentity A : B\n");
    const std::string message = wrong + ":2:12: unknown name 'B'\n";
    const auto checked = run(wrong + " --check");
    EXPECT_EQ(checked.code, 1);
    EXPECT_EQ(checked.errors, message);
    const auto generated = run(wrong + " -o " + (m_folder / "out").string());
    EXPECT_EQ(generated.code, 1);
    EXPECT_EQ(generated.errors, message);
    EXPECT_FALSE(fs::exists(m_folder / "out"));
}

TEST_F(CommandLine, ChecksWithoutWriting) {
    const auto outcome = run(schema("schema S 1\n") + " --check");
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(CommandLine, TellsWhatItCannotDo) {
    EXPECT_EQ(run("").code, 2);
    EXPECT_EQ(run("a.schema -x b").code, 2);
    const auto missing = run((m_folder / "none.schema").string() + " --check");
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.errors, (m_folder / "none.schema").string() + ": cannot be read\n");
    std::ofstream(m_folder / "file") << "in the way";
    const auto blocked = run(schema("schema S 1\nentity A\n") + " -o " + (m_folder / "file").string());
    EXPECT_EQ(blocked.code, 1);
    EXPECT_NE(blocked.errors, "");
}

} // namespace
