#pragma once

#include "part21/SystemFile.h"

#include <string>
#include <string_view>
#include <system_error>

namespace KP_SDAI {

/// A file that is replaced whole or not at all. It is written beside its target, flushed to the disk and renamed over
/// the target, so that at any time, even after a failure of power, the target is what it was or what it shall be.
///
/// The target keeps its permissions; a link keeps leading to it, while hard links keep what was there. A target that
/// may not be written is not replaced either. What is no regular file (a device, a pipe), and standard output, is
/// written directly.
class AtomicFile {
public:
    /// Checks what can be checked and creates the file beside; error() tells of failures.
    AtomicFile(const std::string& path, ProgressMeter& progress);
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    /// Removes what was written beside, unless it was committed. A process that is killed leaves it there.
    ~AtomicFile();

    bool write(std::string_view bytes);
    /// Gets all that was written to the disk.
    bool flush();
    /// Completes the target, after flush().
    bool commit();
    /// Why an operation failed, and all after it; empty while none did.
    const std::string& error() const { return m_error; }

private:
    void createBeside();
    bool check(std::error_code code, const char* what = "");
    bool fail(std::string reason);

    SystemFile m_file;
    std::string m_target; ///< behind all links
    std::string m_beside; ///< empty where there is none
    bool m_isReplaced = false;
    std::string m_error;
};

} // namespace KP_SDAI
