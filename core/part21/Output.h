#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace KP_SDAI {

/// A file that is being written. It is written beside its target and renamed over it when complete, so that a failure
/// leaves what was there; what is no ordinary file (a device, a pipe) is written directly.
class Output {
public:
    explicit Output(const std::string& path);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    /// Removes what was written where finish() was not reached.
    ~Output();

    bool write(std::string_view piece);
    /// Completes the target; false, with error(), where that fails.
    bool finish();
    /// Why the last operation failed.
    std::string error() const;

private:
    bool fail();

    std::string m_path;
    std::string m_beside; ///< empty where the target is written directly
    std::FILE* m_file = nullptr;
    int m_reason = 0;
};

} // namespace KP_SDAI
