#include "SampleFiles.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>

namespace fs = std::filesystem;

std::vector<fs::path> findSamples(const fs::path& folder) {
    std::vector<fs::path> paths;
    std::error_code missing;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, missing)) {
        const std::string name = entry.path().filename().string();
        if (name.ends_with(".ifc") || name.ends_with(".ifc.gz")) {
            paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::vector<fs::path> samplesFor(const fs::path& checkout) {
    std::vector<fs::path> paths = findSamples((checkout / "../shared/samples").lexically_normal());
    if (paths.empty()) {
        paths.push_back(checkout / "examples/small_house.ifc");
    }
    return paths;
}

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
    void operator()(gzFile_s* file) const { gzclose(file); }
};

void unpack(const fs::path& from, const fs::path& to) {
    const std::unique_ptr<gzFile_s, CloseFile> packed(gzopen(from.string().c_str(), "rb"));
    std::unique_ptr<std::FILE, CloseFile> plain(std::fopen(to.string().c_str(), "wbx"));
    if (!packed || !plain) {
        throw std::runtime_error("cannot unpack " + from.string() + " to " + to.string());
    }
    std::array<char, 1 << 16> piece;
    int count = 0;
    while ((count = gzread(packed.get(), piece.data(), piece.size())) > 0) {
        const auto size = static_cast<std::size_t>(count);
        if (std::fwrite(piece.data(), 1, size, plain.get()) != size) {
            throw std::runtime_error("cannot write " + to.string());
        }
    }
    if (count < 0 || std::fclose(plain.release()) != 0) {
        throw std::runtime_error("cannot unpack " + from.string() + " to " + to.string());
    }
}

} // namespace

UnpackedFile::UnpackedFile(const fs::path& path) : m_path(path), m_isTemporary(path.extension() == ".gz") {
    if (!m_isTemporary) {
        return;
    }
    const std::string unique = std::to_string(std::random_device()());
    m_path = fs::temp_directory_path() / (unique + '_' + path.stem().string());
    try {
        unpack(path, m_path);
    } catch (...) {
        fs::remove(m_path);
        throw;
    }
}

UnpackedFile::~UnpackedFile() {
    if (m_isTemporary) {
        std::error_code ignored;
        fs::remove(m_path, ignored);
    }
}
