#pragma once

#include "part21/FileStamp.h"
#include "part21/ProgressMeter.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

namespace KP_SDAI {

/// A file that is open for reading or for writing, by the system's own calls; SystemFile.cpp is the only source that
/// knows them. An operation that fails gives the system's reason. `progress` is told when a signal interrupts waiting.
class SystemFile {
public:
    explicit SystemFile(ProgressMeter& progress) : m_progress(progress) {}
    SystemFile(const SystemFile&) = delete;
    SystemFile& operator=(const SystemFile&) = delete;
    /// Closes, if need be.
    ~SystemFile();

    /// Creates a file where none is; errc::file_exists where one is. `isPrivate`: nobody but the owner may open it.
    std::error_code create(const std::string& path, bool isPrivate);
    /// Opens what exists, without touching it.
    std::error_code open(const std::string& path);
    /// Whether this is a name of the standard output: open() gives the one at hand, with its place in a file.
    static bool isStandardOutput(std::string_view path) { return path == "/dev/stdout"; }
    bool isOpen() const { return m_handle >= 0; }

    std::error_code openToRead(const std::string& path);
    /// Reads up to `size` bytes; `got` is less at the end, or where reading fails.
    std::error_code read(char* to, std::size_t size, std::size_t& got);
    /// The same from a place on; where read() goes on does not change.
    std::error_code readAt(std::uint64_t place, char* to, std::size_t size, std::size_t& got);
    /// Reading goes on at the first byte.
    std::error_code rewind();
    FileStamp stamp() const { return FileStamp(m_handle); }

    std::error_code write(std::string_view bytes);
    /// Gives the file the permissions of another, and its owner and group as far as the system lets us.
    std::error_code takePermissions(const std::string& other);
    /// Waits until the disk has what was written; does nothing where the system or what the file lies on cannot do
    /// that.
    std::error_code sync();
    /// Is closed afterwards, whatever is given back.
    std::error_code close();

    /// Puts a file in the place of another, or where none is, in one step.
    static std::error_code rename(const std::string& from, const std::string& to);
    /// Waits until the disk has the names in a folder, as far as the system can do that.
    static void syncFolder(const std::string& path);

private:
    template <class Read>
    std::error_code readAll(char* to, std::size_t size, std::size_t& got, Read read);

    ProgressMeter& m_progress;
    int m_handle = -1;
};

} // namespace KP_SDAI
