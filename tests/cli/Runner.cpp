#include "Runner.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>

#include <sys/wait.h>

namespace fs = std::filesystem;

WorkFolder::WorkFolder()
    : m_path(fs::temp_directory_path() / ("kpifc_test_" + std::to_string(std::random_device()()))) {
    fs::create_directory(m_path);
}

WorkFolder::~WorkFolder() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

std::string WorkFolder::write(std::string_view name, std::string_view content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return quoted(path(name));
}

Outcome WorkFolder::run(const std::string& command) const {
    const std::string line = "kpifc() { " + quoted(KPIFC) + " \"$@\"; }; cd " + quoted(m_path) + " && { " + command +
                             "\n} >" + quoted(path("stdout")) + " 2>" + quoted(path("stderr"));
    const int status = std::system(line.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(path("stdout")), contentOf(path("stderr"))};
}

std::string contentOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    EXPECT_TRUE(stream) << path;
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

std::string quoted(const fs::path& path) {
    std::string text = "'";
    for (const char c : path.string()) {
        text += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return text + '\'';
}

std::string stepFile(std::string_view records) {
    return "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION(('a test'),'2;1');\n"
           "FILE_NAME('test.ifc','2026-01-02T03:04:05',('nobody'),('nowhere'),'','','');\n"
           "FILE_SCHEMA(('IFC2X3'));\nENDSEC;\nDATA;\n" +
           std::string(records) + "\nENDSEC;\nEND-ISO-10303-21;\n";
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}
