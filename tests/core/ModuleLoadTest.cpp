#include "ModulePath.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

using namespace KP_SDAI;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;
namespace fs = std::filesystem;

TEST(ModuleLoad, KnowsASchemaUnderItsSpellings) {
    const std::shared_ptr<KpIfcModule> module = loadModule();
    ASSERT_NE(module, nullptr);
    for (const char* spelling : {"ifc2x3", "Ifc2x3", "IFC2X3_TC1", "ifc2x3_tc1", "IFC2X3_FINAL", " IFC2X3 ",
                                 "IFC2X3 { 1 0 10303 1 1 }", "IFC2X3_TC1{1 0 10303}"}) {
        const std::shared_ptr<KpIfcModule> again = loadModule(spelling);
        ASSERT_NE(again, nullptr) << spelling;
        EXPECT_EQ(&again->schema(), &module->schema()) << spelling;
    }
}

TEST(ModuleLoad, ErrorsNameTheSchemaAndWhatCanBeRead) {
    for (const char* schema :
         {"IFC4", "IFC2X", "IFC2X3_OTHER", "", "{ 1 0 }", "../KpIFC2X3", "IFC2X3/../IFC2X3", "Rx"}) {
        std::string error;
        EXPECT_EQ(KpIfcModule::load(schema, error), nullptr) << schema;
        EXPECT_THAT(error, AllOf(HasSubstr(schema), HasSubstr("IFC2X3"))) << schema;
    }
}

TEST(ModuleLoad, ListsTheSchemasThatHaveModules) {
    EXPECT_THAT(KpIfcModule::available(), AllOf(Contains("IFC2X3"), Not(Contains("IfcCore")), Not(Contains("Rx"))));
    const TemporaryFolder folder;
    folder.write("libKpIFC9.so", "");
    folder.write("libKpIFC2X3.so", "");
    folder.write("libKpIFC9.so.1", "");
    folder.write("KpIFC8.so", "");
    folder.write("libKp.so", "");
    const ModulePath search(folder.path().string());
    EXPECT_THAT(KpIfcModule::available(), testing::ElementsAre("IFC2X3", "IFC9"));
}

TEST(ModuleLoad, SearchesTheFoldersOfTheEnvironmentFirst) {
    const TemporaryFolder empty;
    const TemporaryFolder folder;
    const fs::path copy = folder.path() / "libKpIFC2X3.so";
    fs::copy_file(KP_MODULE_FILE, copy);
    const std::shared_ptr<KpIfcModule> own = loadModule();
    {
        const ModulePath search("/no/such/folder::" + empty.path().string() + ":" + folder.path().string());
        const std::shared_ptr<KpIfcModule> module = loadModule();
        ASSERT_NE(module, nullptr);
        EXPECT_EQ(module->path(), fs::canonical(copy).string());
    }
    const ModulePath search(empty.path().string()); // nothing there: the one beside the runtime
    const std::shared_ptr<KpIfcModule> module = loadModule();
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(module->path(), own->path());
    EXPECT_EQ(&module->schema(), &own->schema());
}

TEST(ModuleLoad, OneFileIsOneModuleByWhateverPath) {
    const TemporaryFolder folder;
    fs::create_symlink(KP_MODULE_FILE, folder.path() / "libKpIFC2X3.so");
    const ModulePath search(folder.path().string());
    const std::shared_ptr<KpIfcModule> linked = loadModule();
    std::string error;
    const std::shared_ptr<KpIfcModule> direct = KpIfcModule::loadFile(KP_MODULE_FILE, error);
    ASSERT_TRUE(linked && direct) << error;
    EXPECT_EQ(&linked->schema(), &direct->schema());
}

TEST(ModuleLoad, FilesThatAreNoModulesAreErrors) {
    const TemporaryFolder folder;
    folder.write("libKpIFC9.so", "not a library");
    const fs::path runtime = fs::path(KP_MODULE_FILE).parent_path() / "libKpRx.so";
    const fs::path schemaless = fs::path(KP_FAKE_MODULES) / "libKpSCHEMALESS.so";
    for (const fs::path& path :
         {folder.path() / "libKpIFC9.so", folder.path(), folder.path() / "missing.so", runtime, schemaless}) {
        for (int attempt = 0; attempt < 2; ++attempt) {
            std::string error;
            EXPECT_EQ(KpIfcModule::loadFile(path.string(), error), nullptr) << path;
            EXPECT_THAT(error, HasSubstr(path.filename().string()));
        }
    }
    const ModulePath search(folder.path().string());
    std::string error;
    EXPECT_EQ(KpIfcModule::load("IFC9", error), nullptr);
    EXPECT_THAT(error, HasSubstr("libKpIFC9.so"));
}

TEST(ModuleLoad, AModuleThatFailsToInitialiseLocksNobodyOut) {
    const std::string path = KP_FAKE_MODULES "/libKpTHROWING.so";
    std::string error;
    for (int attempt = 0; attempt < 2; ++attempt)
        EXPECT_THROW(static_cast<void>(KpIfcModule::loadFile(path, error)), std::exception);
    EXPECT_NE(loadModule(), nullptr);
}

TEST(ModuleLoad, AnyThreadMayLoadAndLetGo) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            for (int round = 0; round < 25; ++round) {
                const std::shared_ptr<KpIfcModule> module = loadModule();
                ASSERT_NE(module, nullptr);
                ASSERT_NE(module->schema().findEntity("IfcWall"), nullptr);
            }
        });
    for (std::thread& thread : threads) thread.join();
}

} // namespace
