#pragma once

#include "part21/AtomicFile.h"
#include "part21/Compressor.h"

#include <memory>
#include <string>
#include <string_view>

namespace KP_SDAI {

/// A file that is being written, as AtomicFile does. The ending of its name, in any letter case, tells how: .gz is
/// compressed by gzip; .ifczip and .zip are zip archives with one member, named after the file; all else is plain.
class Output {
public:
    /// error() tells at once where the target cannot be written.
    Output(const std::string& path, ProgressMeter& progress);

    bool write(std::string_view piece);
    /// Gets all that was written to the disk, then completes the target; false, with error(), where that fails. That is
    /// a stage of its own, which can be cancelled until the last step.
    bool finish();
    /// Why an operation failed, without the file's name; empty while none did.
    const std::string& error() const { return m_file.error(); }

private:
    bool pass(std::string_view piece);

    ProgressMeter& m_progress;
    AtomicFile m_file;
    std::unique_ptr<Compressor> m_compressor; ///< null where the file is plain
};

} // namespace KP_SDAI
