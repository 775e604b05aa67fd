#include "Expectation.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace KP_SDAI;

Expectation Expectation::read(const std::filesystem::path& path) {
    Expectation expected;
    std::ifstream file(path);
    EXPECT_TRUE(file.is_open()) << path << " is missing";
    for (std::string line; std::getline(file, line);) {
        if (line.rfind('#', 0) == 0) {
            expected.comments += line + '\n';
        } else if (line == "texts encoded") {
            expected.textsEncoded = true;
        } else if (line.rfind("refused ", 0) == 0) {
            expected.error = line.substr(8);
        } else if (!line.empty()) {
            expected.lines.push_back(line);
        }
    }
    return expected;
}

std::vector<std::string> Expectation::linesOf(const KpIfcFile& file, bool isOpen) {
    if (!isOpen) {
        return {"status error"};
    }
    std::vector<std::string> lines = {
        file.report().isClean() ? "status clean" : "status findings",
        "instances " + std::to_string(file.model()->count()),
        "kept " + std::to_string(file.model()->keptRecordCount()),
    };
    for (const KpIfcReportEntry& entry : file.report().entries()) {
        std::string line = std::string(severityName(entry.severity)) + ' ' + findingName(entry.finding) + ' ' +
                           std::to_string(entry.line) + ':' + std::to_string(entry.column);
        if (entry.instanceName) {
            line += " #" + std::to_string(entry.instanceName);
        }
        if (!entry.attribute.empty()) {
            line += ' ' + entry.attribute;
        }
        lines.push_back(line);
    }
    return lines;
}
