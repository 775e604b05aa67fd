#include "Harness.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace fs = std::filesystem;

/// Runs the target over all files of a folder, or over single files. The file that ends the program is the last one
/// that was named.
int main(int argc, char** argv) {
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        if (fs::is_directory(argv[i])) {
            for (const auto& entry : fs::directory_iterator(argv[i])) {
                files.push_back(entry.path());
            }
        } else {
            files.emplace_back(argv[i]);
        }
    }
    std::sort(files.begin(), files.end());
    require(!files.empty(), "there are files to run over");
    for (const fs::path& path : files) {
        std::ifstream file(path, std::ios::binary);
        const std::string content{std::istreambuf_iterator<char>(file), {}};
        std::cerr << path.filename().string() << ", " << content.size() << " bytes" << std::endl;
        require(file.good() || file.eof(), "it can be read");
        const auto begin = std::chrono::steady_clock::now();
        fuzzTarget(content);
        require(std::chrono::steady_clock::now() - begin < std::chrono::seconds(5), "no small input takes long");
    }
    return 0;
}
