#include "StepFiles.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>

using namespace KP_SDAI;

namespace {

constexpr std::string_view kBegin = "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION(('a test'),'2;1');\n"
                                    "FILE_NAME('test.ifc','2026-01-02T03:04:05',('nobody'),('nowhere'),'','','');\n"
                                    "FILE_SCHEMA(('IFC2X3'));\nENDSEC;\nDATA;\n";
constexpr std::string_view kEnd = "ENDSEC;\nEND-ISO-10303-21;\n";

} // namespace

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::filesystem::path temporaryPath(std::string_view name) {
    std::random_device random;
    return std::filesystem::path(testing::TempDir()) / ("kp_" + std::to_string(random()) + '_' + std::string(name));
}

std::string stepFile(std::string_view records) {
    const bool isEnded = records.empty() || records.ends_with('\n');
    return std::string(kBegin) + std::string(records) + (isEnded ? "" : "\n") + std::string(kEnd);
}

std::string recordsOf(std::string_view content) {
    const bool framed =
        content.size() >= kBegin.size() + kEnd.size() && content.starts_with(kBegin) && content.ends_with(kEnd);
    EXPECT_TRUE(framed) << content.substr(0, 1000);
    return framed ? std::string(content.substr(kBegin.size(), content.size() - kBegin.size() - kEnd.size())) : "";
}

KpIfcFile opened(std::string_view content) {
    KpIfcFile file;
    EXPECT_EQ(file.openMemory(content.data(), content.size()), KP::eOk) << file.error();
    return file;
}

KpIfcFile openedRecords(std::string_view records) {
    return opened(stepFile(records));
}

std::string saved(KpIfcFile& file) {
    std::string out;
    EXPECT_EQ(file.saveToMemory(out, {.normalise = true}), KP::eOk) << file.error();
    return out;
}

std::string rewritten(KpIfcFile& file) {
    std::string out;
    EXPECT_EQ(file.saveToMemory(out), KP::eOk) << file.error();
    return out;
}

void touchAll(KpIfcFile& file) {
    for (KpIfcEntityBase* instance : file.model()->instances()) {
        KpIfcChange::before(*instance);
    }
}

std::string findings(const KpIfcReport& report) {
    std::string out;
    for (const KpIfcReportEntry& entry : report.entries()) {
        out += entry.text() + '\n';
    }
    return out;
}
