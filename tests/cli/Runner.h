#pragma once

#include "StepFiles.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// What a finished command left behind.
struct Outcome {
    int exitCode; ///< -1 where it did not exit by itself
    std::string out;
    std::string err;
};

/// Expects that a command was refused: exit code 2, no output, the reason among the errors.
void expectRefusal(const Outcome& outcome, std::string_view reason);

/// The program just built.
std::string programPath();

/// A folder for the files of one test case, removed in the end.
class WorkFolder {
public:
    WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder();

    std::filesystem::path path(std::string_view name) const { return m_path / name; }
    /// Writes a file; returns its path quoted for run().
    std::string write(std::string_view name, std::string_view content) const;
    /// Runs a command in the shell, in this folder. "kpifc" stands for the program just built.
    Outcome run(const std::string& command) const;

private:
    std::filesystem::path m_path;
};

/// 30,000 points, which no container makes small and no pipe takes at once: every source takes several reads, every
/// target several writes.
std::string manyPoints();

std::vector<std::string> linesOf(const std::string& text);
/// Quoted for the shell.
std::string quoted(const std::filesystem::path& path);
