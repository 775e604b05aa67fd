#pragma once

#include "part21/ByteSource.h"

#include <memory>
#include <string>

namespace KP_SDAI {

class ProgressMeter;

/// Opens a file for reading, compressed or not: the first bytes tell, not the name. Known are gzip and zip archives
/// with one STEP file. What is no regular file (a pipe, a terminal) is kept in memory while it is read. Null, with
/// "path: reason" in `error`, where it cannot be opened. `progress`, which must outlive the source, is told
/// whenever that is read.
std::unique_ptr<ByteSource> openSource(const std::string& path, ProgressMeter& progress, std::string& error);

/// The same for bytes in memory, which are copied; `name` stands for the path.
std::unique_ptr<ByteSource> openSource(const void* data, std::size_t size, const std::string& name,
                                       ProgressMeter& progress, std::string& error);

} // namespace KP_SDAI
