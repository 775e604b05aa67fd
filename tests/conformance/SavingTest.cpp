#include "Archives.h"
#include "StepFiles.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <set>

#include <unistd.h>

namespace fs = std::filesystem;
using namespace KP_SDAI;
using testing::HasSubstr;
using testing::TestWithParam;
using testing::ValuesIn;

namespace {

/// A model to save and a folder to save it in, whose names can be listed.
class SavingTest : public testing::Test {
protected:
    SavingTest() : m_folder(temporaryPath("saving")), m_file(opened(stepFile("#1=IFCCARTESIANPOINT((0.,1.));\n"))) {
        fs::create_directory(m_folder);
        m_content = saved(m_file);
    }
    ~SavingTest() override { fs::remove_all(m_folder); }

    fs::path put(const std::string& name, const std::string& content) const {
        std::ofstream(m_folder / name, std::ios::binary) << content;
        return m_folder / name;
    }
    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const fs::directory_entry& entry : fs::directory_iterator(m_folder))
            found.insert(entry.path().filename().string());
        return found;
    }
    void expectSaved(const fs::path& path) {
        EXPECT_EQ(m_file.save(path.string()), KP::eOk) << m_file.error();
        EXPECT_EQ(contentOf(path), m_content);
    }
    void expectRefused(const fs::path& path, const std::string& reason) {
        EXPECT_EQ(m_file.save(path.string()), KP::eNotAvailable);
        EXPECT_THAT(m_file.error(), testing::StartsWith(path.string() + ": "));
        EXPECT_THAT(m_file.error(), HasSubstr(reason));
    }

    fs::path m_folder;
    KpIfcFile m_file;
    std::string m_content;
};

TEST_F(SavingTest, NameTellsWhetherItIsCompressed) {
    for (const std::string name : {"a.ifc", "gz", "a.zip.ifc", ".zip"}) expectSaved(m_folder / name);
    for (const std::string name : {"a.ifc.gz", "a.GZ"}) {
        ASSERT_EQ(m_file.save((m_folder / name).string()), KP::eOk) << m_file.error();
        EXPECT_EQ(gunzipped(contentOf(m_folder / name)), m_content);
    }
    const std::pair<const char*, const char*> zips[] = {{"house.ifczip", "house.ifc"},
                                                        {"house.ifc.zip", "house.ifc"},
                                                        {"House.IFC.IfcZip", "House.IFC"},
                                                        {"h\xC3\xA4user.zip", "h\xC3\xA4user.ifc"}};
    for (const auto& [name, member] : zips) {
        ASSERT_EQ(m_file.save((m_folder / name).string()), KP::eOk) << m_file.error();
        const std::vector<ZipMember> members = unzipped(contentOf(m_folder / name));
        ASSERT_EQ(members.size(), 1u) << name;
        EXPECT_EQ(members[0].name, member);
        EXPECT_EQ(members[0].content, m_content) << name;
    }
}

TEST_F(SavingTest, SameContentGivesSameBytes) {
    for (const std::string name : {"a.ifc.gz", "a.ifczip"}) {
        m_file.save((m_folder / name).string());
        const std::string first = contentOf(m_folder / name);
        m_file.save((m_folder / name).string());
        EXPECT_EQ(contentOf(m_folder / name), first);
    }
}

TEST_F(SavingTest, ReplacesWhatWasRead) {
    for (const std::string name : {"a.ifc", "a.ifc.gz", "a.ifczip"}) {
        const std::string path = (m_folder / name).string();
        ASSERT_EQ(m_file.save(path), KP::eOk) << m_file.error();
        KpIfcFile file;
        ASSERT_EQ(file.open(path), KP::eOk) << file.error();
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(file.save(path), KP::eOk) << file.error();
            KpIfcFile again;
            ASSERT_EQ(again.open(path), KP::eOk) << again.error();
            EXPECT_EQ(saved(again), m_content);
        }
    }
}

TEST_F(SavingTest, KeepsPermissions) {
    const fs::path path = put("private.ifc", "older");
    for (const unsigned mode : {0600U, 0664U, 0755U}) {
        fs::permissions(path, fs::perms(mode));
        expectSaved(path);
        EXPECT_EQ(fs::status(path).permissions(), fs::perms(mode));
    }
    EXPECT_EQ(names(), std::set<std::string>{"private.ifc"});
}

TEST_F(SavingTest, WritesWhatLinksLeadTo) {
    fs::create_directory(m_folder / "far");
    put("far/old.ifc", "older");
    fs::create_symlink("far/old.ifc", m_folder / "to_old");
    fs::create_symlink("far/new.ifc", m_folder / "to_new");
    fs::create_symlink("to_new", m_folder / "to_link");
    for (const std::string link : {"to_old", "to_link"}) {
        expectSaved(m_folder / link);
        EXPECT_TRUE(fs::is_symlink(m_folder / link)) << link;
    }
    EXPECT_EQ(contentOf(m_folder / "far/new.ifc"), m_content);
    EXPECT_EQ(names(), (std::set<std::string>{"far", "to_old", "to_new", "to_link"}));
}

TEST_F(SavingTest, TakesTheLongestNames) {
    std::string umlauts;
    for (int i = 0; i < 127; ++i) umlauts += "\xC3\xA4";
    for (const std::string& name : {std::string(255, 'a'), umlauts, 'a' + umlauts}) expectSaved(m_folder / name);
}

TEST_F(SavingTest, TellsWhatIsNoTarget) {
    put("file", "older");
    fs::create_directory(m_folder / "folder.ifc");
    fs::create_symlink("circle", m_folder / "circle");
    const std::set<std::string> before = names();
    expectRefused(m_folder / "folder.ifc", "is a folder");
    expectRefused(m_folder / "missing/a.ifc", "cannot create a file in its folder: No such file");
    expectRefused(m_folder / "file/a.ifc", "cannot create a file in its folder: Not a directory");
    expectRefused(m_folder / "circle", "symbolic links");
    expectRefused(m_folder / std::string(300, 'a'), "name too long");
    expectRefused("", "");
    EXPECT_EQ(names(), before);
}

TEST_F(SavingTest, RespectsWriteProtection) {
    if (geteuid() == 0) GTEST_SKIP() << "nothing is protected from root";
    const fs::path path = put("protected.ifc", "older");
    fs::permissions(path, fs::perms(0444));
    expectRefused(path, "Permission denied");
    fs::permissions(path, fs::perms(0644));
    fs::permissions(m_folder, fs::perms(0555));
    expectRefused(path, "cannot create a file in its folder: Permission denied");
    fs::permissions(m_folder, fs::perms(0755));
    EXPECT_EQ(contentOf(path), "older");
}

TEST_F(SavingTest, TellsOfAFullDevice) {
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "this system has no /dev/full";
    fs::create_symlink("/dev/full", m_folder / "full.ifc.gz");
    fs::create_symlink("/dev/full", m_folder / "full.ifczip");
    for (const fs::path& path : {fs::path("/dev/full"), m_folder / "full.ifc.gz", m_folder / "full.ifczip"})
        expectRefused(path, "No space left");
}

} // namespace
