#pragma once

#include <string>
#include <string_view>

namespace kpifc {

/// A message on standard error, one line. One that cannot be written is lost.
void tell(std::string_view line);

/// Standard output, written in large pieces. What cannot be written (a full disk, a pipe that nobody reads) throws
/// Failure: results that are missing must never look complete.
class Output {
public:
    /// Append here; then call passOn().
    std::string& text() { return m_text; }
    /// Writes what has gathered once it is worth a call.
    void passOn() {
        if (m_text.size() >= kPiece) {
            write();
        }
    }
    /// Writes the rest. What has not been finished is not written.
    void finish();

private:
    static constexpr std::size_t kPiece = 1 << 18;

    void write();

    std::string m_text;
};

} // namespace kpifc
