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

KpIfcFile opened(const std::string& content) {
    KpIfcFile file;
    EXPECT_EQ(file.openMemory(content.data(), content.size()), KP::eOk) << file.error();
    return file;
}

KpIfcFile openedRecords(const std::string& records) {
    return opened("ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\nFILE_NAME('','',(''),(''),'','','');\n"
                  "FILE_SCHEMA(('IFC2X3'));\nENDSEC;\nDATA;\n" +
                  records + "ENDSEC;\nEND-ISO-10303-21;\n");
}

std::string saved(KpIfcFile& file) {
    std::string out;
    EXPECT_EQ(file.saveToMemory(out, {.normalise = true}), KP::eOk) << file.error();
    return out;
}

std::string savedRecords(KpIfcFile& file) {
    const std::string out = saved(file);
    const std::string opening = "\nDATA;\n";
    const std::size_t begin = out.find(opening) + opening.size();
    return out.substr(begin, out.rfind("ENDSEC;") - begin);
}

std::string findings(const KpIfcReport& report) {
    std::string out;
    for (const KpIfcReportEntry& entry : report.entries()) {
        out += entry.text() + '\n';
    }
    return out;
}
