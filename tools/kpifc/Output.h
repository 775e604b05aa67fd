#pragma once

#include "Interrupt.h"

#include <string>
#include <string_view>

namespace kpifc {

/// A message on standard error, one line. One that cannot be written is lost.
void tell(std::string_view line);
/// The same of something that could not be done, with the program's name before it. Bytes of files and names in it may
/// be any.
void tellFailure(std::string_view what);

/// A pipe to which results are written has no reader any more: he has seen enough. Nothing but main() catches it.
struct NobodyReads {};

/// Standard output, written in large pieces. What cannot be written (a full disk) throws Failure, or NobodyReads:
/// results that are missing must never look complete.
class Output {
public:
    /// Append here; then call passOn().
    std::string& text() { return m_text; }
    /// Writes what has gathered once it is worth a call, unless a signal asks to stop.
    void passOn() {
        stopIfInterrupted();
        if (m_text.size() >= kPiece) {
            write();
        }
    }
    /// Writes the rest. What has not been finished is not written.
    void finish();
    /// Whether anything was written in this process.
    static bool hasWritten() { return s_hasWritten; }

private:
    static constexpr std::size_t kPiece = 1 << 18;

    void write();

    static bool s_hasWritten;
    std::string m_text;
};

} // namespace kpifc
