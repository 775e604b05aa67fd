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
    explicit Output(const std::string& path);

    bool write(std::string_view piece);
    /// Completes the target; false, with error(), where that fails.
    bool finish();
    /// Why an operation failed, without the file's name; empty while none did.
    const std::string& error() const { return m_file.error(); }

private:
    AtomicFile m_file;
    std::unique_ptr<Compressor> m_compressor; ///< null where the file is plain
};

} // namespace KP_SDAI
