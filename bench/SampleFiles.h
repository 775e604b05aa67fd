#pragma once

#include <filesystem>
#include <vector>

/// The STEP files of a folder (*.ifc, *.ifc.gz), by name; none where there is no such folder.
std::vector<std::filesystem::path> findSamples(const std::filesystem::path& folder);

/// The real files beside a checkout, else its example.
std::vector<std::filesystem::path> samplesFor(const std::filesystem::path& checkout);

/// A STEP file that can be opened as it is: a compressed one (.gz) is unpacked to a temporary file, which is removed in
/// the end. Throws std::runtime_error where that fails.
class UnpackedFile {
public:
    explicit UnpackedFile(const std::filesystem::path& path);
    UnpackedFile(const UnpackedFile&) = delete;
    UnpackedFile& operator=(const UnpackedFile&) = delete;
    ~UnpackedFile();

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
    bool m_isTemporary;
};
