#include "Runner.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>

#include <sys/wait.h>

namespace fs = std::filesystem;

std::string programPath() {
    return KPIFC;
}

void expectRefusal(const Outcome& outcome, std::string_view reason) {
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(reason), std::string::npos) << reason << '\n' << outcome.err;
}

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

std::string quoted(const fs::path& path) {
    std::string text = "'";
    for (const char c : path.string()) {
        text += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return text + '\'';
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string manyPoints() {
    std::string records;
    unsigned random = 1;
    const auto number = [&random] { return std::to_string(random = random * 1664525U + 1013904223U) + '.'; };
    for (int i = 1; i <= 30'000; ++i) {
        records += "#" + std::to_string(i) + "=IFCCARTESIANPOINT((" + number() + "," + number() + "));\n";
    }
    return stepFile(records);
}
