#include "Environment.h"

#include <KpIfcCore/KpIfcModule.h>

#include <gtest/gtest.h>

#include <memory>

using namespace KP_SDAI;

namespace {

class LoadedModule : public testing::Environment {
public:
    void SetUp() override {
        std::string error;
        m_module = KpIfcModule::load("IFC2X3", error);
        ASSERT_TRUE(m_module) << error;
    }
    void TearDown() override { m_module.reset(); }

private:
    std::shared_ptr<KpIfcModule> m_module;
};

[[maybe_unused]] const testing::Environment* const kEnvironment = testing::AddGlobalTestEnvironment(new LoadedModule);

} // namespace

KpIfcFile emptyFile() {
    KpIfcFile file;
    EXPECT_EQ(file.create("IFC2X3"), KP::eOk) << file.error();
    return file;
}

std::vector<const KpIfcEntityType*> entityTypes(const KpIfcSchema& schema) {
    std::vector<const KpIfcEntityType*> types;
    for (const Dictionary::Entry& entry : schema.entities().entries()) {
        types.push_back(schema.findEntity(entry.name));
    }
    return types;
}

std::string savedRecords(KpIfcFile& file) {
    const std::string out = saved(file);
    const std::string opening = "\nDATA;\n";
    const std::size_t begin = out.find(opening) + opening.size();
    return out.substr(begin, out.rfind("ENDSEC;") - begin);
}
