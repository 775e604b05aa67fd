#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace KP_SDAI {

/// Tells one content of a file from another that somebody puts there, in its place or into it. What changes within the
/// resolution of the file system's clock and keeps its size is not told apart.
struct FileStamp {
    FileStamp() = default; ///< of what is missing or no regular file
    explicit FileStamp(const std::string& path);
    explicit FileStamp(std::FILE* file);
    explicit FileStamp(int handle); ///< of the system
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
    /// True where both are known and differ.
    bool tellsApart(const FileStamp& other) const {
        return *this != FileStamp() && other != FileStamp() && *this != other;
    }

    std::uint64_t device = 0;
    std::uint64_t number = 0; ///< on that device
    std::uint64_t size = 0;
    std::int64_t seconds = 0; ///< of its last change
    std::int64_t nanoseconds = 0;
};

} // namespace KP_SDAI
