#include "ModulePath.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace {

using namespace KP_SDAI;

/// The module in the process besides the loader's own use of it, so that its functions can be asked at any time.
class ModuleLife : public testing::Test {
protected:
    void SetUp() override {
        m_library = ::dlopen(KP_MODULE_FILE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(m_library, nullptr) << ::dlerror();
        schemaPointer = reinterpret_cast<KpIfcSchema* (*)()>(::dlsym(m_library, "kpifcGetSchemaPointer"));
        const auto app = reinterpret_cast<KpIfcModuleLifeCycle* (*)()>(::dlsym(m_library, "kpGetModuleLifeCycleApp"));
        ASSERT_TRUE(schemaPointer && app);
        lifeCycle = app();
        ASSERT_NE(lifeCycle, nullptr);
        ASSERT_EQ(app(), lifeCycle);
    }
    void TearDown() override {
        if (m_library) ::dlclose(m_library);
    }

    KpIfcSchema* (*schemaPointer)() = nullptr;
    KpIfcModuleLifeCycle* lifeCycle = nullptr;

private:
    void* m_library = nullptr;
};

TEST_F(ModuleLife, TheSchemaLivesWhileSomebodyUsesIt) {
    EXPECT_EQ(schemaPointer(), nullptr);
    std::shared_ptr<KpIfcModule> first = loadModule();
    std::shared_ptr<KpIfcModule> second = loadModule();
    ASSERT_NE(schemaPointer(), nullptr);
    EXPECT_EQ(&first->schema(), schemaPointer());
    EXPECT_EQ(&second->schema(), schemaPointer());
    first.reset();
    ASSERT_NE(schemaPointer(), nullptr);
    EXPECT_NE(second->schema().findEntity("IfcWall"), nullptr);
    second.reset();
    EXPECT_EQ(schemaPointer(), nullptr);
    for (int round = 0; round < 3; ++round) {
        const std::shared_ptr<KpIfcModule> again = loadModule();
        ASSERT_NE(schemaPointer(), nullptr);
        EXPECT_EQ(again->schema().entities().count(), 653u);
    }
    EXPECT_EQ(schemaPointer(), nullptr);
}

TEST_F(ModuleLife, InitialisingTwiceBuildsOnce) {
    EXPECT_TRUE(lifeCycle->initialise());
    KpIfcSchema* const schema = schemaPointer();
    ASSERT_NE(schema, nullptr);
    const DictionaryInstance* const wall = schema->findEntity("IfcWall");
    EXPECT_TRUE(lifeCycle->initialise());
    EXPECT_EQ(schemaPointer(), schema);
    EXPECT_EQ(schema->findEntity("IfcWall"), wall);
    EXPECT_EQ(schema->entities().count(), 653u);
    lifeCycle->unload();
    EXPECT_EQ(schemaPointer(), nullptr);
}

TEST_F(ModuleLife, AfterUnloadTheSchemaIsBuiltAfresh) {
    lifeCycle->unload(); // nothing to do yet
    EXPECT_EQ(schemaPointer(), nullptr);
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(lifeCycle->initialise());
        KpIfcSchema* const schema = schemaPointer();
        ASSERT_NE(schema, nullptr);
        EXPECT_EQ(schema->entities().count(), 653u);
        // Supertypes lead into the schema that stands now, not into one that was freed.
        const KpIfcEntityType* type = schema->findEntity("IfcWallStandardCase");
        ASSERT_NE(type, nullptr);
        for (; type; type = type->superType()) {
            EXPECT_EQ(schema->findEntity(type->name()), type);
            EXPECT_EQ(type->schema(), schema);
        }
        EXPECT_EQ(schema->findEntity("IfcWall")->subTypes().size(), 1u);
        lifeCycle->unload();
        lifeCycle->unload();
        EXPECT_EQ(schemaPointer(), nullptr);
    }
}

bool isInProcess() {
    void* library = ::dlopen(KP_MODULE_FILE, RTLD_NOW | RTLD_NOLOAD);
    if (library) ::dlclose(library);
    return library != nullptr;
}

TEST(ModuleUnload, TheLibraryGoesWithItsLastUser) {
    ASSERT_FALSE(isInProcess());
    std::shared_ptr<KpIfcModule> module = loadModule();
    EXPECT_TRUE(isInProcess());
    module.reset();
    EXPECT_FALSE(isInProcess());
}

std::shared_ptr<KpIfcModule> g_kept; // made before the loader has any state of its own

TEST(ModuleUnload, AModuleMayBeHeldUntilTheProcessEnds) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            g_kept = loadModule();
            std::exit(g_kept ? 3 : 4);
        },
        testing::ExitedWithCode(3), "");
}

} // namespace
